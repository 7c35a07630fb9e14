"""The device's clock: local time without a zone, to the second."""

import time
from datetime import datetime, timedelta

TEXT_FORM = "%Y-%m-%d %H:%M:%S"


def parse_moment(text):
    return datetime.strptime(text, TEXT_FORM)


class DeviceClock:
    """Starts at a given moment, then runs or stands still; `set` goes on from there."""

    def __init__(self, start, stands=False, ticks=time.monotonic):
        self._ticks = ticks
        self._stands = stands
        self.set(start)

    def set(self, moment):
        self._moment = moment.replace(microsecond=0)
        self._set_at = self._ticks()

    def advance(self, seconds):
        self._moment += timedelta(seconds=seconds)

    def now(self):
        if self._stands:
            return self._moment
        return self._moment + timedelta(seconds=int(self._ticks() - self._set_at))
