"""The commands to a device as a whole, each from qvrcomctl through JobPilot to a device and back."""
import json
import os
import pathlib
import pty
import re
import select
import subprocess
import termios
import unittest

from harness import BIN, PASSWORD, PATIENCE, Place, wait_until

GOOD = BIN.parent / "tests/adapters/plugins/built/good.so"
EXAMPLE = BIN.parent / "examples/plugin/check_only.so"


class SystemTest(unittest.TestCase):
    def setUp(self):
        self.place = Place()
        self.addCleanup(self.place.leave)
        self.device = self.place.set_up()

    def system(self, *arguments):
        return self.place.ctl("system", *arguments, "--site", 101, check=0)

    def json(self, *arguments):
        return json.loads(self.place.ctl(*arguments, "--site", 101, "--json", check=0).stdout)[0]

    def test_log(self):
        printed = self.system("log").stdout
        self.assertGreater(len(printed.splitlines()), 1)
        self.assertEqual(self.json("system", "log")["log"], printed.splitlines())
        file = self.place.root / "saved.log"
        saved = self.system("log", "--reset", "--output", file)
        self.assertEqual((saved.stdout, saved.stderr), ("", ""))
        self.assertEqual(file.read_bytes().decode().splitlines()[0], printed.splitlines()[0])
        self.assertTrue(file.read_bytes().endswith(b"\r\n"))
        self.assertEqual(sum("DELE log" in line for line in self.device.commands()), 1)
        self.assertEqual(self.system("log", "--reset-only").stdout, "")
        self.assertEqual(sum("DELE log" in line for line in self.device.commands()), 2)
        self.place.assert_nothing_left()

    def test_clock(self):
        self.assertRegex(self.system("clock").stdout,
                         r"^Device clock  2026-11-15 12:10:05\nPC clock      20\d\d-\d\d-\d\d \d\d:\d\d:\d\d\n"
                         r"Difference    The device is \d+ seconds (behind|ahead of) the PC\.\n$")
        self.system("clock", "--set", "2027-02-28 23:59:58")
        clock = self.json("system", "clock")
        self.assertEqual(clock["device-clock"], "2027-02-28T23:59:58")
        self.assertTrue(clock["record"].startswith(b"QT\1".hex()))
        set_to = re.search(r"[\d-]{10} [\d:]{8}", self.system("clock", "--set", "now").stdout)[0]
        self.assertIn(f"Device clock  {set_to}\n", self.system("clock").stdout)
        self.place.assert_nothing_left()

    def test_information_and_partition(self):
        self.assertRegex(self.system("info").stdout, r"Firmware +6\.61\n")
        information = self.json("system", "info")
        self.assertEqual((information["firmware"], information["device-clock"]), ("6.61", "2026-11-15T12:10:05"))
        self.assertGreater(information["memory"], information["memory-used"])
        self.assertRegex(self.system("partition", 3).stdout, r"^Recorded +\d+:\d\d\nRoom for +\d+:\d\d\n$")
        self.assertGreater(self.json("system", "partition", 3)["room-seconds"], 0)
        self.place.assert_nothing_left()
        self.place.add_device(access_code="no such word")
        several = self.place.ctl("system", "info", "--site", 101, "--site", 102, check=1)
        self.assertIn("Office1 - 101:\nFirmware", several.stdout)
        self.assertIn("QVRCOM+: Office2 - 102: not done.", several.stderr)

    def test_firmware_and_prompts(self):
        content = os.urandom(300_000)
        file = self.place.root / "new firmware.bin"
        file.write_bytes(content)
        for command in ("firmware", "prompts"):
            self.assertEqual(self.system(command, file).stderr, "")
            self.assertEqual((self.device.data / "device" / command).read_bytes(), content)
        self.place.assert_nothing_left()

    def test_same_log_and_view(self):
        filed = self.place.ctl("same-log", "retrieve", "--site", 101, check=0).stdout.rstrip("\n")
        self.assertIn("SAME", filed)
        self.assertTrue(pathlib.Path(filed).read_bytes())
        shown = self.place.ctl("view", "--partition", 3, "--site", 101, check=0).stdout.splitlines()
        self.assertEqual(self.json("view", "--partition", 3)["messages"], shown)
        self.assertTrue(shown)
        self.place.assert_nothing_left()

    def test_standard_output_holds_access_codes_for_its_owner_alone(self):
        file = self.place.root / "sites.csv"
        command = [BIN / "qvrcomctl", "sites", "export", "-"]
        with open(file, "wb") as out:
            os.fchmod(out.fileno(), 0o644)
            subprocess.run(command, env=self.place.environment, stdout=out, check=True, timeout=PATIENCE)
        self.assertIn(PASSWORD, file.read_text())
        self.assertEqual(file.stat().st_mode & 0o077, 0)
        with open("/dev/full", "wb") as full:
            for arguments in (command, [BIN / "qvrcom", "--help"], [BIN / "JobPilot", "--version"]):
                failed = subprocess.run(arguments, env=self.place.environment, stdout=full, stderr=subprocess.PIPE,
                                        check=False, timeout=PATIENCE)
                self.assertEqual(failed.returncode, 1)
                self.assertIn(b"did not take", failed.stderr)
                wrong = subprocess.run([arguments[0], "--bogus"], stderr=subprocess.PIPE, check=False, timeout=PATIENCE,
                                       env={**self.place.environment, "QT_QPA_PLATFORM": "none"})
                self.assertEqual((wrong.returncode, b"--bogus" in wrong.stderr), (2, True))

    def test_telnet_on_a_terminal_and_on_a_pipe(self):
        ours, theirs = pty.openpty()
        self.addCleanup(os.close, ours)
        before = termios.tcgetattr(theirs)
        command = [BIN / "qvrcomctl", "system", "telnet", "--site", "101"]
        process = subprocess.Popen(command, env=self.place.environment, stdin=theirs, stdout=theirs, stderr=theirs)
        self.addCleanup(process.kill)
        seen = bytearray()

        def shows(text):
            while select.select([ours], [], [], 0)[0]:
                seen.extend(os.read(ours, 4096))
            return text in seen

        for prompt, typed in ((b"login: ", b"admin\r"), (b"password: ", PASSWORD.encode() + b"\r"), (b"> ", b"version\r"),
                              (b"Firmware 6.61", b"\x1d")):
            wait_until(lambda prompt=prompt: shows(prompt), PATIENCE, f"{prompt}, after {bytes(seen)}")
            os.write(ours, typed)
        self.assertEqual(process.wait(PATIENCE), 0)
        self.assertNotIn(PASSWORD.encode(), seen)
        self.assertIn(b"version\r\n", seen)
        self.assertEqual(termios.tcgetattr(theirs), before)
        os.close(theirs)
        piped = subprocess.run(command, env=self.place.environment, input=f"admin\n{PASSWORD}\nversion\n".encode(),
                               capture_output=True, timeout=PATIENCE, check=True)
        self.assertIn(b"Firmware 6.61", piped.stdout)
        self.assertNotIn(PASSWORD.encode(), piped.stdout + piped.stderr)
        for log in self.place.find("Logs/*"):
            self.assertNotRegex(log.read_text(), f"{PASSWORD}|version")
        self.place.assert_nothing_left()


class PlugInsTest(unittest.TestCase):
    """Plug-in libraries as a user drops them into the folder."""
    def setUp(self):
        self.place = Place()
        self.addCleanup(self.place.leave)
        self.place.ctl("setup", check=0)
        self.folder = self.place.root / "root/config/plugins"
        self.folder.mkdir(mode=0o700)

    def put(self, name, content):
        path = self.folder / name
        path.write_bytes(content)
        path.chmod(0o600)

    def test_a_good_one_is_silent_and_problems_are_told_once(self):
        self.put("example.so", EXAMPLE.read_bytes())
        self.assertEqual(self.place.ctl("sites", "list", check=0).stderr, "")

        self.put("notes.so", b"no library")
        result = self.place.ctl("sites", "list", "--json", check=0)
        self.assertEqual(json.loads(result.stdout), [])
        self.assertRegex(result.stderr, r'^QVRCOM\+: The plug-in "notes.so" is not used\. .*'
                                        rf'\n  Plug-ins are taken from "{self.folder}"\.\n$')

    def test_takes_the_place_of_a_bundled_component(self):
        self.place.add_device("--firmware", "5.01", "--partitions", "3", firmware="5.01")
        self.put("statistics.so", GOOD.read_bytes())
        result = self.place.ctl("stats", "retrieve", "--site", "101", "--partition", "3")
        self.assertRegex(result.stderr, r"No CSV of \d+\|3\|")
        self.assertEqual(result.stdout, "")


if __name__ == "__main__":
    unittest.main()
