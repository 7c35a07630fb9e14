"""Faults on demand: which command they strike and what the device then does instead of its duty."""

import re
from collections import Counter
from dataclasses import dataclass
from typing import Optional

TRANSFERS = ("RETR", "STOR")
CONNECT = "CONNECT"
ALIASES = {"LOGIN": "PASS"}

GRAMMAR = """\
FAULT    = WHEN ":" WHAT
WHEN     = COMMAND | COMMAND "#" N | COMMAND "#" N "+"
           every time, the Nth time, from the Nth time on; counted from 1 over all connections
COMMAND  = an FTP command | "login" (the password) | "connect" (a new connection) | "*" (any FTP command)
WHAT     = 100 to 199, 300 to 999
                              reply with this code and do nothing; 421 also hangs up
         | code "=" BYTES     RETR, STOR: reply with this code after so many bytes
         | "twice"            do it and give the reply twice
         | "size=" NUMBER     SIZE, RETR: do it and say that the file has so many bytes, in the reply 213 or 150
         | "drop"             cut the connection without a reply
         | "drop=" BYTES      RETR, STOR: cut both connections after so many bytes
         | "stall"            RETR, STOR: open the data connection, then let nothing through
         | "stall=" BYTES     the same after so many bytes
         | "truncate=" BYTES  RETR: send so many bytes and call it complete
         | "reset=" BYTES     RETR, STOR: reset the data connection after so many bytes and call it complete
         | "silent"           RETR, STOR: never give the final reply
         | "mute"             never answer on this connection again
Several faults combine; of those that strike the same command the first one given does.
A transfer that ends before BYTES goes through unharmed.
"""


@dataclass(frozen=True)
class Fault:
    command: str
    first: int
    last: Optional[int]  # None: no end
    action: str  # "reply" or a word of the grammar
    code: int = 0
    after: Optional[int] = None  # bytes of the transfer that pass first; None: struck before it begins
    size: int = 0  # what "size" says

    @property
    def in_transfer(self):
        return self.after is not None

    @property
    def spoils_reply(self):
        """The command does its duty, and only what is said of it is wrong."""
        return self.action in ("twice", "size", "silent")

    def strikes(self, command, count, total):
        if self.command not in (command, "*") or (self.command == "*" and command == CONNECT):
            return False
        nth = total if self.command == "*" else count
        return self.first <= nth and (self.last is None or nth <= self.last)


def parse_fault(spec):
    """Raises ValueError with what is wrong."""
    match = re.fullmatch(r"([A-Za-z]+|\*)(?:#(\d+)(\+?))?:([a-z]+|[13-9]\d\d)(?:=(-?\d+))?", spec)
    if not match:
        raise ValueError(f"'{spec}' is not a fault; for example 'RETR#1:drop'")
    command, nth, onwards, action, number = match.groups()
    first, last = (int(nth), None if onwards else int(nth)) if nth else (1, None)
    if first == 0:
        raise ValueError(f"'{spec}': commands are counted from 1")
    command = ALIASES.get(command.upper(), command.upper())
    code, action = (int(action), "reply") if action.isdigit() else (0, action)
    number = int(number) if number else 0 if action == "stall" else None
    fault = Fault(command, first, last, action, code, None if action == "size" else number, number or 0)
    _check(spec, fault, number)
    return fault


# By action: the commands that it may strike, or None for all, and whether it has a number behind it.
FORMS = {"reply": (None, False), "drop": (None, False), "mute": (None, False), "twice": (None, False),
         "size": (("SIZE", "RETR"), True), "truncate": (("RETR",), True), "reset": (TRANSFERS, True),
         "silent": (TRANSFERS, False), "stall": (TRANSFERS, True)}


def _check(spec, fault, number):
    if fault.action not in FORMS:
        raise ValueError(f"'{spec}': no fault is called '{fault.action}'")
    commands, numbered = FORMS[fault.action]
    if commands and fault.command not in commands:
        raise ValueError(f"'{spec}': '{fault.action}' strikes {' and '.join(commands)} only")
    if fault.in_transfer and (fault.command not in TRANSFERS or fault.after < 0):
        raise ValueError(f"'{spec}': only a fault of RETR or STOR can wait for bytes")
    waits = fault.action in ("reply", "drop") and fault.in_transfer
    if numbered != (number is not None) and not waits:
        raise ValueError(f"'{spec}': a number {'is missing' if numbered else 'has no meaning here'}")


class FaultPlan:
    """Counts commands and says which fault strikes."""

    def __init__(self, faults):
        self._faults = tuple(faults)
        self._counts = Counter()

    def next_for(self, command):
        """The fault that strikes this command, or None. To be asked once per command received."""
        self._counts[command] += 1
        self._counts["*"] += command != CONNECT
        return next((fault for fault in self._faults
                     if fault.strikes(command, self._counts[command], self._counts["*"])), None)
