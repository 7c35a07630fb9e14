import re
import struct
import tempfile
from datetime import datetime
from pathlib import Path

from device_process import PASSWORD, DeviceTest, get, outcome, put

from device.formats import time_file


class Login(DeviceTest):
    def test_only_the_right_name_and_password_get_in(self):
        device = self.start()
        for user, password, expected in (("admin", PASSWORD, "ok"), ("admin", "gentle", "530"),
                                         ("root", PASSWORD, "530")):
            with self.subTest(user=user, password=password), device.connect() as ftp:
                self.assertEqual(outcome(lambda: ftp.sendcmd("ACCT part1")), "530")
                self.assertEqual(outcome(lambda: ftp.login(user, password)), expected)

    def test_a_signal_ends_it_cleanly(self):
        device = self.start()
        self.client(device)
        self.assertEqual(device.stop(), 0)
        self.assertFalse(device.port_file.exists())


class Accounts(DeviceTest):
    def test_only_partitions_that_are_present_can_be_selected(self):
        ftp = self.client(self.start("--partitions", "1-3,64"))
        for account, expected in (("part1", "ok"), ("part64", "ok"), ("part4", "501"), ("part65", "501"),
                                  ("part0", "501"), ("part07", "501"), ("part1;", "501"), ("3", "501")):
            with self.subTest(account=account):
                self.assertEqual(outcome(lambda: ftp.sendcmd(f"ACCT {account}")), expected)
        ftp.sendcmd("ACCT part2")
        before = get(ftp, "dbase")
        outcome(lambda: ftp.sendcmd("ACCT part4"))
        self.assertEqual(get(ftp, "dbase"), before)

    def test_an_upload_lands_in_the_selected_account_and_outlives_the_device(self):
        with tempfile.TemporaryDirectory() as folder:
            device = self.start("--data-dir", folder)
            ftp = self.client(device)
            untouched = get(ftp, "dbase")
            ftp.sendcmd("ACCT part2")
            put(ftp, "dbase", b"\r\nnew\n\0image")
            self.assertEqual(Path(folder, "part2", "dbase").read_bytes(), b"\r\nnew\n\0image")
            device.stop()
            again = self.start("--data-dir", folder)
            self.assertEqual(get(self.client(again, "part2"), "dbase"), b"\r\nnew\n\0image")
            self.assertEqual(get(self.client(again), "dbase"), untouched)
            self.assertNotEqual(get(self.client(again, "part1"), "dbase"), b"\r\nnew\n\0image")

    def test_refusals(self):
        ftp = self.client(self.start("--partitions", "1"))
        rows = [(None, "sysinfo", "550", "550"), (None, "time", "550", "550"), (None, "log", "550", "ok"),
                (None, "allstats.csv", "ok", "ok"),  # of no meaning outside a partition, so a file like any other
                ("part1", "allstats.csv", "550", "550"), ("part1", "msgindex", "550", "550"),
                ("part1", "linestat", "550", "ok"), ("part1", "folder/file", "550", "550"), ("part1", "..", "550", "550"),
                ("part1", "firmware", "ok", "ok"), ("part1", "firmware.old", "ok", "ok")]
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
        ftp = self.client(self.start("--clock-stands"))
        monday_noon, december = time_file(datetime(2026, 11, 16, 12, 10, 5)), time_file(datetime(2026, 12, 1, 9, 45, 30))
        self.assertEqual(get(ftp, "time"), monday_noon)
        put(ftp, "time", december)
        self.assertEqual(ftp.sendcmd("MDTM time"), "213 20261201094530")
        for damaged in (december[:7], december[:7] + b"\0", b"XX" + december[2:], bytes(8)):
            self.assertEqual(outcome(lambda: put(ftp, "time", damaged)), "550")
        self.assertEqual(get(ftp, "time"), december)

    def test_a_deleted_log_starts_again(self):
        ftp = self.client(self.start("--clock-stands"))
        for name, entry in (("log", rb"\d{4}-\d\d-\d\d \d\d:\d\d:\d\d  .+"), ("same.log", rb".+  (ZCZC-.+|NNNN)")):
            lines = get(ftp, name).split(b"\r\n")
            self.assertEqual(lines.pop(), b"")
            self.assertTrue(lines and all(re.fullmatch(entry, line) for line in lines), lines)
            ftp.delete(name)
            self.assertEqual(get(ftp, name), b"")

    def test_both_passive_modes_and_a_second_client(self):
        device = self.start()
        first, second = self.client(device, "part3"), self.client(device, "part4")
        second.af = 0  # makes the client ask for EPSV
        self.assertNotEqual(get(first, "dbase"), get(second, "dbase"))
        self.assertEqual(len(get(self.client(device), "sysinfo")), 72)
        lines = device.log_lines()
        self.assertTrue(any(" part3 PASV " in line for line in lines) and any(" part4 EPSV " in line for line in lines))


class CommandLog(DeviceTest):
    def test_every_command_has_its_line_and_none_the_password(self):
        device = self.start("--fault", "DELE#1:450")
        ftp = self.client(device, "part3")
        get(ftp, "dbase")
        put(ftp, "firmware", b"x")
        for command in ("DELE firmware", "DELE firmware", f"XYZ {PASSWORD}", "NOOP"):
            outcome(lambda: ftp.sendcmd(command))
        ftp.quit()
        self.assertEqual([line for line in device.log_lines() if "PASV" not in line],
                         ["1 - USER admin 331", "2 - PASS **** 230", "3 device ACCT part3 230", "4 part3 TYPE I 200",
                          "6 part3 RETR dbase 226", "7 part3 TYPE I 200", "9 part3 STOR firmware 226",
                          "10 part3 DELE firmware 450", "11 part3 DELE firmware 250", "12 part3 XYZ **** 500",
                          "13 part3 NOOP 200", "14 part3 QUIT 221"])
