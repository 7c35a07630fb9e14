"""The main job from end to end: qvrcomctl, JobPilot and a device, each a process of its own."""
import pathlib
import signal
import unittest

from harness import Place, wait_until


class StatisticsTest(unittest.TestCase):
    def setUp(self):
        self.place = Place()
        self.addCleanup(self.place.leave)

    def retrieve(self, *arguments, check, site=101):
        return self.place.ctl("stats", "retrieve", "--site", site, "--partition", 3, *arguments, check=check)

    def test_retrieve_reset_and_both(self):
        device = self.place.set_up()
        done = self.retrieve(check=0)
        csv = pathlib.Path(done.stdout.rstrip("\n"))
        self.assertEqual(csv.name, "Stats1.csv")
        self.assertTrue(csv.read_bytes().startswith(b"SiteName,Office1\r\nUserSiteID,101\r\n"))
        self.assertIn("part3 RETR allstats.csv 226", device.commands())
        self.assertEqual(done.stderr, "")
        self.place.assert_nothing_left()

        self.assertEqual(pathlib.Path(self.retrieve("--reset", check=0).stdout.rstrip("\n")).name, "Stats2.csv")
        last = [line for line in device.commands() if line.startswith("part3 ")]
        fetched = max(i for i, line in enumerate(last) if "RETR allstats.csv 226" in line)
        self.assertEqual([line.split()[1:3] for line in last[fetched + 1:] if "DELE" in line],
                         [["DELE", "linestat"], ["DELE", "nodestat"]])

        reset = self.place.ctl("stats", "reset", "--site", "Office1 - 101", "--partition", "5", check=0)
        self.assertEqual(reset.stdout, "")
        self.assertEqual([line.split()[1:3] for line in device.commands() if line.startswith("part5 DELE")],
                         [["DELE", "linestat"], ["DELE", "nodestat"]])
        self.place.assert_nothing_left()
        self.assertEqual(sum("USER" in line for line in device.commands()), 3)

    def test_a_fault_ends_in_one_message(self):
        device = self.place.set_up("--fault", "RETR#1:stall=100")
        self.place.set_scheduler(IdleSeconds=1)
        failed = self.retrieve(check=1)
        message, reason = failed.stderr.splitlines()
        self.assertEqual(message, "ERROR: Communication error, see JobPilot for details")
        self.assertIn("No byte came or went for 1", reason)
        self.assertEqual(failed.stdout, "")
        self.assertEqual(sum("USER" in line for line in device.commands()), 1)
        self.assertEqual(self.place.find("Stats/*.csv"), [])
        self.place.assert_nothing_left()

    def test_all_partitions(self):
        old = self.place.set_up("--firmware", "5.01", "--partitions", "1,3,8", firmware="5.01")
        done = self.place.ctl("stats", "retrieve", "--all-partitions", "--reset", "--site", 101, check=0)
        self.assertEqual([pathlib.Path(path).exists() for path in done.stdout.splitlines()], [True] * 3, done.stderr)
        self.assertEqual(sum("DELE" in line for line in old.commands()), 6)
        self.assertEqual(sum("USER" in line for line in old.commands()), 1)
        self.place.assert_nothing_left()

    def test_a_scheduler_that_is_not_installed(self):
        self.place.set_up()
        settings = self.place.find("QVRCOM+.ini")[0]
        settings.write_text(settings.read_text().replace("AppPath=", "AppPath=\\\\nowhere\\\\away"))
        self.assertIn("QVRCOM+: SCHEDULER not found!", self.retrieve(check=3).stderr)
        self.place.assert_nothing_left()

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


if __name__ == "__main__":
    unittest.main()
