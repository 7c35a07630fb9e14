"""Starts the simulated device as its users do and speaks to it with the standard FTP client."""
import ftplib
import io
import sys
import tempfile
import unittest
from pathlib import Path

TREE = Path(__file__).resolve().parents[2]
sys.path[:0] = [str(TREE / "tests" / "programs"), str(TREE / "tools" / "simulated-device")]
sys.dont_write_bytecode = True

from harness import PASSWORD, Device


class DeviceTest(unittest.TestCase):
    def start(self, *options, folder=None):
        if folder is None:
            place = tempfile.TemporaryDirectory()
            self.addCleanup(place.cleanup)
            folder = place.name
        device = Device(Path(folder), *options)
        self.addCleanup(device.stop)
        return device

    def client(self, device, account=None):
        ftp = ftplib.FTP(timeout=20)
        self.addCleanup(ftp.close)
        ftp.connect("127.0.0.1", device.port)
        ftp.login("admin", PASSWORD)
        if account:
            ftp.sendcmd(f"ACCT {account}")
        return ftp


def get(ftp, name):
    received = bytearray()
    ftp.retrbinary(f"RETR {name}", received.extend)
    return bytes(received)


def put(ftp, name, data):
    return ftp.storbinary(f"STOR {name}", io.BytesIO(data))


def outcome(operation):
    """"ok" or the code of a refusal."""
    try:
        operation()
    except ftplib.Error as error:
        return str(error)[:3]
    return "ok"
