"""A root of its own, a simulated device and the real programs, for tests that run them as a user would.

QVRCOM_BIN names the folder of the programs; it defaults to build/asan/bin.
"""
import json
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import time

TREE = pathlib.Path(__file__).resolve().parents[2]
BIN = pathlib.Path(os.environ.get("QVRCOM_BIN", TREE / "build/asan/bin"))
DEVICE = TREE / "tools/simulated-device/simulated-device"
PASSWORD = "open sesame"
PATIENCE = 60  # seconds until a hanging program fails its test


def wait_until(condition, seconds=15, what="the condition"):
    """Polls until `condition` is true; a condition that never holds is an error."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if condition():
            return
        time.sleep(0.05)
    raise AssertionError(f"{what} did not come about in {seconds} s")


class Device:
    def __init__(self, folder, *options):
        self.log_file = folder / "device.log"
        self.data = folder / "data"
        port_file = folder / "device.port"
        telnet_port_file = folder / "device.telnet-port"
        for leftover in (self.log_file, port_file, telnet_port_file):
            leftover.unlink(missing_ok=True)
        self.process = subprocess.Popen(
            [DEVICE, "--port-file", port_file, "--telnet-port-file", telnet_port_file, "--password", PASSWORD,
             "--log", self.log_file, "--data-dir", self.data,
             "--clock", "2026-11-15 12:10:05", "--clock-stands", "--seed", "7", *options],
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL)
        wait_until(port_file.exists, what="the device's port file")
        self.port = int(port_file.read_text())
        self.telnet_port = int(telnet_port_file.read_text())

    def commands(self):
        """What the device was told, without the numbers: ["- USER admin 331", ...]."""
        return [line.split(" ", 1)[1] for line in self.log_file.read_text().splitlines()]

    def stop(self):
        self.process.terminate()
        self.process.wait(PATIENCE)


class Place:
    """A machine of its own below a temporary folder, with one site of each device it is given."""

    def __init__(self):
        self.root = pathlib.Path(tempfile.mkdtemp(prefix="qvrcom-"))
        self.environment = {**os.environ, "QVRCOM_ROOT": str(self.root / "root"), "QT_QPA_PLATFORM": "offscreen"}
        self.devices = []
        self.sites = 0

    def ctl(self, *arguments, check=None):
        result = subprocess.run([BIN / "qvrcomctl", *map(str, arguments)], env=self.environment, text=True,
                                stdin=subprocess.DEVNULL, capture_output=True, timeout=PATIENCE, check=False)
        if check is not None and result.returncode != check:
            raise AssertionError(f"qvrcomctl {arguments} ended with {result.returncode}, not {check}:\n"
                                 f"{result.stdout}\n{result.stderr}")
        return result

    def start_ctl(self, *arguments):
        return subprocess.Popen([BIN / "qvrcomctl", *map(str, arguments)], env=self.environment, text=True,
                                stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.PIPE)

    def set_up(self, *device_options, **site):
        self.ctl("setup", check=0)
        return self.add_device(*device_options, **site)

    def add_device(self, *device_options, firmware="6.61", access_code=PASSWORD):
        self.sites += 1
        folder = self.root / f"device{self.sites}"
        folder.mkdir()
        device = Device(folder, *device_options)
        self.devices.append(device)
        self.ctl("sites", "add", "--name", f"Office{self.sites}", "--id", 100 + self.sites, "--card-type", "NEW",
                 "--lan", f"127.0.0.1:{device.port}:{device.telnet_port}", "--access-code", access_code, "--firmware", firmware,
                 check=0)
        return device

    def find(self, pattern):
        return sorted(self.root.glob(f"root/**/{pattern}"))

    def scheduler(self, name):
        """The lines of a file of the scheduler folder; none when it is missing."""
        files = self.find(f"Scheduler/{name}")
        return [line for file in files for line in file.read_text().splitlines() if line]

    def assert_nothing_left(self):
        lists = ("index.sch", "CompletedToProcess.sch", "ErrorToProcess.sch", "CancelledToProcess.sch")
        left = self.job_folders() + [line for name in lists for line in self.scheduler(name)]
        assert not left, left

    def job_folders(self):
        return [path for folder in self.find("Scheduler") for path in folder.iterdir() if path.is_dir()]

    def kill_scheduler(self):
        os.kill(json.loads(self.ctl("scheduler", "status", "--json", check=0).stdout)["process"], signal.SIGKILL)

    def set_scheduler(self, **settings):
        """Writes settings of JobPilot into the user settings store."""
        file = self.find("QVRCOM+.ini")[0]
        lines = "".join(f"{key}={value}\n" for key, value in settings.items())
        file.write_text(file.read_text() + f"\n[JobPilot]\n{lines}")

    def leave(self):
        self.ctl("scheduler", "stop")
        for device in self.devices:
            device.stop()
        shutil.rmtree(self.root)
