"""Compares playback in the built host with a bare program that makes the same libvlc calls (bare_player.cpp).

    playback.py [--rounds N] [--tile-rounds N] [--only PART]

Both programs have the development library beside them, share one Wine prefix and take turns, so that other work on the
machine affects both alike. Prints tables in Markdown.
"""

import argparse
import contextlib
import json
import os
import pathlib
import shutil
import socket
import statistics
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "devkit/interface"), str(ROOT)]

from tests.end_to_end.stream_server import StreamServer  # noqa: E402
from tests.support.process_usage import process_of, usage  # noqa: E402
from vantro_interface import codec  # noqa: E402
from vantro_interface.client import PLAYER_CHANNEL, WaitTimeout  # noqa: E402
from vantro_interface.frames import Frame, Kind, read_frame  # noqa: E402
from vantro_interface.host import (  # noqa: E402
    BUILD, START_TIMEOUT, WINE, Host, Prefix, bare_libraries, player_libraries, windows_path)

NETWORK_CACHE_MS = 300
STREAMS = ["test.ts", "red.ts", "green.ts", "blue.ts", "yellow.ts"]
TILE_COUNTS = [1, 2, 4, 8, 16]
TILE_SECONDS = 4.0
WM_NEW_WINDOW = 0x400 + 1
TIMEOUT_SECONDS = 30.0
MOMENTS = {
    "request": "request to first picture",
    "call": "first libvlc call to first picture",
    "play": "request to libvlc's play",
}


def clock():
    """Returns the time of the clock that the development library's log of times and, under Wine,
    QueryPerformanceCounter use."""
    return time.clock_gettime(time.CLOCK_MONOTONIC_RAW)


def wait_for(condition, what, seconds=TIMEOUT_SECONDS):
    limit = time.monotonic() + seconds
    while not (value := condition()):
        if time.monotonic() > limit:
            raise WaitTimeout(f"{what} did not come within {seconds} s")
        time.sleep(0.005)
    return value


class Log:
    """A file of JSON lines that another process writes."""

    def __init__(self, path):
        self.path = pathlib.Path(path)
        self.path.unlink(missing_ok=True)

    def lines(self):
        if not self.path.exists():
            return []
        text = self.path.read_text()
        return [json.loads(line) for line in text[: text.rfind("\n") + 1].splitlines()]


class QuietInterface:
    """An interface that reads only on request. While a time is measured, no Python program uses the processor that the
    host needs. The host's messages wait in the socket meanwhile."""

    def __init__(self, port):
        self._socket = socket.create_connection(("127.0.0.1", port), TIMEOUT_SECONDS)
        self._engine = json.loads(self._read(Kind.HELLO).payload)["engines"][0]
        self._id = 0

    def close(self):
        self._socket.close()

    def send(self, method, arguments=None):
        self._id += 1
        payload = codec.encode_method_call(method, arguments)
        frame = Frame(Kind.MESSAGE, self._engine, self._id, channel=PLAYER_CHANNEL, payload=payload)
        self._socket.sendall(frame.encode())

    def answer(self):
        return codec.decode_envelope(self._read(Kind.REPLY, self._id).payload)

    def _read(self, kind, number=0):
        while (frame := read_frame(self._socket)).kind != kind or frame.id != number:
            pass
        return frame


class Process:
    """The system's figures of one Windows program."""

    def __init__(self, executable):
        self._folder = wait_for(lambda: self._find(executable), f"the process of {executable}")

    @staticmethod
    def _find(executable):
        with contextlib.suppress(ProcessLookupError):
            return process_of(executable)
        return None

    def cpu_seconds(self):
        """Returns the exact sum of the running threads; the process's own count has a resolution of hundredths. Streams
        that play steadily end no threads."""
        spent = 0
        for thread in (self._folder / "task").iterdir():
            with contextlib.suppress(OSError):
                spent += int((thread / "schedstat").read_text().split()[0])
        return spent / 1e9

    def private_kilobytes(self):
        """Returns the memory of the process alone: without code and shared pages."""
        return usage(self._folder).written_kib


class Program:
    """One of the two compared programs: its process and the development library's reports about it."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        self.times = Log(f"{folder}.times")
        self.stats = Log(f"{folder}.stats")

    def library_environment(self):
        return {"VANTRO_LIBVLC_TIMES": str(self.times.path), "VANTRO_LIBVLC_STATS": str(self.stats.path)}

    def displayed(self):
        """Returns the number of pictures that libvlc counts as shown, of all players, from their newest lines."""
        newest = {line["player"]: line["displayed"] for line in self.stats.lines()}
        return sum(newest.values())

    def time_to_picture(self, url):
        """Returns the milliseconds until the first picture is drawn: from the request, and from the first libvlc
        call."""
        before = len(self.times.lines())
        requested = clock()
        self.play(url)

        def moments():
            lines = self.times.lines()[before:]
            return lines if any(line["what"] == "first_picture" for line in lines) else None

        lines = wait_for(moments, f"the first picture of {url}")
        self.settle()
        first_call = lines[0]["at"]
        picture = next(line["at"] for line in lines if line["what"] == "first_picture")
        # This also proves that both clocks are the same.
        assert requested <= first_call <= picture <= clock(), lines
        play = next(line["at"] for line in lines if line["what"] == "play")
        return {"request": (picture - requested) * 1000, "call": (picture - first_call) * 1000,
                "play": (play - requested) * 1000}


class HostProgram(Program):
    name = "host"

    def __init__(self, prefix, folder):
        super().__init__(folder)
        self.host = Host(prefix, folder, libraries=player_libraries(), log=False, environment=self.library_environment())
        self.host.start()
        self.process = Process(self.host.executable)

    @property
    def client(self):
        return self.host.client

    def close(self):
        self.host.close()

    def play(self, url):
        assert self.client.invoke("setMedia", set_media(url)) is True

    def settle(self):
        pass

    def tiles(self, count, urls):
        """Makes the grid of that many streams."""
        if count == 2:
            assert self.client.invoke("enableMultiView") is True
        while len(self.cells()) < count:
            url = urls[len(self.cells()) % len(urls)]
            assert self.client.invoke("mvAddStream", {"url": url, "name": "tile"}) is True

    def cells(self):
        """Returns the rectangles of the tiles in client pixels of their window."""
        windows = self.client.windows("VantroVlcHostWindow")
        (main,) = self.client.windows("VantroWindowClass")
        return [(window.rect[0] - main.rect[0], window.rect[1] - main.rect[1], *window.size) for window in windows]

    @contextlib.contextmanager
    def alone(self):
        """Disconnects the interface: sending to it is the engine's work, and this engine exists only for tests."""
        self.client.close()
        yield
        self.host.connect(START_TIMEOUT)

    def open_window(self):
        count = len(self.client.windows("VantroWindowClass"))
        self.client.post(self.client.windows("VantroWindowClass")[0].handle, WM_NEW_WINDOW)
        self.client.poll(lambda: len(self.client.windows("VantroWindowClass")), lambda now: now > count, "a window")
        self.client.settle()


class QuietHostProgram(HostProgram):
    """The same with a quiet interface, for measuring times. It supports playback only."""

    def __init__(self, prefix, folder):
        super().__init__(prefix, folder)
        self.client.close()
        self.quiet = QuietInterface(int((self.folder / "port.txt").read_text()))

    def close(self):
        self.quiet.close()
        super().close()

    def play(self, url):
        self.quiet.send("setMedia", set_media(url))

    def settle(self):
        assert self.quiet.answer() is True

    def stop(self):
        """Returns the milliseconds until the request is answered."""
        requested = clock()
        self.quiet.send("stop")
        self.settle()
        return (clock() - requested) * 1000


def set_media(url):
    return {"url": url, "networkCacheMs": NETWORK_CACHE_MS, "isLive": False}


class BareProgram(Program):
    name = "bare"

    def __init__(self, prefix, folder):
        super().__init__(folder)
        make_bare_folder(self.folder)
        environment = {**prefix.environment, **self.library_environment(), "VANTRO_LOOPBACK_PORT": "0"}
        self.output = self.folder / "output.txt"
        with open(self.output, "wb") as output:
            self.popen = subprocess.Popen([WINE, windows_path(self.folder / "bare_player.exe"), "commands"],
                                          cwd=self.folder, env=environment, stdin=subprocess.PIPE, stdout=output,
                                          stderr=subprocess.STDOUT, start_new_session=True)
        self.process = Process(self.folder / "bare_player.exe")
        self.commands = 0
        self.tile_count = 1
        self.command("stop")

    def close(self):
        self.popen.stdin.close()
        self.popen.wait(TIMEOUT_SECONDS)

    def command(self, line):
        self.begin(line)
        self.settle()

    def begin(self, line):
        self.commands += 1
        self.popen.stdin.write(f"{line}\n".encode())
        self.popen.stdin.flush()

    def settle(self):
        wait_for(lambda: self.output.read_text(errors="replace").count("did ") >= self.commands, "a command's end")

    def play(self, url):
        self.begin(f"play {url}")

    def stop(self):
        """Returns the milliseconds from the call to the Stopped event."""
        self.command("stop")
        return float(self.output.read_text(errors="replace").split()[-1])

    def tiles(self, cells, urls):
        """Adds the missing tiles of a grid that looks like the host's."""
        self.command("place {} {} {} {}".format(*cells[0]))
        for index in range(self.tile_count, len(cells)):
            self.command("tile {} {} {} {} {}".format(*cells[index], urls[index % len(urls)]))
        self.tile_count = len(cells)

    @contextlib.contextmanager
    def alone(self):
        yield


def make_bare_folder(folder):
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    shutil.copy2(BUILD / "bench/playback/bare_player.exe", folder)
    shutil.copy2(BUILD / "devkit/engine/flutter_windows.dll", folder)
    for name, source in bare_libraries().items():
        shutil.copy2(source, folder / name)


def both(prefix, folder):
    stack = contextlib.ExitStack()
    programs = [stack.enter_context(contextlib.closing(QuietHostProgram(prefix, folder / "host"))),
                stack.enter_context(contextlib.closing(BareProgram(prefix, folder / "bare")))]
    return stack, programs


def turns(programs, rounds):
    """Yields the number of the round and the program whose turn it is. Each program is first equally often."""
    for index in range(rounds):
        for program in programs if index % 2 == 0 else reversed(programs):
            yield index, program


def summary(values):
    ordered = sorted(values)
    return {"median": statistics.median(ordered), "least": ordered[0], "rounds": len(ordered)}


def measure_pictures(prefix, folder, server, rounds):
    """Measures first pictures, of a media in an idle player and of one that replaces another, and the stop of the
    latter."""
    urls = [server.url(name) for name in STREAMS]
    taken = {kind: {"host": [], "bare": []} for kind in ("idle", "change")}
    stops = {"host": [], "bare": []}
    stack, programs = both(prefix, folder)
    with stack:
        for program in programs:  # the first media of a process also loads libvlc's plugins
            program.time_to_picture(urls[0])
            program.stop()
        for index, program in turns(programs, rounds):
            taken["idle"][program.name].append(program.time_to_picture(urls[index % len(urls)]))
            time.sleep(0.3)  # the replaced stream must be playing
            taken["change"][program.name].append(program.time_to_picture(urls[(index + 1) % len(urls)]))
            stops[program.name].append(program.stop())
    pictures = {kind: {name: {start: summary([round_[start] for round_ in rounds_]) for start in MOMENTS}
                       for name, rounds_ in names.items()} for kind, names in taken.items()}
    return pictures, {name: summary(values) for name, values in stops.items()}


def measure_interval(program, seconds):
    """Returns processor time and pictures over some seconds, between two lines of the development library's
    statistics."""

    def next_line():
        before = len(program.stats.lines())
        wait_for(lambda: len(program.stats.lines()) > before, "the development library's statistics")
        return clock(), program.process.cpu_seconds(), program.displayed()

    with program.alone():
        began, cpu, shown = next_line()
        time.sleep(seconds)
        ended, cpu_end, shown_end = next_line()
    return {"cpu": (cpu_end - cpu) / (ended - began), "pictures": (shown_end - shown) / (ended - began),
            "kilobytes": program.process.private_kilobytes()}


def measure_tiles(prefix, folder, server, rounds):
    """Measures processor time and memory with one to sixteen streams. The programs run one after the other, because a
    small machine cannot play sixteen streams of each at once."""
    urls = [server.url(name) for name in STREAMS]
    table = {}
    for count in TILE_COUNTS:
        taken = {"host": [], "bare": []}
        for _ in range(rounds):
            with contextlib.closing(HostProgram(prefix, folder / "tiles-host")) as host:
                host.time_to_picture(urls[0])
                for step in range(2, count + 1):
                    host.tiles(step, urls)
                cells = host.cells()
                time.sleep(1.5)  # start of the streams
                taken["host"].append(measure_interval(host, TILE_SECONDS))
            with contextlib.closing(BareProgram(prefix, folder / "tiles-bare")) as bare:
                bare.time_to_picture(urls[0])
                bare.tiles(cells, urls)
                time.sleep(1.5)
                taken["bare"].append(measure_interval(bare, TILE_SECONDS))
        table[count] = {name: {key: statistics.median(sample[key] for sample in samples) for key in samples[0]}
                        for name, samples in taken.items()}
        print_tiles_row(count, table[count])
    return table


def slope(points):
    """Returns the cost of one more, by least squares over (number, value)."""
    return statistics.linear_regression([x for x, _ in points], [y for _, y in points]).slope


def measure_windows(prefix, folder, windows=6):
    """Measures the memory of one more window: the host's; a bare one's with its libvlc; the engine's; and that of a
    second top-level window like the overlay, whose picture Wine keeps in the process."""
    points = {"host": [], "bare": [], "engine": [], "popup": []}
    with contextlib.closing(HostProgram(prefix, folder / "windows-host")) as host:
        for count in range(1, windows + 1):
            points["host"].append((count, host.process.private_kilobytes()))
            host.open_window()
    for what, command in (("bare", "window"), ("engine", "engine"), ("popup", "popup")):
        with contextlib.closing(BareProgram(prefix, folder / "windows-bare")) as bare:
            bare.command(command)  # the first of a kind loads and registers what later ones share
            for count in range(1, windows + 1):
                points[what].append((count, bare.process.private_kilobytes()))
                bare.command(command)
    return {name: slope(values) for name, values in points.items()}


def print_table_head(*names):
    print("\n| " + " | ".join(names) + " |\n|---|" + "---:|" * (len(names) - 1), flush=True)


def print_row(*cells):
    print("| " + " | ".join(map(str, cells)) + " |", flush=True)


def print_comparison_head():
    print_table_head("What", "Host, median", "Bare, median", "Ratio", "Aim", "Host, best", "Bare, best", "Runs of each")


def print_comparison(what, host, bare, aim):
    print_row(what, f"{host['median']:.1f} ms", f"{bare['median']:.1f} ms", f"{host['median'] / bare['median']:.2f}", aim,
              f"{host['least']:.1f} ms", f"{bare['least']:.1f} ms", host["rounds"])


def print_tiles_row(count, row):
    host, bare = row["host"], row["bare"]
    ratio = (host["cpu"] / host["pictures"]) / (bare["cpu"] / bare["pictures"])
    print_row(count, f"{host['cpu'] * 100:.1f} %", f"{bare['cpu'] * 100:.1f} %", f"{host['pictures']:.0f}",
              f"{bare['pictures']:.0f}", f"{ratio:.3f}", "1.02" if count == 4 else "", f"{host['kilobytes'] / 1024:.0f}",
              f"{bare['kilobytes'] / 1024:.0f}")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--rounds", type=int, default=25)
    parser.add_argument("--tile-rounds", type=int, default=2)
    parser.add_argument("--only", choices=["pictures", "tiles", "windows"])
    options = parser.parse_args()
    folder = ROOT / "out/bench/playback"
    folder.mkdir(parents=True, exist_ok=True)
    streams = ROOT / "out/streams"
    subprocess.run([ROOT / "devkit/streams/make-streams", streams], check=True, stdin=subprocess.DEVNULL)

    def wanted(part):
        return options.only in (None, part)

    with Prefix(ROOT / f"out/wine/bench-{os.getpid()}") as prefix, StreamServer(streams) as server:
        if wanted("pictures"):
            print_comparison_head()
            pictures, stops = measure_pictures(prefix, folder, server, options.rounds)
            for kind, words in (("idle", "setMedia"), ("change", "channel change")):
                for moment, span in MOMENTS.items():
                    print_comparison(f"{words}: {span}", pictures[kind]["host"][moment], pictures[kind]["bare"][moment],
                                     "" if moment == "play" else "1.02")
            print_comparison("stop: request to answer; bare: call to Stopped", stops["host"], stops["bare"], "+20 ms")
        if wanted("tiles"):
            print_table_head("Tiles", "Host", "Bare", "Pictures/s, host", "Pictures/s, bare", "Ratio per picture",
                             "Aim", "Host, MiB", "Bare, MiB")
            tiles = measure_tiles(prefix, folder, server, options.tile_rounds)
            host, bare = (slope([(count, row[name]["kilobytes"]) for count, row in tiles.items()])
                          for name in ("host", "bare"))
            print_table_head("Memory of one more", "Host", "Bare", "Difference")
            print_row("tile", f"{host:.0f} KiB", f"{bare:.0f} KiB", f"{host - bare:.0f} KiB")
        if wanted("windows"):
            memory = measure_windows(prefix, folder)
            beyond = memory["host"] - sum(memory[what] for what in ("bare", "engine", "popup"))
            print_table_head("Memory of one more", "Host", "Bare window with its libvlc", "Engine",
                             "Second top-level window", "Host minus the others")
            print_row("window", *(f"{memory[what]:.0f} KiB" for what in ("host", "bare", "engine", "popup")),
                      f"{beyond:.0f} KiB")


if __name__ == "__main__":
    main()
