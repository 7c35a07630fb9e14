"""What callers chose at the nodes that ask them to: derived from the calls, so that it adds up with the accesses."""

import zlib
from dataclasses import dataclass
from typing import Optional

from .calls import Node

# Node type, its choices, whether they stay in the partition.
CHOICES = {
    "AUTO": (("200-249", "250-299", "300-399"), False),
    "DTMF": (("1", "2", "3", "0"), True),
    "VOX": (("yes", "no", "operator"), True),
}
TRIES = 3
# Of a hundred calls at such a node: chosen at the first try, at a later one, nothing in time; the rest aborted.
FIRST_TRY, LATER_TRY, TIMED_OUT = 78, 10, 7


@dataclass
class Choice:
    text: str
    leads_to: Optional[Node]
    first: int = 0
    later: int = 0


@dataclass
class Selections:
    node: Node
    choices: list
    made: int = 0
    invalid: int = 0
    timed_out: int = 0
    aborted: int = 0

    def count(self, roll):
        """`roll` is any number that belongs to one call at the node."""
        outcome, which = roll % 100, roll // 100 % len(self.choices)
        if outcome < FIRST_TRY:
            self.made += 1
            self.choices[which].first += 1
        elif outcome < FIRST_TRY + LATER_TRY:
            self.made += 1
            self.invalid += 1
            self.choices[which].later += 1
        elif outcome < FIRST_TRY + LATER_TRY + TIMED_OUT:
            self.timed_out += 1
        else:
            self.aborted += 1
            self.invalid += TRIES


def count_selections(nodes, calls):
    """One entry for each node that asks for a choice, in the order of `nodes`."""
    targets = [node for node in nodes if node.kind not in CHOICES]
    counted = {index: Selections(node, list(_choices(node, targets))) for index, node in enumerate(nodes)
               if node.kind in CHOICES}
    for call in calls:
        for index in call.nodes:
            if index in counted:
                counted[index].count(zlib.crc32(f"{call.start}/{call.line}/{index}".encode()))
    return list(counted.values())


def _choices(node, targets):
    texts, stays = CHOICES[node.kind]
    for index, text in enumerate(texts):
        yield Choice(text, targets[(node.number + index) % len(targets)] if stays and targets else None)
