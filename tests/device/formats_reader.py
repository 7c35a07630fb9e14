"""Reads the framed files of docs/formats/ back, apart from what writes them."""

import struct
import zlib

# How the records of a section are made up, by magic and section number.
RECORDS = {
    (b"QVLS", 1): ">II", (b"QVLS", 2): ">H6I", (b"QVLS", 3): ">HI", (b"QVLS", 4): ">HII",
    (b"QVNS", 1): ">II", (b"QVNS", 2): ">BxHI40s", (b"QVNS", 3): ">BxH4I", (b"QVNS", 4): ">BxH16sI",
    (b"QVNS", 5): ">BxH16s4sII",
}


def sections(data):
    """Tag to records, each a tuple of its numbers: texts are left out."""
    magic, version, _, _, length = struct.unpack(">4sBBHI", data[:12])
    assert version == 1 and length == len(data), data[:12]
    assert struct.unpack(">I", data[-4:])[0] == zlib.crc32(data[:-4])
    found, at = {}, 12
    while at < len(data) - 4:
        tag, width, count = struct.unpack(">HHI", data[at:at + 8])
        records = data[at + 8:at + 8 + width * count]
        found[tag] = [tuple(value for value in record if isinstance(value, int))
                      for record in struct.iter_unpack(RECORDS[magic, tag], records)]
        at += 8 + width * count
    return found
