"""The calls that reach a partition: made up, yet the same for the same seed and the same hour.

Every hour has its own random generator, so that any stretch of time can be counted on its own and
the counters only grow while the clock runs. Times are whole seconds since 1970 of the device's clock.
"""

import calendar
import random
from datetime import datetime, timezone
from functools import lru_cache
from typing import NamedTuple

HOUR = 3600
# A counter holds a year at most; a clock set decades ahead must not make the device count for minutes.
LONGEST_STRETCH = 366 * 24 * HOUR

# How busy each hour of a working day is, from midnight on; 1 is the busiest.
BUSYNESS = (.03, .02, .02, .02, .03, .08, .20, .45, .80, 1.0, 1.0, .90,
            .70, .75, .95, .90, .80, .60, .40, .30, .22, .15, .10, .05)
WEEKEND = .35

ANSWERED, BUSY, NO_ANSWER = "answered", "busy", "no answer"
OUTCOMES, OUTCOME_WEIGHTS = (ANSWERED, BUSY, NO_ANSWER), (86, 8, 6)

# Node type, the names its nodes are given, and how often a call comes by.
NODE_KINDS = (
    ("MSG", ("Welcome", "Opening hours, holidays", 'The "Night" greeting', "Directions"), .8),
    ("XFER", ("Front desk", "Billing", "Service"), .3),
    ("TIME", ("Day or night",), .9),
    ("DTMF", ("Main menu", "Language"), .6),
    ("LIST", ("Departments",), .2),
    ("VOX", ("Record a message",), .1),
    ("AUTO", ("Extension by number",), .25),
)


class Call(NamedTuple):
    start: int
    line: int
    outcome: str
    seconds: int
    transferred: bool
    nodes: tuple  # indexes into the partition's nodes


class Node(NamedTuple):
    kind: str
    number: int
    name: str
    share: float


def seconds_of(moment):
    return calendar.timegm(moment.timetuple())


def moment_of(seconds):
    return datetime.fromtimestamp(seconds, timezone.utc).replace(tzinfo=None)


class CallHistory:
    def __init__(self, seed, partition):
        self._key = f"{seed}/{partition}"
        own = random.Random(self._key)
        self.lines = own.choice((4, 6, 8))
        self._busiest = own.uniform(6, 18)
        self.nodes = tuple(self._choose_nodes(own))
        self._hour = lru_cache(maxsize=2000)(self._make_hour)

    def between(self, since, until):
        """Calls that began at `since` or later and before `until`."""
        since = max(since, until - LONGEST_STRETCH)
        for hour in range(since // HOUR, until // HOUR + 1):
            yield from (call for call in self._hour(hour) if since <= call.start < until)

    @staticmethod
    def _choose_nodes(own):
        for kind, names, share in NODE_KINDS:
            for number, name in enumerate(names[:own.randint(1, len(names))], 1):
                yield Node(kind, number, name, share / number)

    def _make_hour(self, hour):
        chance = random.Random(f"{self._key}/{hour}")
        moment = moment_of(hour * HOUR)
        expected = self._busiest * BUSYNESS[moment.hour] * (WEEKEND if moment.weekday() > 4 else 1)
        count = int(expected * chance.uniform(.5, 1.5) + chance.random())
        return sorted(self._make_call(chance, hour * HOUR) for _ in range(count))

    def _make_call(self, chance, start):
        outcome = chance.choices(OUTCOMES, OUTCOME_WEIGHTS)[0]
        answered = outcome == ANSWERED
        line = min(int(chance.expovariate(2 / self.lines)), self.lines - 1) + 1
        return Call(start + chance.randrange(HOUR), line, outcome,
                    int(chance.expovariate(1 / 75)) + 3 if answered else 0,
                    answered and chance.random() < .22,
                    tuple(i for i, node in enumerate(self.nodes) if answered and chance.random() < node.share))
