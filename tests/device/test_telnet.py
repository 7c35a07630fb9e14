"""The device's Telnet side, byte by byte as a client that negotiates nothing of its own would see it."""
import socket
import tempfile
from pathlib import Path

from device_process import MONDAY_NOON, PASSWORD, DeviceTest

IAC, DONT, DO, WONT, WILL, SB, SE = (bytes((code,)) for code in (255, 254, 253, 252, 251, 250, 240))
ECHO, GO_AHEAD, TERMINAL_TYPE, WINDOW_SIZE = (bytes((code,)) for code in (1, 3, 24, 31))


class Telnet(DeviceTest):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.port_file = Path(folder.name, "telnet")
        self.device = self.start("--telnet-port-file", self.port_file, "--clock-stands", "--firmware", "6.61")

    def dial(self):
        peer = socket.create_connection(("127.0.0.1", int(self.port_file.read_text())), timeout=20)
        self.addCleanup(peer.close)
        return peer

    def read_to(self, peer, end):
        heard = b""
        while not heard.endswith(end):
            heard += self.some(peer)
        return heard

    def some(self, peer):
        data = peer.recv(1)
        self.assertTrue(data, "the device hung up")
        return data

    def log_in(self, peer, password=PASSWORD):
        self.read_to(peer, b"login: ")
        peer.sendall(b"admin\r\n")
        self.read_to(peer, b"password: ")
        peer.sendall(password.encode() + b"\r\0")

    def test_a_session(self):
        peer = self.dial()
        opening = self.read_to(peer, b"login: ")
        self.assertEqual(opening, IAC + WILL + GO_AHEAD + IAC + DO + TERMINAL_TYPE + IAC + DO + WINDOW_SIZE +
                         b"Device ready.\r\nlogin: ")
        peer.sendall(IAC + WILL + TERMINAL_TYPE)
        self.assertEqual(self.read_to(peer, SE), IAC + SB + TERMINAL_TYPE + b"\1" + IAC + SE)
        # Reports and commands in the middle of a line are no part of it.
        peer.sendall(b"ad" + IAC + SB + TERMINAL_TYPE + b"\0VT\xff\xff100\r\n" + IAC + SE + b"min\r\n")
        self.assertEqual(self.read_to(peer, b"password: "), IAC + WILL + ECHO + b"password: ")
        peer.sendall(PASSWORD.encode() + b"\n")
        self.assertEqual(self.read_to(peer, b"> "), IAC + WONT + ECHO + b"\r\nWelcome, admin.\r\n> ")
        for line, answer in ((b"version", "Firmware 6.61"), (b"time", MONDAY_NOON), (b"", None),
                             (b"dance", "dance: no such command; try help")):
            peer.sendall(line + b"\r\n")
            self.assertEqual(self.read_to(peer, b"> "), f"{answer}\r\n> ".encode() if answer else b"> ")
        peer.sendall(b"log\r\n")
        self.assertIn(b"\r\n", self.read_to(peer, b"> "))
        peer.sendall(IAC + DO + b"\x27" + b"exit\r\n")
        self.assertEqual(peer.makefile("rb").read(), IAC + WONT + b"\x27" + b"Good bye.\r\n")

    def test_a_wrong_password_three_times(self):
        peer = self.dial()
        for _ in range(3):
            self.log_in(peer, "open")
        self.assertTrue(peer.makefile("rb").read().endswith(b"Login incorrect.\r\n"))
        # Another connection is served meanwhile, and after one that went without a word.
        self.dial().close()
        self.log_in(self.dial())
