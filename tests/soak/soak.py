#!/usr/bin/env python3
"""Plays random steps on the built host: real streams and their possible failures, in an order given by a seed.

    soak.py [--seconds S] [--steps N] [--seed N]   random steps
    soak.py --kills N [--seed N]                   only kills during calls, and the starts after them

The steps are drawn with the seed: streams that play, stall, break off or are not streams; a server
that ends; grids, windows, fullscreen, preview frames; hostile bytes; a damaged key file; a temporary folder that cannot
be written; kills and normal ends of the process. After each step the host must answer within a limit, show as many
windows as were opened, stay within its memory limit, and have answered each message once. The key must stay the same
over restarts, and every kill must be reported at the next start.

The same seed draws the same steps; --steps ends after that many. The number of a failing step is printed.
"""

import argparse
import collections
import pathlib
import random
import shutil
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "devkit/interface"), str(ROOT)]

from tests.end_to_end.stream_server import FaultServer, StreamServer  # noqa: E402
from tests.support.marker import MarkerFile, expected_report, kill_during_calls, reports  # noqa: E402
from tests.support.messages import WM_CLOSE  # noqa: E402
from tests.support.process_usage import process_of, thread_states, usage  # noqa: E402
from vantro_interface import codec  # noqa: E402
from vantro_interface import host as hosts  # noqa: E402
from vantro_interface.client import THUMBNAIL_CHANNEL, ConnectionLost, WaitTimeout  # noqa: E402
from vantro_interface.codec import MethodError, NotImplementedByHost  # noqa: E402

MAIN_WINDOW, OVERLAY = "VantroWindowClass", "VantroFlutterOverlay"
CACHE_MS = 200
ANSWER_SECONDS = 5.0  # for getWindowInfo, on a machine with other work
PLAY_SECONDS = 20.0
WINDOWS_A_PROCESS = 6  # a closed window's object lives until the process ends
RESIDENT_KIB = 600 * 1024
RESIDENT_KIB_A_WINDOW = 60 * 1024
HOSTILE_MESSAGES = 20
MUTATED = [("setMedia", {"url": "http://127.0.0.1:9/none.ts", "networkCacheMs": 100}), ("seek", {"positionMs": 1000}),
           ("resizeVLC", {"x": 1, "y": 2.5, "width": 3, "height": 4}), ("setSpu", {"id": 1, "index": 0}),
           ("sendProviderData", {"chunkType": "part", "list": [1, [2.0, None], {"a": b"bytes"}]}), ("getPosition", None)]


class Broken(AssertionError):
    """A required condition does not hold."""


def require(condition, what):
    if not condition:
        raise Broken(what)


class Soak:
    def __init__(self, prefix, folder, server, streams, chance):
        self.prefix, self.folder, self.server, self.streams = prefix, folder, server, streams
        self.chance = chance
        self.marker = MarkerFile(prefix.temp)
        self.key_file = prefix.local_app_data / "Vantro/db.key"
        self.key = None
        self.counts = collections.Counter()
        self.slowest = 0.0
        self.most_resident = 0
        self.runs = 0
        self.start()

    # The process.

    def start(self):
        self.runs += 1
        shutil.rmtree(self.folder / "host", ignore_errors=True)
        self.host = hosts.Host(self.prefix, self.folder / "host", libraries=hosts.player_libraries(), log=False)
        self.host.start()
        self.client = self.host.client
        self.process = process_of(self.host.executable)
        (first,) = self.client.windows(MAIN_WINDOW)
        self.first_window = first.handle
        self.opened, self.windows = 1, 1
        self.in_grid = False

    def check(self):
        """Checks the conditions that hold after every step."""
        began = time.monotonic()
        info = self.client.invoke("getWindowInfo", timeout=ANSWER_SECONDS)
        self.slowest = max(self.slowest, time.monotonic() - began)
        require(info["isMasterWindow"] is True, f"the first window returned {info}")
        for name in (MAIN_WINDOW, OVERLAY):
            found = len(self.client.windows(name))
            require(found == self.windows, f"{found} windows of {name} instead of {self.windows}")
        require(not self.client.violations, f"not answered once: {self.client.violations}")
        # A relayed chunk comes back unchanged, with the hostile text in it.
        unreadable = [data for _, data, _ in self.client.undecodable if b"providerDataReceived" not in data]
        require(not unreadable, f"undecodable: {unreadable[:3]}")
        resident = usage(self.process).resident_kib
        self.most_resident = max(self.most_resident, resident)
        limit = RESIDENT_KIB + self.opened * RESIDENT_KIB_A_WINDOW
        require(resident < limit, f"{resident} KiB resident, with {self.opened} windows opened")

    # Steps.

    def set_media(self, url):
        if self.in_grid:
            self.leave_the_grid()  # a grid's streams play in its tiles, and setMedia has no player
        mark = self.client.mark()
        require(self.client.invoke("setMedia", {"url": url, "networkCacheMs": CACHE_MS}) is True, "setMedia failed")
        return mark

    def play_a_stream(self):
        name = self.chance.choice(["test.ts", "red.ts", "tracks.mp4", "audio.ts", "hls/index.m3u8", "redirect/test.ts"])
        mark = self.set_media(self.server.url(name))
        self.client.wait_for("onPlaying", after=mark, timeout=PLAY_SECONDS)
        self.client.wait_for("onTimeChanged", after=mark, timeout=PLAY_SECONDS)

    def play_a_broken_stream(self):
        fault = self.chance.choice(["stall?at=100000&for=3", "reset?at=200000", "garbage?bytes=65536", "slow?wait=1",
                                    "nothing-here"])
        self.set_media(self.server.fault_url(fault))
        self._dwell()

    def end_the_server(self):
        server = FaultServer(self.streams)
        try:
            mark = self.set_media(f"http://127.0.0.1:{server.port}/paced?seconds=30")
            self.client.wait_for("onPlaying", after=mark, timeout=PLAY_SECONDS)
        finally:
            server.close()
        self._dwell()

    def use_the_transport(self):
        for method, arguments in self.chance.sample(
                [("pause", None), ("play", None), ("playPause", None), ("seek", {"positionMs": 5000}), ("stop", None),
                 ("getTracksInfo", None), ("getPosition", None), ("toggleFullscreen", None)], 5):
            self.client.invoke(method, arguments)

    def enter_the_grid(self):
        if not self.in_grid:
            self.play_a_stream()
        self.client.invoke("enableMultiView")
        for name in self.chance.sample(["green.ts", "blue.ts", "yellow.ts", "missing.ts"], 2):
            self.client.invoke("mvAddStream", {"url": self.server.url(name), "name": name})
        self.client.invoke("mvSetActiveIndex", {"index": self.chance.randrange(3)})
        self.in_grid = True

    def leave_the_grid(self):
        self.client.invoke(self.chance.choice(["disableMultiView", "mvExitFullscreen", "mvPromoteActiveAndExit"]))
        self.in_grid = False

    def open_a_window(self):
        if self.opened >= WINDOWS_A_PROCESS:
            return
        launch = hosts.Host(self.prefix, self.folder / "launch", libraries=hosts.player_libraries(), log=False)
        launch.start(connect=False)
        code = launch.wait(PLAY_SECONDS)
        require(code == 0, f"a second launch ended with {code}: {launch.output}")
        self.opened, self.windows = self.opened + 1, self.windows + 1
        self._wait_for_windows()

    def close_a_window(self):
        others = [window for window in self.client.windows(MAIN_WINDOW) if window.handle != self.first_window]
        if not others:
            return
        self.client.post(self.chance.choice(sorted(others, key=lambda window: window.handle)).handle, WM_CLOSE)
        self.windows -= 1
        self._wait_for_windows()

    def take_a_preview_frame(self):
        require(self.client.invoke("initialize", channel=THUMBNAIL_CHANNEL) is True, "the thumbnail worker")
        frame = {"mediaId": "film", "proxyUrl": self.server.url("tracks.mp4"), "width": 160, "height": 90,
                 "timeSeconds": self.chance.uniform(0, 55)}
        reply = self.client.invoke("getFrame", frame, channel=THUMBNAIL_CHANNEL)
        require(reply["success"] is False or reply["bytes"].startswith(b"\x89PNG"), "a frame that is no picture")
        self.counts["frames taken"] += reply["success"]
        self.client.invoke("dispose", channel=THUMBNAIL_CHANNEL)

    def send_hostile_bytes(self):
        for _ in range(HOSTILE_MESSAGES):
            self.client.send_bytes(self._mutated(), timeout=PLAY_SECONDS)

    def ask_for_the_key(self):
        key = self.client.invoke("getDatabaseEncryptionKey")
        require(len(key) == 32 and self.key in (None, key), "the database key changed")
        self.key = key

    def damage_the_key_file(self):
        self.ask_for_the_key()
        content = self.key_file.read_bytes()
        self.key_file.write_bytes(self.chance.choice([b"", content[:-1], self.chance.randbytes(200)]))
        lost, self.key = self.key, None
        self.ask_for_the_key()
        require(self.key != lost, "a damaged key file gave the old key")

    def make_the_temporary_folder_unwritable(self):
        self.marker.path.unlink(missing_ok=True)
        self.marker.path.mkdir()  # no file with this name can be opened
        try:
            self.client.invoke("getPosition")
        finally:
            self.marker.path.rmdir()
        self.client.invoke("getPosition")
        require(self.marker.read()[:2] == (True, "getPosition"), "the marker was not written again")

    def kill_and_start_again(self):
        self.host.kill()
        found = self.marker.read()
        self.start()
        reported = reports(self.client)
        require(reported == (expected_report(found[1]) if found else []), f"after {found} the start reported {reported}")

    def end_and_start_again(self):
        code = self.host.quit(PLAY_SECONDS)
        require(code == 0, f"the exit code of a normal end is {code}")
        require(self.marker.read()[:2] == (False, "shutdown"), f"the marker is {self.marker.read()}")
        self.start()
        require(reports(self.client) == [], "a start after a normal end reported a kill")

    STEPS = [(play_a_stream, 6), (play_a_broken_stream, 6), (end_the_server, 3), (use_the_transport, 4),
             (enter_the_grid, 4), (leave_the_grid, 3), (open_a_window, 3), (close_a_window, 3),
             (take_a_preview_frame, 2), (send_hostile_bytes, 4), (ask_for_the_key, 2), (damage_the_key_file, 1),
             (make_the_temporary_folder_unwritable, 1), (kill_and_start_again, 2), (end_and_start_again, 1)]

    def _dwell(self):
        # A pause as long as a user might watch a stream.
        time.sleep(self.chance.uniform(0.2, 2.5))

    def _wait_for_windows(self):
        self.client.poll(lambda: len(self.client.windows(OVERLAY)), lambda count: count == self.windows,
                         f"{self.windows} windows")

    def _mutated(self):
        data = bytearray(codec.encode_method_call(*self.chance.choice(MUTATED)))
        # The method's name is sometimes kept, so that the damaged bytes reach the handlers.
        start = self.chance.choice([0, min(len(data) - 1, 10)])
        for _ in range(self.chance.randrange(1, 4)):
            data[self.chance.randrange(start, len(data))] = self.chance.randrange(256)
        return bytes(data[:self.chance.randrange(1, len(data) + 1)] if self.chance.random() < 0.3 else data)


def print_summary(soak, seconds):
    print(f"\n{sum(soak.counts.values()) - soak.counts['frames taken']} steps in {seconds:.0f} s over {soak.runs} "
          f"processes; slowest answer {soak.slowest * 1000:.0f} ms, most memory {soak.most_resident // 1024} MiB")
    for name, count in sorted(soak.counts.items()):
        print(f"  {count:5} {name.replace('_', ' ')}")


def print_failure(soak, number, step, error, seed):
    print(f"\nfailed at step {number}, {step.__name__}: {error}\nto repeat it: soak.py --seed {seed} --steps {number}")
    if soak.host.running:
        print("threads of the process:", *thread_states(soak.process), sep="\n  ")
    else:
        print(f"the process ended with {soak.host.exit_code:#x}")
    print("last events:", *(f"  {event}" for event in soak.client.since()[-30:]), sep="\n")
    print("last output:", *soak.host.output.splitlines()[-8:], sep="\n  ")


def run_soak(prefix, folder, server, streams, arguments):
    # The order of the steps has its own generator, so that what happens within a step does not change it.
    order = random.Random(arguments.seed)
    soak = Soak(prefix, folder, server, streams, random.Random(arguments.seed + 1))
    steps, weights = zip(*Soak.STEPS)
    began = time.monotonic()
    number = 0
    try:
        while number < arguments.steps and time.monotonic() - began < arguments.seconds:
            number += 1
            (step,) = order.choices(steps, weights)
            print(f"{time.monotonic() - began:7.1f} s  {number:5}  {step.__name__.replace('_', ' ')}", flush=True)
            try:
                step(soak)
                soak.check()
            except (Broken, WaitTimeout, ConnectionLost, MethodError, NotImplementedByHost) as error:
                print_failure(soak, number, step, error, arguments.seed)
                return 1
            soak.counts[step.__name__] += 1
        soak.end_and_start_again()
    finally:
        soak.host.close()
    print_summary(soak, time.monotonic() - began)
    return 0


def run_kills(prefix, folder, arguments):
    moments = random.Random(arguments.seed)
    marker = MarkerFile(prefix.temp)
    reported = cut = 0
    for number in range(1, arguments.kills + 1):
        with hosts.Host(prefix, folder / "killed", libraries=hosts.scripted("full"), log=False) as killed:
            possible = kill_during_calls(killed.start(), moments)
        found = marker.read()
        with hosts.Host(prefix, folder / "next", libraries=hosts.scripted("full"), log=False) as following:
            calls = reports(following.start().client)
            following.quit()
        right = found is None or (found[0] and found[1] in possible)
        if not right or calls != (expected_report(found[1]) if found else []):
            print(f"failed at kill {number}: the marker is {found}, possible were {possible}, "
                  f"the start reported {calls}")
            return 1
        reported, cut = reported + bool(found), cut + (found is None)
        if number % 10 == 0:
            print(f"{number:5} kills: {reported} reported by the next start", flush=True)
    print(f"{arguments.kills} kills during calls: {reported} reported by the next start with the right method, {cut} "
          "during a write of the marker, which then reads as a normal end")
    return 0


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--seconds", type=float, default=3600, help="end after this time (3600)")
    parser.add_argument("--steps", type=int, default=10**9, help="end after so many steps")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--kills", type=int, metavar="N", help="kill and start the host N times instead")
    arguments = parser.parse_args()
    streams = ROOT / "out/streams"
    subprocess.run([ROOT / "devkit/streams/make-streams", streams], check=True, stdin=subprocess.DEVNULL)
    with tempfile.TemporaryDirectory() as folder, hosts.Prefix(ROOT / "out/wine" / f"soak-{arguments.seed}") as prefix:
        if arguments.kills:
            return run_kills(prefix, pathlib.Path(folder), arguments)
        with StreamServer(streams) as server:
            return run_soak(prefix, pathlib.Path(folder), server, streams, arguments)


if __name__ == "__main__":
    sys.exit(main())
