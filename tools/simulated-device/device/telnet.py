"""The device's Telnet side: a login and a small prompt, on the FTP server's own loop."""

import socket

from pyftpdlib.ioloop import Acceptor, AsyncChat, RetryError

IAC, DONT, DO, WONT, WILL, SB, SE = 255, 254, 253, 252, 251, 250, 240
ECHO, GO_AHEAD, TERMINAL_TYPE, WINDOW_SIZE = 1, 3, 24, 31
NEGOTIATIONS = (WILL, WONT, DO, DONT)
# What the device asks for when somebody connects, as real ones do.
OPENING = bytes((IAC, WILL, GO_AHEAD, IAC, DO, TERMINAL_TYPE, IAC, DO, WINDOW_SIZE))
LONGEST_LINE = 256
TRIES = 3
HELP = "help     this list\nversion  the firmware\ntime     the device's clock\nlog      the device's log\nexit     leave"


class Reader:
    """Takes a stream of bytes apart: `typed` are those of the user, `negotiated` (verb, option) pairs."""

    def __init__(self):
        self._command = b""
        self._in_report = False

    def feed(self, data):
        typed, negotiated = bytearray(), []
        for byte in data:
            if self._command:
                self._command += bytes((byte,))
                self._finish(typed, negotiated)
            elif byte == IAC:
                self._command = bytes((IAC,))
            elif not self._in_report:
                typed.append(byte)
        return bytes(typed), negotiated

    def _finish(self, typed, negotiated):
        verb = self._command[1]
        if verb in NEGOTIATIONS and len(self._command) < 3:
            return
        if verb in NEGOTIATIONS:
            negotiated.append((verb, self._command[2]))
        elif verb == IAC and not self._in_report:
            typed.append(IAC)
        elif verb in (SB, SE):
            self._in_report = verb == SB
        self._command = b""


class TelnetHandler(AsyncChat):
    """A subclass made by `make_telnet_server` carries `prompt`."""
    prompt = None

    def __init__(self, sock, ioloop):
        super().__init__(sock, ioloop)
        self._reader = Reader()
        self._line = bytearray()
        self._after_return = False
        self._tries = 0
        self._answer = self._take_user
        self._leaving = False
        self.push(OPENING)
        self._say("Device ready.\nlogin: ")

    def handle_read(self):
        try:
            data = self.recv(4096)
        except RetryError:
            return
        typed, negotiated = self._reader.feed(data)
        for verb, option in negotiated:
            self._negotiate(verb, option)
        for byte in typed:
            self._type(byte)

    def handle_close(self):
        # Closing while the peer still sends would reset the connection and lose it what was said last.
        if self._leaving:
            self._leaving = False
            try:
                return self.socket.shutdown(socket.SHUT_WR)
            except OSError:
                pass  # the peer has gone already
        self.close()

    def _negotiate(self, verb, option):
        if verb == WILL and option == TERMINAL_TYPE:
            self.push(bytes((IAC, SB, TERMINAL_TYPE, 1, IAC, SE)))
        elif verb == DO and option not in (ECHO, GO_AHEAD):
            self.push(bytes((IAC, WONT, option)))
        elif verb == WILL and option != WINDOW_SIZE:
            self.push(bytes((IAC, DONT, option)))

    def _type(self, byte):
        ends = byte in (10, 13) and not (byte == 10 and self._after_return)
        self._after_return = byte == 13
        if ends:
            line, self._line = self._line.decode("utf-8", "replace"), bytearray()
            self._answer(line)
        elif byte not in (0, 10) and len(self._line) < LONGEST_LINE:
            self._line.append(byte)

    def _say(self, text):
        self.push(text.replace("\n", "\r\n").encode().replace(b"\xff", b"\xff\xff"))

    def _take_user(self, line):
        self._user = line
        self._answer = self._take_password
        # The device says it echoes and shows nothing: that hides the password.
        self.push(bytes((IAC, WILL, ECHO)))
        self._say("password: ")

    def _take_password(self, line):
        self.push(bytes((IAC, WONT, ECHO)))
        self._tries += 1
        if self.prompt.knows(self._user, line):
            self._answer = self._take_command
            self._say(f"\nWelcome, {self._user}.\n> ")
        elif self._tries < TRIES:
            self._answer = self._take_user
            self._say("\nLogin incorrect.\nlogin: ")
        else:
            self._leave("\nLogin incorrect.\n")

    def _take_command(self, line):
        if line.strip() == "exit":
            return self._leave("Good bye.\n")
        answer = self.prompt.answer(line.strip())
        return self._say(f"{answer}\n> " if answer else "> ")

    def _leave(self, text):
        self._answer = lambda line: None
        self._leaving = True
        self._say(text)
        self.close_when_done()


class Prompt:
    """What the device answers to a command, and to whom."""

    def __init__(self, device, firmware, user, password):
        self._account = (user, password)
        self._commands = {
            "": lambda: "",
            "help": lambda: HELP,
            "version": lambda: f"Firmware {firmware}",
            "time": lambda: f"{device.clock.now():%Y-%m-%d %H:%M:%S}",
            "log": lambda: device.own_account.read("log").decode().replace("\r\n", "\n").rstrip("\n"),
        }

    def knows(self, user, password):
        return (user, password) == self._account

    def answer(self, command):
        return self._commands.get(command, lambda: f"{command}: no such command; try help")()


class TelnetServer(Acceptor):
    def __init__(self, prompt, ioloop, port=0):
        super().__init__(ioloop=ioloop)
        self._handler = type("Handler", (TelnetHandler,), dict(prompt=prompt))
        self.create_socket(socket.AF_INET)
        self.set_reuse_addr()
        self.bind(("127.0.0.1", port))
        self.listen(8)
        self.port = self.socket.getsockname()[1]

    def handle_accepted(self, sock, address):
        self._handler(sock, self.ioloop)
