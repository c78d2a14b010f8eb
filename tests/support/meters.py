"""Reads the development library's reports about its players, one a second: which play, what they show, and which tone
is heard.

A host writes them with environment=meters.environment; devkit/libvlc/meter_log.h describes the lines.
"""

import dataclasses
import itertools
import json
import pathlib
import urllib.parse


@dataclasses.dataclass(frozen=True)
class Reading:
    """The reading of one player in one second."""

    player: str
    stream: str  # the last part of the address without its ending: "red" of http://.../red.ts
    state: str
    time: int  # ms
    volume: int
    mute: bool
    rms: float  # after volume and mute
    frequency: float  # before volume and mute
    displayed: int

    @property
    def heard(self):
        return self.rms > 0


def _reading(line):
    row = json.loads(line)
    stream = pathlib.PurePosixPath(urllib.parse.urlsplit(row["url"]).path).stem
    return row["at"], Reading(row["player"], stream, row["state"], row["time"], row["volume"], row["mute"], row["rms"],
                              row["frequency"], row["displayed"])


class Meters:
    def __init__(self, path):
        self._path = pathlib.Path(path)

    @property
    def environment(self):
        return {"VANTRO_LIBVLC_STATS": str(self._path)}

    def seconds(self):
        """Returns a tuple of readings for each second in which there were players, the oldest second first."""
        text = self._path.read_text() if self._path.exists() else ""
        complete = text[: text.rfind("\n") + 1].splitlines()
        rows = (_reading(line) for line in complete)
        return [tuple(reading for _, reading in second) for _, second in itertools.groupby(rows, lambda row: row[0])]

    def wait(self, client, condition, what, timeout=None):
        """Returns the readings of the newest second for which the condition holds. A second counts only if it began
        after this call, because an older one may contain earlier sound."""
        whole = len(self.seconds()) + 1

        def newest():
            seconds = self.seconds()
            return seconds[-1] if len(seconds) > whole else ()

        return client.poll(newest, lambda second: second and condition(second), what, timeout, pause=0.05)
