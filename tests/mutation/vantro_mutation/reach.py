"""Which test programs run which lines, and the order in which to run the programs."""

import collections
import fnmatch
import hashlib
import json
import pathlib
import subprocess
import tomllib

from .workspace import NATIVE_PRESET, WINDOWS_PRESET, failed_tests, tree_files

PRODUCT = ("shell", "flutter_host", "channel", "player", "services", "common", "runtime")
GCOV = "x86_64-w64-mingw32-gcov-posix"
TABLE = pathlib.Path(__file__).resolve().parents[1] / "integration.toml"
# The files that the reach depends on. It does not depend on documents and tools.
SOURCES = ("*.cpp", "*.h", "*CMakeLists.txt", "*.cmake", "*.def", "CMakePresets.json")


def integration_files(file, table=None):
    """The integration tests for a file of the product: those of the first pattern that matches."""
    rows = table if table is not None else tomllib.loads(TABLE.read_text())["rows"]
    return next((row["tests"] for row in rows if fnmatch.fnmatch(file, row["files"])), [])


def fingerprint(root):
    digest = hashlib.sha256()
    for name in tree_files(root):
        if any(fnmatch.fnmatch(name, pattern) for pattern in SOURCES):
            digest.update(name.encode() + b"\0" + (root / name).read_bytes() + b"\0")
    return digest.hexdigest()


def read_counters(build, tree):
    """Returns {file: {line: visits}} of the product and removes the counters."""
    counters = sorted(build.rglob("*.gcda"))
    lines = collections.defaultdict(collections.Counter)
    for begin in range(0, len(counters), 50):
        output = subprocess.run([GCOV, "--json-format", "--stdout", *counters[begin:begin + 50]], check=False, cwd=tree,
                                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True).stdout
        for document in map(json.loads, output.splitlines()):
            for file in document["files"]:
                if file["file"].split("/")[0] in PRODUCT:
                    for line in file["lines"]:
                        lines[file["file"]][line["line_number"]] += line["count"]
    for path in counters:
        path.unlink()
    return lines


class Reach:
    """visited: {program name: {file: set of lines}}; counted: {file: set of lines that have a counter}."""

    def __init__(self, programs, visited, counted, portable=(), includers=None):
        self.programs = {(program.preset, program.name): program for program in programs}
        self.visited = visited
        self.counted = counted
        self.portable = portable  # files that the native build compiles
        self.includers = includers or {}  # {file: files that include it}
        self.seconds = {}  # {(preset, name): the time of a run}
        self.kills = collections.Counter()

    def with_programs(self, programs):
        """The same table for the programs of another copy. Both tables share the record of kills."""
        other = Reach(programs, self.visited, self.counted, self.portable, self.includers)
        other.kills = self.kills
        return other

    def programs_for(self, mutant):
        """The native programs, then the Windows programs. The most likely to notice the change come first."""
        chosen = []
        if mutant.file in self.portable:
            chosen += [key for key in self.programs if key[0] == NATIVE_PRESET]
        names = self.visitors(mutant)
        chosen += [key for key, program in self.programs.items() if key[0] == WINDOWS_PRESET and (
            program.folder == "runtime" if mutant.file.startswith("runtime/") else program.name in names)]
        folder = mutant.file.split("/")[0]

        def rank(key):
            program = self.programs[key]
            return (key[0] != NATIVE_PRESET, -self.kills[mutant.file, key], program.folder != folder,
                    not self.sounds_like(program.name, mutant.file), self.seconds.get(key, 0))

        return [self.programs[key] for key in sorted(chosen, key=rank)]

    @staticmethod
    def sounds_like(name, file):
        words = pathlib.PurePath(file).stem.split("_")
        return any(len(word) > 4 and word in name for word in words)

    def visitors(self, mutant):
        """Names of the programs that run one of the statement's lines. Data have no counters. For data these are all
        programs that run a line of the file or of a file that includes it."""
        statement = set(range(mutant.first, mutant.last + 1))
        if statement & self.counted.get(mutant.file, set()):
            return {name for name, files in self.visited.items() if statement & files.get(mutant.file, set())}
        names = {name for name, files in self.visited.items() if files.get(mutant.file)}
        if not mutant.file.endswith(".cpp"):
            for includer in self.includers.get(mutant.file, ()):
                names |= {name for name, files in self.visited.items() if files.get(includer)}
        return names

    def note_kill(self, mutant, program):
        self.kills[mutant.file, (program.preset, program.name)] += 1


def measure(workspace, program):
    """Runs a program once with counters. Returns {file: [lines that it visits, lines that have a counter]} and the time
    of the run."""
    build = workspace.build_folder(WINDOWS_PRESET)
    read_counters(build, workspace.tree)
    run = workspace.run_program(program, 300, environment={"GCOV_PREFIX": "Z:"})
    if not run.passed:
        raise RuntimeError(f"{program} fails on the unchanged tree: {failed_tests(run.output)}\n{run.output[-3000:]}")
    return {file: [sorted(line for line, count in counts.items() if count), sorted(counts)]
            for file, counts in read_counters(build, workspace.tree).items()}, run.seconds


def includers_of(objects_by_source):
    """Returns {file: product files whose objects contain its code}, from {file: objects}."""
    source_of = {}
    for file, objects in objects_by_source.items():
        if file.endswith(".cpp"):
            for name in objects:
                if name.endswith(f"{file}.obj") or name.endswith(f"{pathlib.PurePath(file).name}.obj"):
                    source_of[name] = file
    return {file: {source_of[name] for name in objects if source_of.get(name, "").split("/")[0] in PRODUCT}
            for file, objects in objects_by_source.items()}


def load(workspace, programs, mark, out, say):
    """The reach of the programs. Reuses the measurements of an earlier run if the mark of the sources is the same."""
    known = out / "reach.json"
    data = json.loads(known.read_text()) if known.is_file() else {}
    if data.get("mark") != mark:
        data = {"mark": mark, "programs": {}}
    visited, counted, seconds = {}, collections.defaultdict(set), {}
    for program in programs:
        if program.preset != WINDOWS_PRESET:
            continue
        if program.name not in data["programs"]:
            data["programs"][program.name], seconds[program.preset, program.name] = measure(workspace, program)
            known.write_text(json.dumps(data))
            say(f"{program.name} visits {sum(len(lines[0]) for lines in data['programs'][program.name].values())} lines")
        files = data["programs"][program.name]
        visited[program.name] = {file: set(lines[0]) for file, lines in files.items()}
        for file, lines in files.items():
            counted[file] |= set(lines[1])
    table = Reach(programs, visited, counted, set(workspace.objects_by_source(NATIVE_PRESET)),
                  includers_of(workspace.objects_by_source(WINDOWS_PRESET)))
    table.seconds = seconds  # of the programs that were just run
    return table
