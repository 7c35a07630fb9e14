"""Starts the simulated device as its users do and speaks to it with the standard FTP client."""

import ftplib
import io
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

TOOL = Path(__file__).resolve().parents[2] / "tools" / "simulated-device"
sys.path.insert(0, str(TOOL))
sys.dont_write_bytecode = True

PASSWORD = "gentle-rain"
MONDAY_NOON = "2026-11-16 12:10:05"


class DeviceProcess:
    def __init__(self, *options):
        self._folder = tempfile.TemporaryDirectory()
        self.port_file = Path(self._folder.name, "port")
        self.log_file = Path(self._folder.name, "log")
        self.process = subprocess.Popen(
            [TOOL / "simulated-device", "--port-file", self.port_file, "--log", self.log_file, "--password", PASSWORD,
             "--clock", MONDAY_NOON, *options], stdout=subprocess.DEVNULL)
        deadline = time.monotonic() + 30
        while not self.port_file.exists():
            if self.process.poll() is not None or time.monotonic() > deadline:
                self.stop()
                raise RuntimeError("the device did not start")
            time.sleep(0.01)
        self.port = int(self.port_file.read_text())

    def connect(self, timeout=20):
        ftp = ftplib.FTP(timeout=timeout)
        try:
            ftp.connect("127.0.0.1", self.port)
        except Exception:
            ftp.close()
            raise
        return ftp

    def log_lines(self):
        return self.log_file.read_text().splitlines()

    def stop(self):
        self.process.terminate()
        try:
            return self.process.wait(20)
        finally:
            self.process.kill()
            self._folder.cleanup()


class DeviceTest(unittest.TestCase):
    def start(self, *options):
        device = DeviceProcess(*options)
        self.addCleanup(device.stop)
        return device

    def client(self, device, account=None, timeout=20):
        ftp = device.connect(timeout)
        self.addCleanup(ftp.close)
        ftp.login("admin", PASSWORD)
        if account:
            ftp.sendcmd(f"ACCT {account}")
        return ftp


def get(ftp, name, received=None):
    """`received` keeps what came before a failure."""
    received = bytearray() if received is None else received
    ftp.retrbinary(f"RETR {name}", received.extend)
    return bytes(received)


def put(ftp, name, data):
    return ftp.storbinary(f"STOR {name}", io.BytesIO(data))


def outcome(operation):
    """What the client makes of it: "ok", the code of a refusal, "cut" or "silence"."""
    try:
        operation()
    except ftplib.Error as error:
        return str(error)[:3]
    except TimeoutError:
        return "silence"
    except (EOFError, ConnectionError):
        return "cut"
    return "ok"
