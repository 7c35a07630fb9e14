"""The device serves, byte for byte, the samples that the library's readers are tested with."""

from pathlib import Path

from device_process import DeviceTest, get

SAMPLES = Path(__file__).resolve().parents[2] / "fuzz" / "samples"
FILES = ((None, "time", "device_time"), (None, "sysinfo", "system_information"), (None, "dbase", "system_image"),
         ("part3", "dbase", "partition_image"), ("part3", "linestat", "line_statistics"),
         ("part3", "nodestat", "node_statistics"))


class Formats(DeviceTest):
    def test_files_are_the_samples(self):
        ftp = self.client(self.start("--clock", "2026-11-16 12:10:05", "--firmware", "5.01", "--partitions", "1-3,64"))
        for account, name, sample in FILES:
            with self.subTest(account=account, name=name):
                if account:
                    ftp.sendcmd(f"ACCT {account}")
                self.assertEqual(get(ftp, name), (SAMPLES / sample / "whole").read_bytes())
