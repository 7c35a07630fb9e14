"""The command log: one line per FTP command, `NUMBER ACCOUNT COMMAND ARGUMENT REPLY`.

NUMBER counts the commands in the order received. A line is written when its command has ended, so that
lines of one connection stand in order, while a long transfer of another connection may come later.
REPLY is the final code, or "drop", "stall", "silent", "mute" for a command struck by such a fault, or "-" when the
connection ended first.
"""


class CommandLog:
    def __init__(self, path, secret):
        self._file = open(path, "ab", buffering=0) if path else None
        self._secret = secret
        self._received = 0

    def entry(self, account, command, argument):
        self._received += 1
        if command == "PASS" or argument == self._secret:
            argument = "****"
        words = (str(self._received), account, _printable(command), _printable(argument))
        return LogEntry(self, " ".join(word for word in words if word))

    def write(self, line):
        if self._file:
            self._file.write(line.encode() + b"\n")


class LogEntry:
    """A command on its way; the first ending counts."""

    def __init__(self, log, text):
        self._log = log
        self._text = text

    def end(self, reply):
        if self._log:
            self._log.write(f"{self._text} {reply}")
            self._log = None


def _printable(text):
    return "".join(c if c.isprintable() else f"\\x{ord(c):02x}" for c in text)
