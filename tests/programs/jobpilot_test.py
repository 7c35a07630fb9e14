"""JobPilot as any program of the suite sees it: files in the scheduler folder, messages on plain sockets."""
import datetime
import json
import os
import pathlib
import signal
import socket
import subprocess
import threading
import time
import unittest
import urllib.parse

from harness import BIN, PASSWORD, PATIENCE, Place, wait_until

SERIAL_DAY_ZERO = datetime.datetime(1899, 12, 30)


def socket_of(place, title):
    return place.root / "root/run" / (urllib.parse.quote(title) + ".socket")


def frame(kind, payload=b""):
    return kind + len(payload).to_bytes(2, "big") + payload


class Screen:
    """What a terminal is given to show."""

    def __init__(self, peer):
        self.stream = peer.makefile("rb")
        self.shown = ""
        self.device_echoes = False

    def read_to(self, end):
        while not self.shown.endswith(end):
            head = self.stream.read(3)
            assert len(head) == 3, f"the session ended after {self.shown!r}"
            payload = self.stream.read(int.from_bytes(head[1:], "big"))
            if head[:1] == b"O":
                self.device_echoes = payload == b"1"
            elif head[:1] == b"D":
                self.shown += payload.decode()


class Dialog:
    """A window titled "RESPONSE DIALOG" that counts the answers it hears."""

    def __init__(self, place):
        self.path = socket_of(place, "RESPONSE DIALOG")
        self.server = socket.socket(socket.AF_UNIX)
        self.server.bind(str(self.path))
        self.server.listen(64)
        self.server.settimeout(0.05)

    def heard(self, seconds):
        """What arrives in that time."""
        lines = []
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            try:
                peer, _ = self.server.accept()
            except TimeoutError:
                continue
            with peer:
                peer.settimeout(1)
                lines += peer.makefile("rb").read().splitlines()
        return lines

    def close(self):
        self.server.close()
        self.path.unlink()


class EndlessDevice:
    """A device that sends a file whole and then never says so."""
    REPLIES = {"USER": "331 x", "PASS": "230 x", "PWD": '257 "/"', "SIZE": "213 100", "RETR": "150 x"}

    def __init__(self):
        self.listener = socket.create_server(("127.0.0.1", 0))
        self.port, self.telnet_port = self.listener.getsockname()[1], 1
        self.sent = threading.Event()
        threading.Thread(target=self.serve, daemon=True).start()

    def serve(self):
        with self.listener, self.listener.accept()[0] as control, socket.create_server(("127.0.0.1", 0)) as data:
            control.sendall(b"220 x\r\n")
            for line in control.makefile("r"):
                word = line.split()[0]
                reply = f"229 x (|||{data.getsockname()[1]}|)" if word == "EPSV" else self.REPLIES.get(word, "200 x")
                control.sendall(reply.encode() + b"\r\n")
                if word == "RETR":
                    with data.accept()[0] as peer:
                        peer.sendall(bytes(100))
                    self.sent.set()


class JobPilotTest(unittest.TestCase):
    def setUp(self):
        self.place = Place()
        self.addCleanup(self.place.leave)
        self.started = []
        self.addCleanup(self.end_all)

    def end_all(self):
        for process in self.started:
            process.kill()
            process.wait(PATIENCE)

    def start(self, **surroundings):
        process = subprocess.Popen([BIN / "JobPilot"], **{
            "env": self.place.environment, "stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL,
            "stderr": subprocess.PIPE, "text": True, **surroundings})
        self.started.append(process)
        self.addCleanup(process.stderr.close)
        return process

    def start_and_wait(self, **surroundings):
        process = self.start(**surroundings)
        began = time.monotonic()
        wait_until(lambda: self.reaches("JOBPILOT control"), what="the window JOBPILOT")
        self.assertLess(time.monotonic() - began, 1)
        return process

    def reaches(self, title):
        with socket.socket(socket.AF_UNIX) as probe:
            return probe.connect_ex(str(socket_of(self.place, title))) == 0

    def post(self, code):
        with socket.socket(socket.AF_UNIX) as peer:
            peer.connect(str(socket_of(self.place, "JOBPILOT")))
            peer.sendall(f"CBL_QVRCOM_SCHEDULER 0 {code}\n".encode())

    def ask(self, request):
        with socket.socket(socket.AF_UNIX) as peer:
            peer.connect(str(socket_of(self.place, "JOBPILOT control")))
            peer.sendall(request.encode() + b"\n")
            return json.loads(peer.makefile("rb").read())

    def scheduler_folder(self):
        return self.place.find("Scheduler")[0]

    def add_job(self, name, device, *body, description="Test"):
        """Writes a job as any other program would; answers with its index line."""
        folder = self.scheduler_folder() / name
        folder.mkdir()
        path = str(folder / f"{name}.scr").replace("/", "\\")
        serial = repr((datetime.datetime.now() - SERIAL_DAY_ZERO) / datetime.timedelta(days=1))
        lines = ["SITENAME=Office;", "SITEID=101;", "QVRID=1;", f"DESCRIPTION={description};", f"STARTDATE={serial};",
                 f"STOPDATE={serial};", "INTERVAL=;", "PERIOD=;", f"FTPIPADDRESS=127.0.0.1:{device.port}:{device.telnet_port};",
                 "FTPUSER=admin;", f"FTPPASSWORD={PASSWORD};",
                 *(body if body[0] == "TELNETSESSION;" else ["FTPCONNECT;", *body, "FTPDISCONNECT;"])]
        (folder / f"{name}.scr").write_bytes("".join(line + "\r\n" for line in lines).encode())
        line = f"{serial};15/11/2026 12:10:05^{description}^Office^101^{serial}^^^1^;{path};"
        with open(self.scheduler_folder() / "index.sch", "ab") as index:
            index.write(line.encode() + b"\r\n")
        return line

    def get(self, name, remote="allstats.csv", local="Stats.csv"):
        path = str(self.scheduler_folder() / name / local).replace("/", "\\")
        return f"FTPGET;REMOTEFILE={remote};LOCALFILE={path};SIZE=20000;"

    def wait_for_line(self, line, file):
        wait_until(lambda: line in self.place.scheduler(file), what=f"the line in {file}")

    def files_of(self, job):
        return {file.name for file in (self.scheduler_folder() / job).iterdir()}

    def log(self, job):
        return self.place.find(f"Logs/{job}.log")[0].read_text()

    def test_a_job_by_hand(self):
        device = self.place.set_up()
        self.start_and_wait()
        dialog = Dialog(self.place)
        self.addCleanup(dialog.close)
        line = self.add_job("JobA", device, "FTPACCT;part3;", self.get("JobA"))
        self.post(1)
        self.post(5)
        self.wait_for_line(line, "completed.sch")
        answers = dialog.heard(1.2)
        self.assertEqual(set(answers), {b"CBL_SCHEDULER_QVRCOM 0 0"})
        self.assertGreaterEqual(len(answers), 4, "repeated every 250 ms")
        self.assertIn("part3 RETR allstats.csv 226", device.commands())
        self.assertGreater((self.scheduler_folder() / "JobA/Stats.csv").stat().st_size, 100)
        self.assertIn("Fetched allstats.csv", self.log("JobA"))
        self.assertNotIn(PASSWORD, self.log("JobA"))
        self.assertEqual(self.place.find("Logs/JobA.log")[0].stat().st_mode & 0o777, 0o600)

        (self.scheduler_folder() / "index.sch").write_bytes(b"")
        self.post(2)
        wait_until(lambda: self.place.scheduler("completed.sch") == [], what="the taken line to go")
        dialog.heard(0.3)
        self.assertEqual(dialog.heard(0.6), [])

    def test_a_stop_ends_a_stalled_session_and_the_program(self):
        device = self.place.set_up("--fault", "RETR:stall=100")
        for number, stop in enumerate(("socket", "signal"), start=1):
            with self.subTest(stop):
                process = self.start_and_wait()
                name = f"Job{number}"
                line = self.add_job(name, device, "FTPACCT;part3;", self.get(name), "FTPDELETE;linestat;")
                self.post(1)
                wait_until(lambda: self.ask("status")["bytes_done"] == 100, what="the transfer to stall")
                status = self.ask("status")
                self.assertEqual((status["running_job"], status["step"], status["bytes_hinted"]),
                                 (name, "Fetching allstats.csv", 20000))
                began = time.monotonic()
                if stop == "socket":
                    self.assertEqual(self.ask("stop"), {"stopped": True})
                else:
                    process.send_signal(signal.SIGTERM)
                self.assertEqual(process.wait(PATIENCE), 0)
                self.assertLess(time.monotonic() - began, 2)
                self.assertIn(line, self.place.scheduler("cancelled.sch"))
                self.assertEqual(self.files_of(name), {f"{name}.scr", f"{name}.rpt"})
        self.assertFalse(any("DELE" in command for command in device.commands()))

    def test_control_is_answered_whatever_the_session_does(self):
        self.place.set_up()
        process = self.start_and_wait()
        device = EndlessDevice()
        line = self.add_job("JobA", device, self.get("JobA"))
        self.post(1)
        self.assertTrue(device.sent.wait(PATIENCE))
        time.sleep(0.3)  # the session waits for the last word now
        with socket.socket(socket.AF_UNIX) as peer:
            peer.settimeout(2)
            peer.connect(str(socket_of(self.place, "JOBPILOT control")))
            peer.sendall(b"stop\n")
            self.assertEqual(json.loads(peer.makefile("rb").read()), {"stopped": True})
        self.assertEqual(process.wait(5), 0)
        self.assertEqual(self.place.scheduler("cancelled.sch"), [line])
        self.assertIn("The session was stopped in the scheduler", self.log("JobA"))

    def test_it_holds_nothing_of_its_starter(self):
        self.place.set_up()
        with open(self.place.root / "held", "w") as held:
            process = self.start_and_wait(cwd=self.place.root, pass_fds=[held.fileno()], stdin=held,
                                          env={**self.place.environment, "QVRCOM_ROOT": "root"})
        shown = pathlib.Path(f"/proc/{process.pid}")
        self.assertEqual(os.readlink(shown / "cwd"), "/")
        files = [os.readlink(file) for file in (shown / "fd").iterdir()]
        self.assertNotIn(str(self.place.root / "held"), files)
        self.assertRegex((shown / "limits").read_text(), r"Max core file size +0 +0")

    def test_it_runs_alone_and_comes_back_after_a_kill(self):
        device = self.place.set_up("--fault", "RETR#1:stall=100")
        first = self.start_and_wait()
        second = self.start()
        self.assertEqual(second.wait(PATIENCE), 1)
        self.assertIn("It runs already", second.stderr.read())
        line = self.add_job("JobA", device, "FTPACCT;part3;", self.get("JobA"))
        self.post(1)
        wait_until(lambda: self.ask("status")["bytes_done"] == 100, what="the transfer to stall")
        first.send_signal(signal.SIGKILL)
        first.wait(PATIENCE)
        self.start_and_wait()
        self.post(1)
        self.wait_for_line(line, "completed.sch")
        self.assertEqual(self.files_of("JobA"), {"JobA.scr", "JobA.rpt", "Stats.csv"})

    def test_every_partition_but_those_that_fail(self):
        missing, cut = {7, 20, 41}, 30
        there = ",".join(str(n) for n in range(1, 65) if n not in missing)
        before = sum(n not in missing for n in range(1, cut))  # each fetches two files; the cut one its second
        device = self.place.set_up("--firmware", "5.01", "--partitions", there, "--fault", f"RETR#{2 * before + 3}:drop=20")
        self.start_and_wait()
        body = [self.get("JobA", "dbase", "system.dat")]
        for n in range(1, 65):
            body += [f"FTPACCT;part{n};", self.get("JobA", "linestat", f"linestatP{n}.dat"),
                     self.get("JobA", "nodestat", f"nodestatP{n}.dat"), "FTPDELETE;linestat;", "FTPDELETE;nodestat;"]
        line = self.add_job("JobA", device, *body, description="Retrieve Reset Statistics All Partitions")
        self.post(1)
        self.wait_for_line(line, "completed.sch")
        self.assertIn("60 of 64 partitions are done; skipped: part7, part20, part30, part41.", self.log("JobA"))
        whole = [n for n in range(1, 65) if n not in missing | {cut}]
        self.assertEqual(self.files_of("JobA"), {"JobA.scr", "JobA.rpt", "system.dat", f"linestatP{cut}.dat"} | {
            f"{kind}P{n}.dat" for n in whole for kind in ("linestat", "nodestat")})
        told = device.commands()
        self.assertEqual([command for command in told if "DELE" in command],
                         [f"part{n} DELE {kind} 250" for n in whole for kind in ("linestat", "nodestat")])
        self.assertEqual([command for command in told if "USER" in command], ["- USER admin 331"] * 2)
        self.assertEqual(sum("ACCT" in command for command in told), 64)

    def terminal(self, job):
        """A terminal as any program may be one: frames over a plain socket."""
        wait_until(lambda: self.reaches("JOBPILOT terminal"), what="the terminal's socket")
        peer = socket.socket(socket.AF_UNIX)
        self.addCleanup(peer.close)
        peer.settimeout(PATIENCE)
        peer.connect(str(socket_of(self.place, "JOBPILOT terminal")))
        peer.sendall(frame(b"A", job.encode()))
        return peer

    def test_a_telnet_session(self):
        device = self.place.set_up()
        self.start_and_wait()
        for name, leave in (("JobA", b"exit\r"), ("JobB", None), ("JobC", "stop-job JobC")):
            with self.subTest(name):
                line = self.add_job(name, device, "TELNETSESSION;", "TELNETDISCONNECT;", description="Launch Telnet Session")
                self.post(1)
                peer = self.terminal(name)
                screen = Screen(peer)
                screen.read_to("login: ")
                peer.sendall(frame(b"D", b"admin\r"))
                screen.read_to("password: ")
                self.assertTrue(screen.device_echoes)
                peer.sendall(frame(b"D", PASSWORD.encode() + b"\r"))
                screen.read_to("> ")
                self.assertFalse(screen.device_echoes)
                peer.sendall(frame(b"W", bytes((0, 80, 0, 24))) + frame(b"D", b"version\r"))
                screen.read_to("Firmware 6.61\r\n> ")
                self.post(9)
                wait_until(lambda: "It is here: Terminal attached" in self.log(name), what="the state in the log")
                if leave is None:
                    peer.shutdown(socket.SHUT_RDWR)
                elif isinstance(leave, bytes):
                    peer.sendall(frame(b"D", leave))
                    screen.read_to("Good bye.\r\n")
                else:
                    self.assertEqual(self.ask(leave), {"outcome": "stopped"})
                self.wait_for_line(line, "cancelled.sch" if name == "JobC" else "completed.sch")
                log = self.log(name)
                self.assertNotIn(PASSWORD, log)
                self.assertNotIn("version", log)
                self.assertFalse(self.reaches("JOBPILOT terminal"))

    def test_a_telnet_session_that_comes_to_nothing(self):
        device = self.place.set_up()
        self.place.set_scheduler(AttachSeconds=1)
        self.start_and_wait()
        telnet = ("TELNETSESSION;", "TELNETDISCONNECT;")
        line = self.add_job("JobA", device, *telnet)
        self.post(1)
        self.wait_for_line(line, "error.sch")
        self.assertIn("No terminal attached within 1 s.", self.log("JobA"))
        device.telnet_port = 1
        line = self.add_job("JobB", device, *telnet)
        self.post(1)
        self.wait_for_line(line, "error.sch")
        self.assertIn("127.0.0.1 port 1: Connection refused.", self.log("JobB"))

    def test_without_set_up_it_says_so(self):
        process = self.start()
        self.assertEqual(process.wait(PATIENCE), 3)
        self.assertIn("There is no set-up on this machine.", process.stderr.read())


if __name__ == "__main__":
    unittest.main()
