#!/usr/bin/env python3
"""Changes the stream again and again, with healthy and broken real streams, and checks the process in between.

    playback_storm.py [--rounds N] [--seconds S]

A round is one setMedia. The rounds differ in what follows it: nothing, the wait for onPlaying, or the wait for a time.
Every 25 rounds the player is stopped and the process is measured when it is idle. It must then have the same threads,
files and handles as the first time. Its memory must not grow from one half of the storm to the other, which a storm of
fewer than 400 rounds is too short to show. A request without an answer within 20 s counts as a deadlock: the host is
killed, and the kernel's view of its threads is printed.
"""

import argparse
import dataclasses
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "devkit/interface"), str(ROOT)]

from tests.end_to_end.stream_server import StreamServer  # noqa: E402
from tests.support.process_usage import Usage, process_of, thread_states, usage  # noqa: E402
from vantro_interface import host as hosts  # noqa: E402
from vantro_interface.client import WaitTimeout  # noqa: E402

CACHE_MS = 200
ROUNDS_BETWEEN_SAMPLES = 25
REST_SECONDS = 10
SLACK_THREADS = 2  # libvlc keeps a worker or two for a while
SLACK_FILES = 8
SLACK_HANDLES = 4  # ended threads whose handles the system has not closed yet
GROWTH_KIB_A_ROUND = 16
ROUNDS_TO_JUDGE_MEMORY = 400  # idle values differ by some MiB, which is small when divided by many rounds
PROCESS_TOOL = hosts.BUILD / "devkit/interface/process_tool.exe"


@dataclasses.dataclass(frozen=True)
class Sample:
    """The figures of the idle process."""

    usage: Usage
    handles: int  # of the Windows kernel


class Storm:
    """Runs on a started host."""

    def __init__(self, host, server):
        self.host = host
        self.samples = []
        self.rounds = 0
        self.slowest = 0.0
        self._process = process_of(host.executable)
        self._streams = [
            server.url("test.ts"), server.url("red.ts"), server.url("tracks.mp4"), server.url("audio.ts"),
            server.url("hls/index.m3u8"), server.url("missing.ts"), server.fault_url("garbage?bytes=65536"),
            server.fault_url("stall?at=100000&for=30"), server.fault_url("reset?at=100000"),
            server.url("redirect/short.ts"), server.fault_url("slow?wait=1"),
        ]

    def run(self, rounds, seconds, each_sample=lambda storm: None, between=ROUNDS_BETWEEN_SAMPLES):
        limit = time.monotonic() + seconds
        while self.rounds < rounds and time.monotonic() < limit:
            self._change()
            if self.rounds % between == 0:
                self._rest()
                each_sample(self)
        if self.rounds % between:
            self._rest()
            each_sample(self)

    def deadlock(self):
        """Returns the lines to print about a host that does not answer."""
        return [f"no answer in round {self.rounds + 1}; its threads:", *thread_states(self._process)]

    def uneven(self):
        """Returns a sentence for each figure of the idle process that is higher than the first time."""
        first, last = self.samples[0], self.samples[-1]
        pairs = [("threads", first.usage.threads, last.usage.threads, SLACK_THREADS),
                 ("open files", first.usage.files, last.usage.files, SLACK_FILES),
                 ("handles", first.handles, last.handles, SLACK_HANDLES)]
        return [f"{before} {what} became {after}" for what, before, after, slack in pairs if after > before + slack]

    def growth(self):
        """Returns KiB a round: the median written memory of the last quarter compared with that of the second. The
        first quarter is left out, because caches fill and code is loaded."""
        quarter = len(self.samples) // 4
        if quarter == 0:
            return 0.0
        early = statistics.median(sample.usage.written_kib for sample in self.samples[quarter:2 * quarter])
        late = statistics.median(sample.usage.written_kib for sample in self.samples[-quarter:])
        return (late - early) / (self.rounds / 2)

    def _change(self):
        client = self.host.client
        mark = client.mark()
        began = time.monotonic()
        reply = client.invoke("setMedia", {"url": self._streams[self.rounds * 7 % len(self._streams)],
                                           "networkCacheMs": CACHE_MS})
        self.slowest = max(self.slowest, time.monotonic() - began)
        assert reply is True, f"setMedia answered {reply!r}"
        outcomes = ((), ("onPlaying", "onError"), (), ("onTimeChanged", "onError", "onStopped"))[self.rounds % 4]
        if outcomes:
            self._wait_for_any(mark, outcomes)
        self.rounds += 1

    def _wait_for_any(self, mark, outcomes):
        client = self.host.client
        try:
            client.wait_until(lambda: any(event.method in outcomes for event in client.events[mark:]), outcomes, 3)
        except WaitTimeout:
            pass  # The stop inside setMedia can hide an end. The test is only that the host answers.

    def _rest(self):
        assert self.host.client.invoke("stop") is True
        limit = time.monotonic() + REST_SECONDS
        best = usage(self._process)
        while self.samples and best.threads > self.samples[0].usage.threads and time.monotonic() < limit:
            time.sleep(0.1)
            best = min(best, usage(self._process), key=lambda now: (now.threads, now.files))
        handles = self.host.prefix.run(PROCESS_TOOL, "handles", self.host.pid)
        self.samples.append(Sample(best, int(handles)))


def print_figures(storm):
    now = storm.samples[-1]
    print(f"{storm.rounds:6} rounds: {now.usage.threads} threads, {now.usage.files} files, {now.handles} handles, "
          f"{now.usage.written_kib} KiB written, {now.usage.resident_kib} KiB resident; "
          f"slowest setMedia {storm.slowest * 1000:.0f} ms", flush=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--rounds", type=int, default=1000)
    parser.add_argument("--seconds", type=float, default=900, help="end after this time, whatever the rounds")
    arguments = parser.parse_args()
    streams = ROOT / "out/streams"
    subprocess.run([ROOT / "devkit/streams/make-streams", streams], check=True, stdin=subprocess.DEVNULL)
    with tempfile.TemporaryDirectory() as folder, StreamServer(streams) as server, \
            hosts.Prefix(ROOT / "out/wine/storm") as prefix, \
            hosts.Host(prefix, pathlib.Path(folder) / "host", libraries=hosts.player_libraries(), log=False) as host:
        host.start()
        storm = Storm(host, server)
        began = time.monotonic()
        try:
            storm.run(arguments.rounds, arguments.seconds, print_figures)
            problems = storm.uneven()
            if storm.rounds >= ROUNDS_TO_JUDGE_MEMORY and storm.growth() > GROWTH_KIB_A_ROUND:
                problems.append(f"each round left {storm.growth():.1f} KiB")
            code = host.quit()
        except WaitTimeout as error:
            print("\n".join([f"failed: {error}", *storm.deadlock()]))
            return 1
    print(f"{storm.rounds} rounds in {time.monotonic() - began:.0f} s, memory rises by {storm.growth():.2f} KiB a round")
    problems += [f"the host ended with {code:#x}"] if code else []
    print("\n".join(f"failed: {problem}" for problem in problems) or "no growth")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
