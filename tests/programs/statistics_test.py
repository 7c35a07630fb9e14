"""The main job from end to end: qvrcomctl, JobPilot and a device, each a process of its own."""
import pathlib
import signal
import unittest

from harness import Place, wait_until


class StatisticsTest(unittest.TestCase):
    def setUp(self):
        self.place = Place()
        self.addCleanup(self.place.leave)

    def retrieve(self, *arguments, check, site=101, partition=3):
        return self.place.ctl("stats", "retrieve", "--site", site, "--partition", partition, *arguments, check=check)

    def assert_nothing_left(self):
        self.assertEqual(self.place.job_folders(), [])
        for name in ("index.sch", "CompletedToProcess.sch", "ErrorToProcess.sch", "CancelledToProcess.sch"):
            self.assertEqual(self.place.scheduler(name), [], name)

    def test_retrieve_reset_and_both(self):
        device = self.place.set_up()
        done = self.retrieve(check=0)
        csv = pathlib.Path(done.stdout.rstrip("\n"))
        self.assertEqual(csv.name, "Stats1.csv")
        self.assertTrue(csv.read_bytes().startswith(b"SiteName,Office1\r\nUserSiteID,101\r\n"))
        self.assertIn("part3 RETR allstats.csv 226", device.commands())
        self.assertEqual(done.stderr, "")
        self.assert_nothing_left()

        self.assertEqual(pathlib.Path(self.retrieve("--reset", check=0).stdout.rstrip("\n")).name, "Stats2.csv")
        last = [line for line in device.commands() if line.startswith("part3 ")]
        fetched = max(i for i, line in enumerate(last) if "RETR allstats.csv 226" in line)
        self.assertEqual([line.split()[1:3] for line in last[fetched + 1:] if "DELE" in line],
                         [["DELE", "linestat"], ["DELE", "nodestat"]])

        reset = self.place.ctl("stats", "reset", "--site", "Office1 - 101", "--partition", "5", check=0)
        self.assertEqual(reset.stdout, "")
        self.assertEqual([line.split()[1:3] for line in device.commands() if line.startswith("part5 DELE")],
                         [["DELE", "linestat"], ["DELE", "nodestat"]])
        self.assert_nothing_left()
        self.assertEqual(sum("USER" in line for line in device.commands()), 3)

    def test_faults_end_in_one_message(self):
        device_faults = [
            ("wrong password", [], "no such word", "530"),
            ("dropped in the middle", ["--fault", "RETR#1:drop=100"], None, ""),
            ("cut short", ["--fault", "RETR:truncate=100"], None, "not whole"),
            ("refused account", ["--fault", "ACCT#1:550"], None, "550"),
            ("stalled", ["--fault", "RETR#1:stall=100"], None, ""),
            ("mute", ["--fault", "RETR#1:mute"], None, ""),
        ]
        self.place.ctl("setup", check=0)
        self.place.set_scheduler(IdleSeconds=1, ConnectSeconds=2)
        for number, (name, options, password, reason) in enumerate(device_faults, start=101):
            with self.subTest(name):
                device = self.place.add_device(*options, **({"access_code": password} if password else {}))
                failed = self.retrieve(check=1, site=number)
                lines = failed.stderr.splitlines()
                self.assertEqual(lines[0], "ERROR: Communication error, see JobPilot for details")
                self.assertIn(reason, lines[1])
                self.assertEqual(len(lines), 2, failed.stderr)
                self.assertEqual(failed.stdout, "")
                self.assertEqual(sum("USER" in line for line in device.commands()), 1)
                self.assert_nothing_left()
        self.assertEqual(self.place.find("Stats/*.csv"), [])
        for log in self.place.find("Logs/*"):
            self.assertEqual(log.stat().st_mode & 0o077, 0)
            self.assertNotIn("open sesame", log.read_text())

    def test_one_failure_does_not_stop_the_rest(self):
        self.place.set_up("--partitions", "1,3")
        ended = self.retrieve(check=1, partition="1-3")
        self.assertEqual([pathlib.Path(path).name for path in ended.stdout.splitlines()], ["Stats1.csv", "Stats2.csv"])
        self.assert_nothing_left()

    def test_old_statistics(self):
        device = self.place.set_up("--firmware", "5.01", "--partitions", "1,3,8", firmware="5.01")
        done = self.retrieve("--reset", check=0)
        csv = pathlib.Path(done.stdout.rstrip("\n"))
        self.assertIn(b"SiteName,Office1\r\n", csv.read_bytes())
        self.assertEqual(done.stderr, "")
        self.assertEqual([line.split()[1:3] for line in device.commands() if line.startswith("part3 DELE")],
                         [["DELE", "linestat"], ["DELE", "nodestat"]])
        self.place.ctl("stats", "reset", "--site", 101, "--partition", 8, check=0)
        self.assertEqual(sum(line.startswith("part8 DELE") for line in device.commands()), 2)
        self.assert_nothing_left()

    def test_all_partitions(self):
        old = self.place.set_up("--firmware", "5.01", "--partitions", "1,3,8", firmware="5.01")
        everything = ("stats", "retrieve", "--all-partitions", "--reset")
        done = self.place.ctl(*everything, "--site", 101, check=0)
        self.assertEqual([pathlib.Path(path).exists() for path in done.stdout.splitlines()], [True] * 3, done.stderr)
        self.assertEqual(sum("DELE" in line for line in old.commands()), 6)
        self.assertEqual(sum("USER" in line for line in old.commands()), 1)
        self.assert_nothing_left()
        new = self.place.add_device()
        refused = self.place.ctl(*everything, "--site", 102, check=1)
        self.assertIn("does not keep its statistics in the older form", refused.stderr)
        self.assertEqual(new.commands() if new.log_file.exists() else [], [])

    def test_machine_without_its_parts(self):
        self.assertEqual(self.retrieve(check=3).stdout, "")
        self.place.set_up()
        database = self.place.find("NewDB.mdb")[0]
        kept = database.rename(database.parent / "kept")
        self.assertIn("File not found", self.place.ctl("sites", "list", check=1).stderr)
        self.assertFalse(database.exists())
        database.write_bytes(b"\x00\x01\x00\x00Standard Jet DB\x00" + bytes(4096))
        foreign = self.place.ctl("sites", "list", check=1).stderr
        self.assertNotIn("File not found", foreign)
        kept.rename(database)
        settings = self.place.find("QVRCOM+.ini")[0]
        settings.write_text(settings.read_text().replace("AppPath=", "AppPath=\\\\nowhere\\\\away"))
        self.assertIn("QVRCOM+: SCHEDULER not found!", self.retrieve(check=3).stderr)
        self.assert_nothing_left()

    def waiting_retrieval(self):
        """A retrieval that waits for a device which never answers."""
        device = self.place.set_up("--fault", "RETR#1:mute")
        process = self.place.start_ctl("stats", "retrieve", "--site", "101", "--partition", "3")
        self.addCleanup(process.kill)
        wait_until(lambda: any("RETR" in line for line in device.commands()), what="the download")
        return process

    def test_scheduler_killed_during_the_wait(self):
        process = self.waiting_retrieval()
        self.place.kill_scheduler()
        output, errors = process.communicate(timeout=30)
        self.assertEqual((process.returncode, output), (1, ""), errors)
        self.assertIn(self.place.job_folders()[0].name, errors)

    def test_interrupt_cancels_and_the_scheduler_can_be_stopped(self):
        process = self.waiting_retrieval()
        busy = self.retrieve(check=1)
        self.assertIn(str(process.pid), busy.stderr)
        process.send_signal(signal.SIGINT)
        output, _ = process.communicate(timeout=30)
        self.assertEqual((process.returncode, output), (1, ""))
        self.place.ctl("scheduler", "stop", check=0)
        self.assertEqual(len(self.place.scheduler("cancelled.sch")), 1)
        self.assertNotEqual(self.place.ctl("scheduler", "status").returncode, 0)

    def test_job_stopped_in_the_scheduler(self):
        process = self.waiting_retrieval()
        job = self.place.job_folders()[0].name
        self.place.ctl("jobs", "stop", job, check=0)
        _, errors = process.communicate(timeout=30)
        self.assertEqual(process.returncode, 1)
        self.assertIn("CANCELLED: Communication cancelled from JobPilot", errors)
        self.assert_nothing_left()


if __name__ == "__main__":
    unittest.main()
