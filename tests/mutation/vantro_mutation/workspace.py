"""A copy of the tree with its own builds and Wine prefix, in which one change at a time is tested."""

import contextlib
import dataclasses
import json
import os
import pathlib
import re
import resource
import shutil
import signal
import subprocess
import time

# The Windows build has line counters. They show which programs run which lines.
WINDOWS_PRESET, NATIVE_PRESET = "mingw-coverage", "native-mutate"
WINESERVER = "/usr/lib/wine/wineserver64"
WINE = "/usr/lib/wine/wine64"
# A changed loop may allocate or write without end.
MEMORY_LIMIT = 4 << 30
FILE_LIMIT = 256 << 20
HUNG = 97  # the exit code of the unit tests' own watchdog


@dataclasses.dataclass(frozen=True)
class Program:
    """A test program of ctest. folder is its folder under tests/unit."""

    name: str
    preset: str
    folder: str
    command: tuple
    working_directory: str

    def __str__(self):
        return f"{self.name} ({'native' if self.preset == NATIVE_PRESET else 'Wine'})"


@dataclasses.dataclass(frozen=True)
class Run:
    code: int
    seconds: float
    timed_out: bool
    output: str

    @property
    def passed(self):
        return self.code == 0 and not self.timed_out

    @property
    def hung(self):
        return self.timed_out or self.code == HUNG


def tree_files(root):
    """The files that git tracks or would add."""
    listed = subprocess.run(["git", "ls-files", "-z", "-co", "--exclude-standard"], cwd=root, check=True,
                            stdout=subprocess.PIPE).stdout.decode().split("\0")
    return sorted(name for name in set(listed) if name and (root / name).is_file())


def copy_tree(root, tree):
    """Makes the tree equal to the root except for the folder out. Unchanged files keep their times."""
    names = tree_files(root)
    for name in names:
        source, target = root / name, tree / name
        data = source.read_bytes()
        if target.is_file() and target.read_bytes() == data:
            continue
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_bytes(data)
        shutil.copymode(source, target)
    wanted = set(names)
    for path in tree.rglob("*"):
        relative = path.relative_to(tree).as_posix()
        if path.is_file() and not relative.startswith("out/") and relative not in wanted:
            path.unlink()


def limit_resources():
    resource.setrlimit(resource.RLIMIT_DATA, (MEMORY_LIMIT, MEMORY_LIMIT))
    resource.setrlimit(resource.RLIMIT_FSIZE, (FILE_LIMIT, FILE_LIMIT))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


class Workspace:
    def __init__(self, root, folder, jobs=1):
        self.root = pathlib.Path(root)
        self.folder = pathlib.Path(folder)
        self.tree = self.folder / "tree"
        self.jobs = jobs
        self._keeper = None
        self._running = None
        self._closed = False
        self.environment = {
            **os.environ, "CCACHE_DIR": str(self.root / "out/mutate/ccache"), "CCACHE_MAXSIZE": "4G",
            "CMAKE_C_COMPILER_LAUNCHER": "ccache", "CMAKE_CXX_COMPILER_LAUNCHER": "ccache",
            "PYTHONPATH": str(self.tree / "devkit/interface"), "PYTHONDONTWRITEBYTECODE": "1",
            "VANTRO_WINEPREFIX": str(self.tree / "out/wine/unit"), "VANTRO_BUILD": str(self.build_folder(WINDOWS_PRESET)),
            "WINEDEBUG": "-all", "GTEST_FAIL_FAST": "1",
            # The folder for counters that are not used.
            "GCOV_PREFIX": f"Z:{self.folder}/counters"}

    def build_folder(self, preset):
        return self.tree / "out/build" / preset

    def update(self):
        self.tree.mkdir(parents=True, exist_ok=True)
        copy_tree(self.root, self.tree)

    def command(self, *command, seconds=None, environment=None, cwd=None, limited=False):
        """Runs a command in a new process group. When the command ends, the whole group is killed."""
        if self._closed:
            raise RuntimeError("the run was ended")
        began = time.monotonic()
        output = self.folder / "output.txt"
        with open(output, "wb") as file:
            process = subprocess.Popen(list(map(str, command)), cwd=cwd or self.tree, env=environment or self.environment,
                                       stdin=subprocess.DEVNULL, stdout=file, stderr=subprocess.STDOUT, start_new_session=True,
                                       preexec_fn=limit_resources if limited else None)
        self._running = process
        timed_out = False
        try:
            process.wait(seconds)
        except subprocess.TimeoutExpired:
            timed_out = True
        finally:
            with contextlib.suppress(ProcessLookupError):
                os.killpg(process.pid, signal.SIGKILL)
            process.wait()
            self._running = None
        with open(output, "rb") as file:
            file.seek(max(0, output.stat().st_size - (1 << 20)))
            text = file.read().decode(errors="replace")
        return Run(process.returncode, time.monotonic() - began, timed_out, text)

    # Building.

    def configure(self, preset):
        # Warnings are errors, as in the builds of ./dev.
        run = self.command("cmake", "--preset", preset, "-DCMAKE_COMPILE_WARNING_AS_ERROR=ON")
        if not run.passed:
            raise RuntimeError(f"{preset} can't be configured:\n{run.output[-2000:]}")

    def build(self, preset, targets):
        return self.command("cmake", "--build", self.build_folder(preset), "-j", self.jobs, "--target", *targets)

    def _tests(self, preset):
        listed = subprocess.run(["ctest", "--test-dir", self.build_folder(preset), "--show-only=json-v1"], check=True,
                                stdout=subprocess.PIPE, env=self.environment).stdout
        return json.loads(listed)["tests"]

    def program_names(self, preset):
        """The names of the test programs of a configured build."""
        return [test["name"] for test in self._tests(preset)]

    def programs(self, preset, names):
        """The programs with these names. They must be built, because ctest has no command for a program that is not."""
        folders = {path.stem: path.parts[-3] for path in self.build_folder(preset).glob("tests/unit/*/CMakeFiles/*.dir")}
        found = []
        for test in self._tests(preset):
            if test["name"] in names:
                values = {entry["name"]: entry["value"] for entry in test["properties"]}
                found.append(Program(test["name"], preset, folders.get(test["name"], ""), tuple(test["command"]),
                                     values["WORKING_DIRECTORY"]))
        return found

    def objects_by_source(self, preset):
        """Returns {file of the tree: objects that are built from it}, headers included. Call it after a build."""
        build = self.build_folder(preset)
        text = subprocess.run(["ninja", "-C", build, "-t", "deps"], check=True, stdout=subprocess.PIPE, text=True).stdout
        table = {}
        current = ""
        for line in text.splitlines():
            if line.startswith("    "):
                path = os.path.normpath(build / line.strip())
                if path.startswith(f"{self.tree}/") and not path.startswith(f"{self.tree}/out/"):
                    table.setdefault(os.path.relpath(path, self.tree), set()).add(current)
            elif ": #deps" in line:
                current = line.split(":")[0]
        return table

    # Wine.

    def start_wine(self):
        """Starts a process that keeps Wine's services running. Without it each program would wait for them to start."""
        self.stop_wine()
        prefix = self.environment["VANTRO_WINEPREFIX"]
        if not pathlib.Path(prefix).is_dir():
            subprocess.run([self.tree / "devkit/wine/prefix", prefix, "null"], check=True, env=self.environment,
                           stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        launcher = self.build_folder(WINDOWS_PRESET) / "devkit/interface/host_launcher.exe"
        self._keeper = subprocess.Popen([WINE, launcher, "--keep"], env={**self.environment, "WINEPREFIX": prefix},
                                        stdin=subprocess.PIPE, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                        start_new_session=True)

    def stop_wine(self):
        prefix = pathlib.Path(self.environment["VANTRO_WINEPREFIX"])
        if prefix.is_dir():
            subprocess.run([WINESERVER, "-k"], env={**self.environment, "WINEPREFIX": str(prefix)}, check=False,
                           stderr=subprocess.DEVNULL)
        if self._keeper:
            self._keeper.stdin.close()
            self._keeper.wait()
            self._keeper = None

    def close(self):
        """Ends the running command. A worker that starts another command gets an error."""
        self._closed = True
        if process := self._running:
            with contextlib.suppress(ProcessLookupError):
                os.killpg(process.pid, signal.SIGKILL)
        self.stop_wine()
        for prefix in self.tree.glob("out/wine/*-*"):  # prefixes of killed integration tests
            if (prefix / "system.reg").is_file():
                subprocess.run([WINESERVER, "-k"], env={**self.environment, "WINEPREFIX": str(prefix)}, check=False,
                               stderr=subprocess.DEVNULL)

    # Running.

    def run_program(self, program, seconds, only=None, environment=None):
        arguments = [f"--gtest_filter={only}"] if only else []
        # gcov reports an error for counters of another change of the same file.
        shutil.rmtree(self.folder / "counters", ignore_errors=True)
        # The program's own watchdog ends it first and prints the name of the test.
        environment = {**self.environment, "VANTRO_TEST_LIMIT": str(max(1, int(seconds) - 5)), **(environment or {})}
        run = self.command(*program.command, *arguments, seconds=seconds, cwd=program.working_directory, limited=True,
                           environment=environment)
        if run.timed_out and program.preset != NATIVE_PRESET:
            self.start_wine()
        return run

    def compare_log_page(self):
        """The document test that compares docs/log-lines.md with the sources."""
        return self.command("/usr/bin/python3", "devkit/log_lines.py", "--check")

    def run_integration(self, files, seconds):
        launcher = os.environ.get("VANTRO_MUTATE_LAUNCHER", "").split()
        return self.command(*launcher, "/usr/bin/python3", "-m", "pytest", "-x", "-q", "-p", "no:cacheprovider", *files,
                            seconds=seconds)

    # Changing.

    @contextlib.contextmanager
    def changed(self, mutant):
        path = self.tree / mutant.file
        original = path.read_bytes()
        path.write_bytes(mutant.apply(original.decode()).encode())
        try:
            yield
        finally:
            path.write_bytes(original)


def failed_tests(output):
    """The tests that GoogleTest or pytest reports as failed, or the test that was running when the program ended."""
    failed = re.findall(r"^\[  FAILED  \] ([\w/.]+)", output, re.MULTILINE) or \
        re.findall(r"^FAILED (\S+)", output, re.MULTILINE) or re.findall(r"^HUNG: (\S+)", output, re.MULTILINE)
    if not failed:
        begun = re.findall(r"^\[ RUN      \] (\S+)", output, re.MULTILINE)
        ended = set(re.findall(r"^\[       OK \] (\S+)", output, re.MULTILINE))
        failed = [name for name in begun if name not in ended]
    return list(dict.fromkeys(failed))
