"""The bytes of "time", "sysinfo", "dbase", "linestat" and "nodestat". docs/formats/ describes each of them.

All numbers are big-endian. Moments are seconds since 1 January 2000 of the device's clock.
"""

import struct
import zlib
from datetime import datetime, timedelta

VERSION = 1
EPOCH = datetime(2000, 1, 1)
SYSTEM, PARTITION = 1, 2

NODE_TYPES = ("MSG", "CMD", "TIME", "DATE", "XFER", "STYLE", "DTMF", "VOX", "LIST", "AUTO", "MOH", "PAAS", "TABLE",
              "NIS", "DBN", "DIR")
NO_NODE = bytes(4)


def seconds_since_epoch(moment):
    """The nearest that four bytes hold."""
    return min(max(int((moment - EPOCH).total_seconds()), 0), 0xFFFFFFFF)


def text(value, width):
    """Filled with zero bytes; cut to whole characters where it is too long."""
    return value.encode()[:width].decode(errors="ignore").encode().ljust(width, b"\0")


def node_name(kind, number):
    return struct.pack(">BxH", NODE_TYPES.index(kind) + 1, number)


# "time": 2 bytes magic, version, the low byte of the CRC-32 of the other seven, the moment.

def time_file(moment):
    head, clock = b"QT" + bytes((VERSION,)), struct.pack(">I", seconds_since_epoch(moment))
    return head + bytes((zlib.crc32(head + clock) & 0xFF,)) + clock


def moment_of_time_file(data):
    """Raises ValueError when these are not 8 bytes of this form."""
    if len(data) != 8 or data[:3] != b"QT" + bytes((VERSION,)):
        raise ValueError("not a clock file of this form")
    if data[3] != zlib.crc32(data[:3] + data[4:]) & 0xFF:
        raise ValueError("its checksum is wrong")
    return EPOCH + timedelta(seconds=struct.unpack(">I", data[4:])[0])


def system_information(firmware, serial_number, model, machine_type, lines, partitions, memory, memory_used, uptime,
                       moment):
    """72 bytes, the last four a CRC-32 of those before."""
    data = struct.pack(">2sBB8s16s12sBBBxIIII8x", b"QI", VERSION, 72, text(firmware, 8), text(serial_number, 16),
                       text(model, 12), machine_type, lines, partitions, memory, memory_used, uptime,
                       seconds_since_epoch(moment))
    return data + struct.pack(">I", zlib.crc32(data))


# The three framed files: header, sections of records of one length, CRC-32 of all before it.

def framed(magic, content, partition, *sections):
    body = b"".join(sections)
    data = struct.pack(">4sBBHI", magic, VERSION, content, partition, 12 + len(body) + 4) + body
    return data + struct.pack(">I", zlib.crc32(data))


def section(tag, length, records):
    records = list(records)
    assert all(len(record) == length for record in records), (tag, length)
    return struct.pack(">HHI", tag, length, len(records)) + b"".join(records)


def counted(since, until):
    return section(1, 8, [struct.pack(">II", seconds_since_epoch(since), seconds_since_epoch(until))])


def line_statistics(partition, since, until, rows, active):
    """`rows` maps lines to their counters, `active` numbers of lines to (times, seconds)."""
    return framed(
        b"QVLS", 0, partition, counted(since, until),
        section(2, 26, (struct.pack(">H6I", line, row.calls, row.answered, row.busy, row.no_answer, row.seconds,
                                    row.longest) for line, row in rows.items())),
        section(3, 6, (struct.pack(">HI", line, row.transfers) for line, row in rows.items())),
        section(4, 10, (struct.pack(">HII", lines, *spell) for lines, spell in sorted(active.items()))))


def node_statistics(partition, since, until, nodes, accesses, selections):
    """`accesses` in the order of `nodes`; `selections` are those of the nodes that ask for a choice."""
    def head(node):
        return node_name(node.kind, node.number)

    def choices():
        return ((one, choice) for one in selections for choice in one.choices)
    return framed(
        b"QVNS", 0, partition, counted(since, until),
        section(2, 48, (head(node) + struct.pack(">I", count) + text(node.name, 40)
                        for node, count in zip(nodes, accesses))),
        section(3, 20, (head(one.node) + struct.pack(">4I", one.made, one.invalid, one.timed_out, one.aborted)
                        for one in selections)),
        section(4, 24, (head(one.node) + text(choice.text, 16) + struct.pack(">I", choice.first + choice.later)
                        for one, choice in choices())),
        section(5, 32, (head(one.node) + text(choice.text, 16)
                        + (head(choice.leads_to) if choice.leads_to else NO_NODE)
                        + struct.pack(">II", choice.first, choice.later) for one, choice in choices())))


def system_image(machine_type, partitions, lines):
    """`partitions` maps numbers to names, `lines` are (base slot, offset, line, RTQA option)."""
    settings = struct.pack(">BBBBHHBBBB", machine_type, 64, 0, 0, 1, 1, 0, 2, 1, 0)
    return framed(b"QVDB", SYSTEM, 0, section(1, 12, [settings]),
                  section(2, 33, (bytes((number,)) + text(name, 32) for number, name in sorted(partitions.items()))),
                  section(3, 4, (bytes(line) for line in lines)))


def partition_image(partition, nodes):
    """Calls begin at the first node."""
    start = node_name(nodes[0].kind, nodes[0].number) if nodes else NO_NODE
    settings = struct.pack(">4s4sHBB", start, NO_NODE, 0, 0, 1)
    return framed(b"QVDB", PARTITION, partition, section(1, 12, [settings]),
                  section(2, 44, (node_name(node.kind, node.number) + text(node.name, 40) for node in nodes)))
