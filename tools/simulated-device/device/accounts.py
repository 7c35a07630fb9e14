"""The device's accounts: one of its own, in force after the login, and one per partition."""

import random
import re
from functools import lru_cache
from typing import Callable, NamedTuple, Optional

from . import contents, formats
from .call_statistics import PartitionStatistics
from .uploads import uploads_of

HIGHEST_PARTITION = 64
DEVICE = "device"
FILE_NAME = re.compile(r"[A-Za-z0-9_-][A-Za-z0-9_.-]{0,63}")
# Firmware that keeps its statistics in "linestat" and "nodestat" alone.
WITHOUT_TABLE = ("5.00", "5.01", "5.bm", "5.bn", "5.bp", "05.C0", "5.ca", "5.CB")
PARTITION_NAMES = ("Front desk", "Billing", "Service", "Weather line", "Events", "Road conditions")
# Base slot, slot offset and line of the device's telephone lines; no RTQA option.
LINES = tuple((slot, offset, line, 0) for slot in (1, 2, 3) for offset in (0, 1) for line in (1, 2, 3, 4))
MESSAGE_NAME = re.compile(r"msg\.(\d{3})")


class Refused(Exception):
    """What the device will not do; the text is for the client."""


class LiveFile(NamedTuple):
    """A file that the device makes when it is read. Deleting restarts what it tells of; writing hands it over."""
    read: Callable
    restart: Optional[Callable] = None
    accept: Optional[Callable] = None


class Account:
    """A flat set of files."""

    def __init__(self, name, live, stored, uploads):
        self.name = name
        self._live = live
        self._uploads = uploads
        self._stored = {**stored, **uploads.load()}

    def names(self):
        return sorted({*self._live, *self._stored})

    def read(self, name):
        if name in self._live:
            return self._live[name].read()
        if name in self._stored:
            return self._stored[name]
        raise Refused("No such file")

    def check_writable(self, name):
        if name in self._live and not self._live[name].accept:
            raise Refused("This file is made by the device")
        if not FILE_NAME.fullmatch(name):
            raise Refused("Not a file name of this device")

    def write(self, name, data):
        self.check_writable(name)
        if name in self._live:
            self._live[name].accept(data)
            return
        self._uploads.save(name, data)
        self._stored[name] = data

    def delete(self, name):
        if name in self._live:
            if not self._live[name].restart:
                raise Refused("This file cannot be deleted")
            self._live[name].restart()
        elif name in self._stored:
            self._uploads.remove(name)
            del self._stored[name]
        else:
            raise Refused("No such file")

    def message_sizes(self):
        found = ((MESSAGE_NAME.fullmatch(name), data) for name, data in self._stored.items())
        return {int(match[1]): len(data) for match, data in found if match}


class Log:
    """A log that holds what happened since it was cleared."""

    def __init__(self, clock, text, since):
        self._clock = clock
        self._text = text
        self._since = since

    def live_file(self):
        return LiveFile(lambda: self._text(self._since, self._clock.now()), restart=self._clear)

    def _clear(self):
        self._since = self._clock.now()


class Device:
    """`partitions` are the numbers of the partitions that are there."""

    def __init__(self, seed, firmware, partitions, clock, data_dir=None):
        self._seed = seed
        self._firmware = firmware
        self._partitions = frozenset(partitions)
        self._data_dir = data_dir
        self.clock = clock
        self._started = clock.now()
        # Kept from the start, so that statistics count from the same moment whichever partition is asked first.
        self._statistics = {n: PartitionStatistics(seed, n, firmware, clock) for n in self._partitions}
        self._partition = lru_cache(maxsize=None)(self._make_partition)
        self.own_account = self._make_own_account()

    def account(self, text):
        """The account that "part1" to "part64" names, without padding."""
        match = re.fullmatch(r"part([1-9][0-9]?)", text)
        if not match or int(match[1]) > HIGHEST_PARTITION:
            raise Refused("No such account")
        if int(match[1]) not in self._partitions:
            raise Refused("This partition is not present")
        return self._partition(int(match[1]))

    def _make_own_account(self):
        never = self.clock.now().min
        live = {
            "time": LiveFile(lambda: formats.time_file(self.clock.now()), accept=self._set_clock),
            "log": Log(self.clock, contents.log_text, never).live_file(),
            "same.log": Log(self.clock, contents.same_log_text, never).live_file(),
            "sysinfo": LiveFile(self._system_information),
        }
        names = {n: f"{PARTITION_NAMES[n % len(PARTITION_NAMES)]} {n}" for n in self._partitions}
        stored = {"dbase": formats.system_image(self._machine_type(), names, LINES)}
        return Account(DEVICE, live, stored, uploads_of(self._data_dir, DEVICE))

    def _make_partition(self, number):
        name = f"part{number}"
        statistics = self._statistics[number]
        live = {
            "linestat": LiveFile(statistics.line_bytes, restart=statistics.restart_lines),
            "nodestat": LiveFile(statistics.node_bytes, restart=statistics.restart_nodes),
            "msgindex": LiveFile(lambda: contents.message_index(account.message_sizes())),
        }
        if self._firmware not in WITHOUT_TABLE:
            live["allstats.csv"] = LiveFile(statistics.csv_bytes)
        stored = {"dbase": formats.partition_image(number, statistics.nodes)}
        for node in statistics.nodes:
            if node.kind == "MSG":
                stored[f"msg.{node.number:03}"] = contents.tone(self._seed, name, node.number)
        account = Account(name, live, stored, uploads_of(self._data_dir, name))
        return account

    def _machine_type(self):
        return 3 if self._firmware.startswith("1.") else 2

    def _system_information(self):
        now = self.clock.now()
        used = sum(sum(self._partition(n).message_sizes().values()) for n in self._partitions)
        age = random.Random(f"{self._seed}/uptime").randrange(90 * 24 * 3600)
        return formats.system_information(
            self._firmware, f"SIM-{self._seed % 10**8:08}", "Simulated", self._machine_type(), len(LINES),
            len(self._partitions), contents.MESSAGE_MEMORY * len(self._partitions), used,
            age + max(0, int((now - self._started).total_seconds())), now)

    def _set_clock(self, data):
        try:
            self.clock.set(formats.moment_of_time_file(data))
        except ValueError as error:
            raise Refused(f"Not a time record: {error}") from error
