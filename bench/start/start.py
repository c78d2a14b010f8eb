"""Compares the start of the built host with two floors, and prints tables in Markdown.

    start.py [--rounds N]

"bare" (bench/playback/bare_player.cpp) makes a player and a window. "same calls" (start_floor.cpp) makes only the
host's system calls, in the host's order. The programs share one Wine prefix and take turns.

Each start has two figures: the time until the window is shown, and the processor time of the process and of Wine's
server until then. Other work on the machine affects the second less.
"""

import argparse
import contextlib
import os
import pathlib
import shutil
import statistics
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "devkit/interface"), str(ROOT)]

from tests.support.process_usage import process_of  # noqa: E402
from vantro_interface.host import (  # noqa: E402
    BUILD, WINE, Host, Prefix, bare_libraries, player_libraries, windows_path)

NAMES = {"VantroWindowClass": "host", "BarePlayer": "bare", "StartFloor": "same calls"}
AIMS = {"bare": "1.15", "same calls": "1.10"}


def processor_seconds(pid):
    """Returns the time of the whole process, including its ended threads, in the kernel's own resolution."""
    whole_process_by_the_scheduler = 2
    return time.clock_gettime((~pid << 3) | whole_process_by_the_scheduler)


def server_of(prefix):
    """Returns the process id of Wine's server for this prefix. Its working folder has the prefix's device and inode."""
    stat = os.stat(prefix.folder)
    name = f"server-{stat.st_dev:x}-{stat.st_ino:x}"
    for entry in pathlib.Path("/proc").glob("[0-9]*"):
        with contextlib.suppress(OSError):
            if (entry / "comm").read_text().startswith("wineserver") and os.readlink(entry / "cwd").endswith(name):
                return int(entry.name)
    raise ProcessLookupError(f"no server works in {name}")


def make_folder(folder, program, libraries):
    """Makes a folder with a floor's program, the libraries and the engine."""
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    shutil.copy2(BUILD / program, folder)
    shutil.copy2(BUILD / "devkit/engine/flutter_windows.dll", folder)
    for name, source in libraries.items():
        shutil.copy2(source, folder / name)
    return folder / pathlib.Path(program).name


def make_programs(prefix, folder):
    """Returns the window class and executable of each program. Host and floor get the same set of files."""
    host = Host(prefix, folder / "host", libraries=player_libraries(), log=False)  # makes the folder; nothing is started
    same_calls = make_folder(folder / "same-calls", "bench/start/start_floor.exe", player_libraries())
    shutil.copytree(folder / "host/data", folder / "same-calls/data")
    bare = make_folder(folder / "bare", "bench/playback/bare_player.exe", bare_libraries())
    return {"VantroWindowClass": host.executable, "StartFloor": same_calls, "BarePlayer": bare}


def timed_starts(prefix, programs, rounds):
    """Starts each program in turn. Yields its window class, the milliseconds until the window was shown, and the
    processor milliseconds of the process and of Wine's server meanwhile."""
    server = server_of(prefix)
    command = [WINE, BUILD / "bench/start/start_time.exe", str(rounds)]
    for name, executable in programs.items():
        command += [name, windows_path(executable)]
    clock = subprocess.Popen([*map(str, command)], env={**prefix.environment, "VANTRO_LOOPBACK_PORT": "0"},
                             stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)

    def go_on():
        clock.stdin.write("\n")
        clock.stdin.flush()
        return clock.stdout.readline().split()

    with clock:
        for _ in range(rounds * len(programs)):
            server_before = processor_seconds(server)
            answer = go_on()
            if len(answer) != 2:
                raise RuntimeError("a start failed")
            process = int(process_of(programs[answer[0]]).name)
            spent = processor_seconds(process) + processor_seconds(server) - server_before
            go_on()
            yield answer[0], float(answer[1]), spent * 1000


def measure(prefix, folder, rounds):
    """Returns the milliseconds of all starts, for each program and kind of time. The first start is left out, because
    it reads the program's files."""
    programs = make_programs(prefix, folder)
    taken = {NAMES[name]: {"shown": [], "processor": []} for name in programs}
    for name, shown, processor in timed_starts(prefix, programs, rounds + 1):
        taken[NAMES[name]]["shown"].append(shown)
        taken[NAMES[name]]["processor"].append(processor)
    return {name: {what: values[1:] for what, values in row.items()} for name, row in taken.items()}


def print_table(taken):
    print("| Start of the process to the shown window | Median | Best | Host's ratio, by pairs | Aim "
          "| Processor time, median | Host's ratio, by pairs | Runs |")
    print("|---|---:|---:|---:|---:|---:|---:|---:|")
    for name, row in taken.items():
        ratios = ["", ""]
        if name != "host":
            ratios = [f"{statistics.median(own / floor for own, floor in zip(taken['host'][what], row[what])):.2f}"
                      for what in ("shown", "processor")]
        print(f"| {name} | {statistics.median(row['shown']):.1f} ms | {min(row['shown']):.1f} ms | {ratios[0]} "
              f"| {AIMS.get(name, '')} | {statistics.median(row['processor']):.1f} ms | {ratios[1]} | {len(row['shown'])} |")
    print(f"\nLoad average of the last minute at the end of these runs: {os.getloadavg()[0]:.1f}")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--rounds", type=int, default=40)
    options = parser.parse_args()
    with Prefix(ROOT / f"out/wine/bench-{os.getpid()}") as prefix:
        print_table(measure(prefix, ROOT / "out/bench/start", options.rounds))


if __name__ == "__main__":
    main()
