import unittest

from device_process import PASSWORD, DeviceTest, get, outcome, put

from device.faults import parse_fault

# Fault, what the client then sees, and how many bytes of the download had come by then.
DOWNLOADS = (("RETR#1:550", "550", 0), ("RETR#2:drop", "cut", 0), ("RETR#3:drop=100", "cut", 100),
             ("RETR#4:truncate=100", "ok", 100), ("RETR#5:stall", "silence", 0), ("RETR#6:stall=100", "silence", 100),
             ("RETR#7:451=100", "451", 100), ("RETR#8:mute", "silence", 0), ("RETR#9:421", "421", 0),
             ("RETR#10:truncate=9999999", "ok", None), ("RETR#11:reset=100", "cut", 100),
             ("RETR#12:silent", "silence", None), ("RETR#13:350", "350", 0))
UPLOADS = (("STOR#1:552", "552"), ("STOR#2:452=1000", "452"), ("STOR#3:drop", "cut"), ("STOR#4:drop=1000", "cut"),
           ("STOR#5:stall=1000", "silence"), ("STOR#6:drop=9999999", "ok"))
IMPATIENT = 0.5


def options(faults):
    return [word for fault in faults for word in ("--fault", fault)]


def patience(expected):
    return IMPATIENT if expected == "silence" else 20


def limit(ftp, expected):
    ftp.timeout = patience(expected)
    ftp.sock.settimeout(ftp.timeout)


class Faults(DeviceTest):
    def test_connecting_and_login(self):
        device = self.start(*options(("connect#1:drop", "connect#2:mute", "connect#3:421", "login#1:530", "ACCT#1:421",
                                      "ACCT#2:drop", "ACCT#3:mute")))
        for expected in ("cut", "silence", "421", "530", "ok"):
            self.assertEqual(outcome(lambda: self.client(device, timeout=patience(expected))), expected)
        for expected in ("421", "cut", "silence", "ok"):
            self.assertEqual(outcome(lambda: self.client(device, "part1", patience(expected))), expected)

    def test_downloads(self):
        device = self.start(*options(fault for fault, *_ in DOWNLOADS))
        whole = len(get(self.client(self.start(), "part1"), "msg.001"))
        for fault, expected, came in DOWNLOADS:
            with self.subTest(fault=fault):
                ftp = self.client(device, "part1")
                limit(ftp, expected)
                received = bytearray()
                self.assertEqual(outcome(lambda: get(ftp, "msg.001", received)), expected)
                self.assertEqual(len(received), whole if came is None else came)
        endings = [line.split()[-1] for line in device.log_lines() if "RETR" in line]
        self.assertEqual(endings, ["550", "drop", "drop", "226", "stall", "stall", "451", "mute", "421", "226", "226",
                                   "silent", "350"])

    def test_replies_that_are_wrong(self):
        device = self.start(*options(("SIZE#1:size=-5", "RETR:size=7", "NOOP#1:twice", "DELE:150")))
        ftp = self.client(device, "part1")
        ftp.voidcmd("TYPE I")
        self.assertEqual([ftp.sendcmd("SIZE msg.001"), ftp.sendcmd("DELE msg.001")[:3]], ["213 -5", "150"])
        data, size = ftp.ntransfercmd("RETR msg.001")
        data.close()
        self.assertEqual(size, 7)
        ftp = self.client(device, "part1")
        self.assertEqual(len({ftp.sendcmd("NOOP"), ftp.getline()}), 1)

    def test_uploads(self):
        """Only an upload that went through changes the file."""
        device = self.start(*options(fault for fault, *_ in UPLOADS))
        before = get(self.client(device, "part1"), "dbase")
        for fault, expected in UPLOADS:
            with self.subTest(fault=fault):
                ftp = self.client(device, "part1")
                limit(ftp, expected)
                # The client may notice the closed data connection before it reads the reply.
                self.assertIn(outcome(lambda: put(ftp, "dbase", bytes(5000))), (expected, "cut"))
                after = get(self.client(device, "part1"), "dbase")
                self.assertEqual(after, bytes(5000) if expected == "ok" else before)

    def test_counting(self):
        device = self.start(*options(("NOOP#2+:450", "*#6:550", "*#7:mute")))
        ftp = self.client(device)
        self.assertEqual([outcome(lambda: ftp.sendcmd(command)) for command in ("NOOP", "NOOP", "NOOP", "PWD")],
                         ["ok", "450", "450", "550"])
        limit(ftp, "silence")
        self.assertEqual(outcome(lambda: ftp.sendcmd("SYST")), "silence")
        ftp.putcmd("NOOP")
        self.assertEqual(outcome(lambda: self.client(device)), "ok")
        self.assertEqual([line for line in device.log_lines() if "mute" in line],
                         ["7 device SYST mute", "8 device NOOP mute"])
        self.assertNotIn(PASSWORD, "".join(device.log_lines()))


class Grammar(unittest.TestCase):
    def test_what_is_no_fault(self):
        for spec in ("", "RETR", "RETR:", "RETR#0:drop", "RETR#x:drop", "RETR:220", "RETR:sleep", "RETR:truncate",
                     "STOR:truncate=5", "ACCT:stall", "ACCT:drop=5", "*:stall", "RETR:mute=5", "RETR:drop=-1", "DELE:size=5",
                     "SIZE:size", "ACCT:silent", "RETR:reset"):
            with self.subTest(spec=spec), self.assertRaises(ValueError):
                parse_fault(spec)
