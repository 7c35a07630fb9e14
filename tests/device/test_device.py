import csv
import socket
import struct
import tempfile
from datetime import datetime
from pathlib import Path

from device_process import PASSWORD, DeviceTest, get, outcome, put

from device.formats import time_file

SAMPLES = Path(__file__).resolve().parents[2] / "fuzz" / "samples"
FILES = ((None, "time", "device_time"), (None, "sysinfo", "system_information"), (None, "dbase", "system_image"),
         ("part3", "dbase", "partition_image"), ("part3", "linestat", "line_statistics"),
         ("part3", "nodestat", "node_statistics"))


class Files(DeviceTest):
    def test_they_are_the_samples_that_the_librarys_readers_are_tested_with(self):
        ftp = self.client(self.start("--clock", "2026-11-16 12:10:05", "--firmware", "5.01", "--partitions", "1-3,64"))
        for account, name, sample in FILES:
            with self.subTest(account=account, name=name):
                if account:
                    ftp.sendcmd(f"ACCT {account}")
                self.assertEqual(get(ftp, name), (SAMPLES / sample / "whole").read_bytes())

    def test_an_upload_lands_in_the_selected_account_and_outlives_the_device(self):
        with tempfile.TemporaryDirectory() as folder:
            device = self.start(folder=folder)
            ftp = self.client(device)
            untouched = get(ftp, "dbase")
            ftp.sendcmd("ACCT part2")
            put(ftp, "dbase", b"\r\nnew\n\0image")
            device.stop()
            again = self.start(folder=folder)
            self.assertEqual(get(self.client(again, "part2"), "dbase"), b"\r\nnew\n\0image")
            self.assertEqual(get(self.client(again), "dbase"), untouched)

    def test_refusals(self):
        ftp = self.client(self.start("--partitions", "1"))
        for account in ("part4", "part01", "part1;", "1"):
            self.assertEqual(outcome(lambda: ftp.sendcmd(f"ACCT {account}")), "501", account)
        rows = [(None, "sysinfo", "550", "550"), (None, "log", "550", "ok"),
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

    def test_the_message_index_follows_the_messages(self):
        ftp = self.client(self.start(), "part1")
        for name in (name for name in ftp.nlst() if name.startswith("msg.")):
            ftp.delete(name)
        put(ftp, "msg.007", bytes(8000))
        put(ftp, "msg.300", bytes(500))
        self.assertEqual(get(ftp, "msgindex"), struct.pack(">iiHhiHhi", 8500, 4800000, 0, 7, 8000, 0, 300, 500))

    def test_the_time_file_is_the_clock(self):
        ftp = self.client(self.start())
        december = time_file(datetime(2026, 12, 1, 9, 45, 30))
        put(ftp, "time", december)
        self.assertEqual(ftp.sendcmd("MDTM time"), "213 20261201094530")
        for damaged in (december[:7], december[:7] + b"\0", b"XX" + december[2:], bytes(8)):
            self.assertEqual(outcome(lambda: put(ftp, "time", damaged)), "550")
        self.assertEqual(get(ftp, "time"), december)

    def test_deleting_restarts_the_counters(self):
        device = self.start()
        ftp, other = self.client(device, "part3"), self.client(device, "part4")
        elsewhere = get(other, "allstats.csv")

        def counts():
            """The sums of the tables of lines and of nodes."""
            lines, nodes = get(ftp, "allstats.csv").decode("ascii").split("\r\n\r\n")[:2]
            return [sum(map(int, next(row[1:] for row in csv.reader(lines.splitlines()) if row[0] == "Total"))),
                    sum(int(row[2]) for row in list(csv.reader(nodes.splitlines()))[1:])]

        seen = [counts()]
        for name in ("linestat", "nodestat"):
            ftp.delete(name)
            seen.append(counts())
        self.assertTrue(all(seen[0]))
        self.assertEqual(seen[1:], [[0, seen[0][1]], [0, 0]])
        self.assertEqual(get(other, "allstats.csv"), elsewhere)

    def test_old_firmware_has_no_table(self):
        for firmware, expected in (("5.CB", "550"), ("5.02", "ok")):
            ftp = self.client(self.start("--firmware", firmware), "part3")
            self.assertEqual(outcome(lambda: get(ftp, "allstats.csv")), expected)


class Conversation(DeviceTest):
    def test_no_line_of_the_log_holds_the_password(self):
        device = self.start()
        outcome(lambda: self.client(device).sendcmd(f"XYZ {PASSWORD}"))
        self.assertEqual(device.commands(), ["- USER admin 331", "- PASS **** 230", "device XYZ **** 500"])

    def test_a_wrong_password_three_times_over_telnet(self):
        peer = socket.create_connection(("127.0.0.1", self.start().telnet_port), timeout=20)
        self.addCleanup(peer.close)
        peer.sendall(b"admin\r\nopen\r\n" * 3)
        self.assertTrue(peer.makefile("rb").read().endswith(b"Login incorrect.\r\n"))
