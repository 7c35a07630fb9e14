"""A partition's counters and what the device makes of them: "allstats.csv", "linestat" and "nodestat".

Line and node counters restart apart from each other, as "linestat" and "nodestat" are deleted
apart from each other. The hourly table belongs to the lines.
"""

import csv
import io
import random
from collections import Counter
from dataclasses import astuple, dataclass
from datetime import timedelta

from . import calls, formats
from .clock import TEXT_FORM
from .selections import count_selections

LINE_HEADINGS = ("Line", "Calls", "Answered", "Busy", "No Answer", "Transfers", "Seconds In Use", "Longest Call")


@dataclass
class LineCounters:
    calls: int = 0
    answered: int = 0
    busy: int = 0
    no_answer: int = 0
    transfers: int = 0
    seconds: int = 0
    longest: int = 0

    def count(self, call):
        self.calls += 1
        self.answered += call.outcome == calls.ANSWERED
        self.busy += call.outcome == calls.BUSY
        self.no_answer += call.outcome == calls.NO_ANSWER
        self.transfers += call.transferred
        self.seconds += call.seconds
        self.longest = max(self.longest, call.seconds)


class PartitionStatistics:
    def __init__(self, seed, partition, firmware, clock):
        self._partition = partition
        self._firmware = firmware
        self._clock = clock
        self._history = calls.CallHistory(seed, partition)
        age = random.Random(f"{seed}/{partition}/age")
        self.lines_since = self.nodes_since = clock.now() - timedelta(
            days=age.randint(3, 27), seconds=age.randrange(24 * calls.HOUR))

    @property
    def nodes(self):
        return self._history.nodes

    @property
    def lines(self):
        return self._history.lines

    def restart_lines(self):
        self.lines_since = self._clock.now()

    def restart_nodes(self):
        self.nodes_since = self._clock.now()

    def line_counters(self):
        """One row per line, by line number, and the row that counts every call."""
        rows = {line: LineCounters() for line in range(1, self._history.lines + 1)}
        total = LineCounters()
        for call in self._calls_since(self.lines_since):
            rows[call.line].count(call)
            total.count(call)
        return rows, total

    def node_counters(self):
        """Accesses, in the order of `nodes`."""
        counts = Counter(index for call in self._calls_since(self.nodes_since) for index in call.nodes)
        return [counts[index] for index in range(len(self.nodes))]

    def lines_active(self):
        """Numbers of lines that were in use at the same time, each with how often and how many seconds."""
        changes = Counter()
        for spell in self._line_spells():
            changes[spell[0]] += 1
            changes[spell[1]] -= 1
        spells, active, since = {}, 0, 0
        for moment, change in sorted(changes.items()):
            if change == 0:
                continue
            if active:
                times, seconds = spells.get(active, (0, 0))
                spells[active] = (times + 1, seconds + moment - since)
            active, since = active + change, moment
        return spells

    def line_bytes(self):
        return formats.line_statistics(self._partition, self.lines_since, self._clock.now(), self.line_counters()[0],
                                       self.lines_active())

    def node_bytes(self):
        now = self._clock.now()
        selections = count_selections(self.nodes, self._calls_since(self.nodes_since))
        return formats.node_statistics(self._partition, self.nodes_since, now, self.nodes, self.node_counters(),
                                       selections)

    def csv_bytes(self):
        """Two-column rows about the report, then the tables of lines, nodes and hours; CR LF, ASCII."""
        text = io.StringIO()
        table = csv.writer(text, lineterminator="\r\n")
        table.writerows(self._caption())
        table.writerows(self._line_table())
        table.writerows(self._node_table())
        table.writerows(self._hour_table())
        return text.getvalue().encode("ascii")

    def _calls_since(self, moment):
        return self._history.between(calls.seconds_of(moment), calls.seconds_of(self._clock.now()))

    def _line_spells(self):
        """(start, end) of each stretch of time that a line was in use without a break."""
        ends = {}
        for call in self._calls_since(self.lines_since):
            if not call.seconds:
                continue
            start, end = ends.get(call.line, (0, 0))
            if call.start > end and end:
                yield start, end
            ends[call.line] = (call.start if call.start > end else start, max(end, call.start + call.seconds))
        yield from ends.values()

    def _caption(self):
        yield "Report", "Call statistics"
        yield "Firmware", self._firmware
        yield "Partition", self._partition
        yield "Device time", self._clock.now().strftime(TEXT_FORM)
        yield "Lines counted since", self.lines_since.strftime(TEXT_FORM)
        yield "Nodes counted since", self.nodes_since.strftime(TEXT_FORM)

    def _line_table(self):
        rows, total = self.line_counters()
        yield LINE_HEADINGS
        for line, counters in rows.items():
            yield line, *astuple(counters)
        yield "Total", *astuple(total)

    def _node_table(self):
        yield ()
        yield "Node", "Name", "Accesses"
        for node, accesses in zip(self.nodes, self.node_counters()):
            yield f"{node.kind}{node.number}", node.name, accesses

    def _hour_table(self):
        hours = [LineCounters() for _ in range(24)]
        for call in self._calls_since(self.lines_since):
            hours[call.start // calls.HOUR % 24].count(call)
        yield ()
        yield "Hour", "Calls", "Answered", "Seconds In Use"
        for hour, counters in enumerate(hours):
            yield f"{hour:02}:00", counters.calls, counters.answered, counters.seconds
