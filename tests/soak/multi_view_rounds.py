#!/usr/bin/env python3
"""Changes from the single view to a grid and back, round after round, while real streams play, and counts the players
and video windows after each round.

    multi_view_rounds.py [--rounds N] [--minutes M] [--count-players-every K]

A round adds three tiles, activates another one, swaps, replaces and removes tiles, and leaves the grid by promotion or
in one of the two plain ways. After it there must be one player and one video window. Two actions keep a window by
design and are left out here (test_multi_view.py tests them): a tile swapped to the front, and a stream added outside
the grid.

Prints a line of figures every ten rounds, and at the end the trend of the process's own memory. Fails at the first
round that leaves a player or a window.
"""

import argparse
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "devkit/interface"), str(ROOT)]

from tests.end_to_end.stream_server import StreamServer  # noqa: E402
from tests.support.meters import Meters  # noqa: E402
from tests.support.process_usage import process_of, usage  # noqa: E402
from vantro_interface import host as hosts  # noqa: E402
from vantro_interface.client import WaitTimeout  # noqa: E402

STREAMS = ("red", "green", "blue", "yellow")
EXITS = ("mvPromoteActiveAndExit", "disableMultiView", "mvExitFullscreen")
REPORT_EVERY = 10  # rounds
EVENT_SECONDS = 10.0


class Left(AssertionError):
    """A round left a player or a window."""


class Rounds:
    """Plays rounds on a running host. url converts the name of a stream to an address."""

    def __init__(self, client, meters, url):
        self.done = 0
        self.early = 0  # tiles that began to play before their events were attached
        self._client, self._meters, self._url = client, meters, url

    def begin(self):
        self._then("onPlaying", "setMedia", {"url": self._url(STREAMS[0]), "networkCacheMs": 500})

    def play(self, count_players=True):
        self._do("enableMultiView")
        for stream in STREAMS[1:]:
            self._add(stream)
        self._do("mvSetActiveIndex", {"index": 1})
        self._do("mvSwapTiles", {"from": 1, "to": 3})
        self._then("onPlaying", "mvReplaceActive", {"url": self._url(STREAMS[self.done % 4]), "name": "replaced"})
        self._do("mvSetActiveIndex", {"index": 2})
        self._do("mvRemoveActive")
        leave = EXITS[self.done % len(EXITS)]
        if leave == EXITS[0]:
            self._then("onOpening", leave)
        else:
            self._do(leave)
        self.done += 1
        self._count(count_players)

    def _do(self, method, arguments=None):
        reply = self._client.invoke(method, arguments)
        assert reply is True, f"{method} answered {reply!r} in round {self.done + 1}"

    def _then(self, event, method, arguments=None):
        mark = self._client.mark()
        self._do(method, arguments)
        try:
            self._client.wait_for(event, after=mark, timeout=EVENT_SECONDS)
        except WaitTimeout:
            newest = self._meters.seconds()[-1:]
            raise WaitTimeout(f"{event} did not follow {method} in round {self.done + 1}; players: {newest}") from None

    def _add(self, stream):
        """Adds a tile. Its events are attached after playback was requested, so a busy machine can lose onPlaying."""
        try:
            self._then("onPlaying", "mvAddStream", {"url": self._url(stream), "name": stream})
        except WaitTimeout:
            plays = any(reading.stream == stream and reading.displayed for reading in self._meters.seconds()[-1])
            if not plays:
                raise
            self.early += 1

    def _count(self, players):
        windows = self._client.windows("VantroVlcHostWindow")
        if len(windows) != 1:
            raise Left(f"round {self.done} left {len(windows)} video windows")
        if players:
            self._meters.wait(self._client, lambda second: len(second) == 1, f"one player after round {self.done}")


def print_figures(rounds, began, usage_now):
    print(f"{rounds.done:5} rounds in {time.monotonic() - began:6.1f} s: 1 player, 1 video window, "
          f"{usage_now.threads} threads, {usage_now.files} files, {usage_now.written_kib} KiB", flush=True)


def soak(host, meters, url, arguments):
    rounds = Rounds(host.client, meters, url)
    rounds.begin()
    process = process_of(host.executable)
    began, memory = time.monotonic(), {}
    while rounds.done < arguments.rounds and time.monotonic() - began < arguments.minutes * 60:
        rounds.play(count_players=(rounds.done + 1) % arguments.count_players_every == 0)
        if rounds.done % REPORT_EVERY == 0:
            now = usage(process)
            memory[rounds.done] = now.written_kib
            print_figures(rounds, began, now)
    print(f"{rounds.early} tiles began to play before their events were attached")
    if len(memory) > 2:
        # Streams are opened and closed all the time, so single values vary by some 10 MB.
        slope = statistics.linear_regression(list(memory), list(memory.values())).slope
        print(f"{rounds.done} rounds; memory rises by {slope:.1f} KiB a round (linear fit)")
    if (code := host.quit()) != 0:
        raise Left(f"the host ended with {code:#x}")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--rounds", type=int, default=500)
    parser.add_argument("--minutes", type=float, default=60, help="end after this time, whatever the rounds")
    parser.add_argument("--count-players-every", type=int, default=1, metavar="K",
                        help="rounds between two counts of the players, which take up to 2 s each")
    arguments = parser.parse_args()
    streams = ROOT / "out/streams"
    subprocess.run([ROOT / "devkit/streams/make-streams", streams], check=True, stdin=subprocess.DEVNULL)
    with tempfile.TemporaryDirectory() as folder, StreamServer(streams) as server, \
            hosts.Prefix(ROOT / "out/wine/rounds") as prefix:
        meters = Meters(pathlib.Path(folder) / "meters.jsonl")
        with hosts.Host(prefix, pathlib.Path(folder) / "host", libraries=hosts.player_libraries(), log=False,
                        environment=meters.environment) as host:
            host.start()
            try:
                soak(host, meters, lambda stream: server.url(f"{stream}.ts"), arguments)
            except AssertionError as error:
                print(f"failed: {error}")
                return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
