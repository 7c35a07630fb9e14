"""The bytes of messages, their index and the logs; "formats" has those of the other files."""

import math
import random
import struct
from datetime import datetime, timedelta

from .clock import TEXT_FORM

SAMPLES_PER_SECOND = 8000
MESSAGE_MEMORY = 600 * SAMPLES_PER_SECOND
LOG_DAYS, SAME_LOG_DAYS = 10, 35

DAILY_LOG = (("04:00:00", "Self test passed"), ("04:00:12", "Message memory checked"), ("06:30:00", "Clock checked"))


def message_index(messages):
    """`messages` maps message numbers to file sizes. Big-endian: the samples used and the samples there are,
    then eight bytes for each message: two unused, its number, its size."""
    header = struct.pack(">ii", sum(messages.values()), MESSAGE_MEMORY)
    return header + b"".join(struct.pack(">Hhi", 0, number, size) for number, size in sorted(messages.items()))


def mu_law(sample):
    """One 16-bit sample as a G.711 mu-law byte."""
    sign = 0x80 if sample < 0 else 0
    magnitude = min(abs(sample), 32635) + 132
    exponent = magnitude.bit_length() - 8
    return ~(sign | exponent << 4 | magnitude >> exponent + 3 & 0x0F) & 0xFF


def tone(seed, account, number):
    """Half a second to three seconds of a tone, 8 kHz mu-law."""
    own = random.Random(f"{seed}/{account}/msg{number}")
    period = own.choice((8, 10, 16, 20))
    wave = bytes(mu_law(round(9000 * math.sin(2 * math.pi * i / period))) for i in range(period))
    return wave * (SAMPLES_PER_SECOND // 2 // period * own.randint(1, 6))


def log_text(since, now):
    """The daily routine since the later of `since` and ten days ago."""
    return _lines(_daily_entries, max(since, now - timedelta(days=LOG_DAYS)), now)


def same_log_text(since, now):
    """Weekly alert tests since the later of `since` and five weeks ago."""
    return _lines(_weekly_alerts, max(since, now - timedelta(days=SAME_LOG_DAYS)), now)


def _lines(entries_of_day, since, now):
    days = (since.date() + timedelta(days=n) for n in range((now.date() - since.date()).days + 1))
    entries = (entry for day in days for entry in entries_of_day(day) if since <= entry[0] <= now)
    return "".join(f"{moment.strftime(TEXT_FORM)}  {text}\r\n" for moment, text in entries).encode("ascii")


def _daily_entries(day):
    for clock, text in DAILY_LOG:
        yield datetime.strptime(f"{day} {clock}", TEXT_FORM), text


def _weekly_alerts(day):
    if day.weekday() == 2:
        moment = datetime(day.year, day.month, day.day, 12)
        yield moment, f"ZCZC-WXR-RWT-000000+0030-{moment.strftime('%j%H%M')}-DEVICE01-"
        yield moment + timedelta(seconds=40), "NNNN"
