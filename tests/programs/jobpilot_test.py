"""JobPilot as any program of the suite sees it: files in the scheduler folder, messages on plain sockets."""
import datetime
import json
import os
import pathlib
import signal
import socket
import subprocess
import unittest
import urllib.parse

from harness import BIN, PASSWORD, PATIENCE, Place, wait_until

SERIAL_DAY_ZERO = datetime.datetime(1899, 12, 30)


def socket_of(place, title):
    return place.root / "root/run" / (urllib.parse.quote(title) + ".socket")


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
        wait_until(lambda: self.reaches("JOBPILOT control"), what="the window JOBPILOT")
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

    def add_job(self, name, device, *body):
        """Writes a job as any other program would; answers with its index line."""
        folder = self.scheduler_folder() / name
        folder.mkdir()
        path = str(folder / f"{name}.scr").replace("/", "\\")
        serial = repr((datetime.datetime.now() - SERIAL_DAY_ZERO) / datetime.timedelta(days=1))
        lines = ["SITENAME=Office;", "SITEID=101;", "QVRID=1;", "DESCRIPTION=Test;", f"STARTDATE={serial};",
                 f"STOPDATE={serial};", "INTERVAL=;", "PERIOD=;", f"FTPIPADDRESS=127.0.0.1:{device.port}:{device.telnet_port};",
                 "FTPUSER=admin;", f"FTPPASSWORD={PASSWORD};",
                 "FTPCONNECT;", *body, "FTPDISCONNECT;"]
        (folder / f"{name}.scr").write_bytes("".join(line + "\r\n" for line in lines).encode())
        line = f"{serial};15/11/2026 12:10:05^Test^Office^101^{serial}^^^1^;{path};"
        with open(self.scheduler_folder() / "index.sch", "ab") as index:
            index.write(line.encode() + b"\r\n")
        return line

    def get(self, name):
        path = str(self.scheduler_folder() / name / "Stats.csv").replace("/", "\\")
        return f"FTPGET;REMOTEFILE=allstats.csv;LOCALFILE={path};SIZE=20000;"

    def wait_for_line(self, line, file):
        wait_until(lambda: line in self.place.scheduler(file), what=f"the line in {file}")

    def files_of(self, job):
        return {file.name for file in (self.scheduler_folder() / job).iterdir()}

    def log(self, job):
        return self.place.find(f"Logs/{job}.log")[0].read_text()

    def test_a_job_by_hand(self):
        device = self.place.set_up()
        self.start_and_wait()
        line = self.add_job("JobA", device, "FTPACCT;part3;", self.get("JobA"))
        self.post(1)
        self.wait_for_line(line, "completed.sch")
        self.assertIn("part3 RETR allstats.csv 226", device.commands())
        self.assertIn("Fetched allstats.csv", self.log("JobA"))
        self.assertNotIn(PASSWORD, self.log("JobA"))
        self.assertEqual(self.place.find("Logs/JobA.log")[0].stat().st_mode & 0o777, 0o600)

        (self.scheduler_folder() / "index.sch").write_bytes(b"")
        self.post(2)
        wait_until(lambda: self.place.scheduler("completed.sch") == [], what="the taken line to go")

    def test_a_stop_ends_the_session_and_the_program_whatever_is_waited_for(self):
        device = self.place.set_up("--fault", "RETR#1:stall=100", "--fault", "RETR#2:silent")
        for number, stop in enumerate(("socket", "signal"), start=1):
            with self.subTest(stop):
                process = self.start_and_wait()
                name = f"Job{number}"
                line = self.add_job(name, device, "FTPACCT;part3;", self.get(name), "FTPDELETE;linestat;")
                self.post(1)
                wait_until(lambda: self.ask("status")["bytes_done"] >= 100, what="the transfer to stall")
                status = self.ask("status")
                self.assertEqual((status["running_job"], status["step"], status["bytes_hinted"]),
                                 (name, "Fetching allstats.csv", 20000))
                if stop == "socket":
                    self.assertEqual(self.ask("stop"), {"stopped": True})
                else:
                    process.send_signal(signal.SIGTERM)
                self.assertEqual(process.wait(PATIENCE), 0)
                self.assertIn(line, self.place.scheduler("cancelled.sch"))
                self.assertEqual(self.files_of(name), {f"{name}.scr", f"{name}.rpt"})
        self.assertFalse(any("DELE" in command for command in device.commands()))

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
        elsewhere = self.place.root / "elsewhere"
        elsewhere.mkdir()
        for folder in ("config", "AppData", "Documents"):
            (elsewhere / folder).symlink_to(self.place.root / "root" / folder)
        third = self.start(env={**self.place.environment, "QVRCOM_ROOT": str(elsewhere)})
        self.assertEqual(third.wait(PATIENCE), 1)
        self.assertIn(f"JobPilot (process {first.pid}) has it, with another run folder", third.stderr.read())
        line = self.add_job("JobA", device, "FTPACCT;part3;", self.get("JobA"))
        self.post(1)
        wait_until(lambda: self.ask("status")["bytes_done"] == 100, what="the transfer to stall")
        first.send_signal(signal.SIGKILL)
        first.wait(PATIENCE)
        self.start_and_wait()
        self.post(1)
        self.wait_for_line(line, "completed.sch")
        self.assertEqual(self.files_of("JobA"), {"JobA.scr", "JobA.rpt", "Stats.csv"})

    def test_without_set_up_it_says_so(self):
        process = self.start()
        self.assertEqual(process.wait(PATIENCE), 3)
        self.assertIn("There is no set-up on this machine.", process.stderr.read())


if __name__ == "__main__":
    unittest.main()
