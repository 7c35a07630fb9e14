import socket
import struct
import tempfile
from datetime import datetime
from pathlib import Path

from device_process import PASSWORD, DeviceTest, get, outcome, put

from device.formats import time_file


class Accounts(DeviceTest):
    def test_only_partitions_that_are_present_can_be_selected(self):
        ftp = self.client(self.start("--partitions", "1-3,64"))
        for account, expected in (("part1", "ok"), ("part64", "ok"), ("part4", "501"), ("part65", "501"),
                                  ("part0", "501"), ("part07", "501"), ("part1;", "501"), ("3", "501")):
            with self.subTest(account=account):
                self.assertEqual(outcome(lambda: ftp.sendcmd(f"ACCT {account}")), expected)

    def test_an_upload_lands_in_the_selected_account_and_outlives_the_device(self):
        with tempfile.TemporaryDirectory() as folder:
            device = self.start(folder=folder)
            ftp = self.client(device)
            untouched = get(ftp, "dbase")
            ftp.sendcmd("ACCT part2")
            put(ftp, "dbase", b"\r\nnew\n\0image")
            self.assertEqual(Path(folder, "data", "part2", "dbase").read_bytes(), b"\r\nnew\n\0image")
            device.stop()
            again = self.start(folder=folder)
            self.assertEqual(get(self.client(again, "part2"), "dbase"), b"\r\nnew\n\0image")
            self.assertEqual(get(self.client(again), "dbase"), untouched)

    def test_refusals(self):
        ftp = self.client(self.start("--partitions", "1"))
        rows = [(None, "sysinfo", "550", "550"), (None, "time", "550", "550"), (None, "log", "550", "ok"),
                (None, "allstats.csv", "ok", "ok"),  # of no meaning outside a partition, so a file like any other
                ("part1", "allstats.csv", "550", "550"), ("part1", "msgindex", "550", "550"),
                ("part1", "linestat", "550", "ok"), ("part1", "folder/file", "550", "550"), ("part1", "..", "550", "550"),
                ("part1", "firmware", "ok", "ok")]
        for account, name, upload, delete in rows:
            with self.subTest(account=account, name=name):
                if account:
                    ftp.sendcmd(f"ACCT {account}")
                self.assertEqual(outcome(lambda: put(ftp, name, b"seven..")), upload)
                self.assertEqual(outcome(lambda: ftp.delete(name)), delete)
        self.assertEqual(outcome(lambda: get(ftp, "firmware")), "550")


class Files(DeviceTest):
    def test_the_message_index_follows_the_messages(self):
        ftp = self.client(self.start(), "part1")
        for name in (name for name in ftp.nlst() if name.startswith("msg.")):
            length = len(get(ftp, name))
            self.assertEqual(ftp.size(name), length)
            ftp.delete(name)
        put(ftp, "msg.007", bytes(8000))
        put(ftp, "msg.300", bytes(500))
        self.assertEqual(get(ftp, "msgindex"), struct.pack(">iiHhiHhi", 8500, 4800000, 0, 7, 8000, 0, 300, 500))

    def test_the_time_file_is_the_clock(self):
        ftp = self.client(self.start())
        sunday_noon, december = time_file(datetime(2026, 11, 15, 12, 10, 5)), time_file(datetime(2026, 12, 1, 9, 45, 30))
        self.assertEqual(get(ftp, "time"), sunday_noon)
        put(ftp, "time", december)
        self.assertEqual(ftp.sendcmd("MDTM time"), "213 20261201094530")
        for damaged in (december[:7], december[:7] + b"\0", b"XX" + december[2:], bytes(8)):
            self.assertEqual(outcome(lambda: put(ftp, "time", damaged)), "550")
        self.assertEqual(get(ftp, "time"), december)


class CommandLog(DeviceTest):
    def test_no_line_holds_the_password(self):
        device = self.start()
        outcome(lambda: self.client(device).sendcmd(f"XYZ {PASSWORD}"))
        self.assertEqual(device.commands(), ["- USER admin 331", "- PASS **** 230", "device XYZ **** 500"])


class Telnet(DeviceTest):
    def test_a_wrong_password_three_times(self):
        peer = socket.create_connection(("127.0.0.1", self.start().telnet_port), timeout=20)
        self.addCleanup(peer.close)
        peer.sendall(b"admin\r\nopen\r\n" * 3)
        self.assertTrue(peer.makefile("rb").read().endswith(b"Login incorrect.\r\n"))
