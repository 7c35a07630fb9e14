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
WHAT     = 400 to 599         reply with this code and do nothing; 421 also hangs up
         | code "=" BYTES     RETR, STOR: reply with this code after so many bytes
         | "drop"             cut the connection without a reply
         | "drop=" BYTES      RETR, STOR: cut both connections after so many bytes
         | "stall"            RETR, STOR: open the data connection, then let nothing through
         | "stall=" BYTES     the same after so many bytes
         | "truncate=" BYTES  RETR: send so many bytes and call it complete
         | "mute"             never answer on this connection again
Several faults combine; of those that strike the same command the first one given does.
A transfer that ends before BYTES goes through unharmed.
"""


@dataclass(frozen=True)
class Fault:
    command: str
    first: int
    last: Optional[int]  # None: no end
    action: str  # "reply", "drop", "stall", "truncate" or "mute"
    code: int = 0
    after: Optional[int] = None  # bytes of the transfer that pass first; None: struck before it begins

    @property
    def in_transfer(self):
        return self.after is not None

    def strikes(self, command, count, total):
        if self.command not in (command, "*") or (self.command == "*" and command == CONNECT):
            return False
        nth = total if self.command == "*" else count
        return self.first <= nth and (self.last is None or nth <= self.last)


def parse_fault(spec):
    """Raises ValueError with what is wrong."""
    match = re.fullmatch(r"([A-Za-z]+|\*)(?:#(\d+)(\+?))?:([a-z]+|[45]\d\d)(?:=(\d+))?", spec)
    if not match:
        raise ValueError(f"'{spec}' is not a fault; for example 'RETR#1:drop'")
    command, nth, onwards, action, after = match.groups()
    first, last = (int(nth), None if onwards else int(nth)) if nth else (1, None)
    if first == 0:
        raise ValueError(f"'{spec}': commands are counted from 1")
    command = ALIASES.get(command.upper(), command.upper())
    code, action = (int(action), "reply") if action.isdigit() else (0, action)
    after = 0 if action == "stall" and after is None else int(after) if after else None
    fault = Fault(command, first, last, action, code, after)
    _check(spec, fault)
    return fault


def _check(spec, fault):
    if fault.action not in ("reply", "drop", "stall", "truncate", "mute"):
        raise ValueError(f"'{spec}': no fault is called '{fault.action}'")
    if fault.action == "truncate" and (fault.command != "RETR" or not fault.in_transfer):
        raise ValueError(f"'{spec}': 'truncate=BYTES' strikes RETR only")
    if fault.in_transfer and (fault.command not in TRANSFERS or fault.action == "mute"):
        raise ValueError(f"'{spec}': only a fault of RETR or STOR can wait for bytes or stall")


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
