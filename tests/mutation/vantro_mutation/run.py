"""Selects changes at random by a seed, tests each one, and reports the changes that no test notices."""

import argparse
import contextlib
import json
import os
import pathlib
import random
import resource
import signal
import sys
import threading
import time

from . import operators, reach, results
from .reach import PRODUCT
from .trial import EQUIVALENT, NOT_COMPILED, SURVIVED, Trial, Verdict
from .workspace import NATIVE_PRESET, WINDOWS_PRESET, Workspace, failed_tests

ROOT = pathlib.Path(__file__).resolve().parents[3]
# The programs that integration tests start, in addition to the unit test programs.
INTEGRATION_TARGETS = ["vantro", "host_launcher", "process_tool", "loopback_engine"]


def say(text):
    print(f"== {text}", flush=True)


def product_files(root):
    return [name for name in reach.tree_files(root) if name.split("/")[0] in PRODUCT and name.endswith((".cpp", ".h"))]


def matching(files, patterns):
    """The named files and the files of the named folders. Without names all files."""
    if not patterns:
        return files
    chosen = []
    for pattern in patterns:
        name = pattern.rstrip("/")
        found = [file for file in files if file == name or file.startswith(f"{name}/")]
        if not found:
            raise SystemExit(f"!! {pattern} is no file and no folder of the product ({', '.join(PRODUCT)})")
        chosen += found
    return list(dict.fromkeys(chosen))


def drawn(root, files, seed):
    """All possible changes of the files in a random order that depends on the seed."""
    found = [mutant for file in sorted(files) for mutant in operators.mutants(file, (root / file).read_text())]
    random.Random(seed).shuffle(found)
    return found


class Queue:
    """Hands out changes until the given number is judged. A change that does not compile is replaced by the next one.
    A seed gives the same judged changes, independent of the order in which the workers take them."""

    def __init__(self, mutants, count):
        self._lock = threading.Lock()
        self._mutants = iter(mutants)
        self._left = count
        self.records = []

    def take(self):
        with self._lock:
            if self._left is not None and self._left <= 0:
                return None
            mutant = next(self._mutants, None)
            if mutant is not None and self._left is not None:
                self._left -= 1
            return mutant

    def put(self, entry):
        with self._lock:
            self.records.append(entry)
            if entry["verdict"] == NOT_COMPILED and self._left is not None:
                self._left += 1
            return len(self.records)


def build_unchanged(workspace, options):
    """Copies and builds the tree. Returns the test programs of the run."""
    workspace.update()
    for preset in (NATIVE_PRESET, WINDOWS_PRESET):
        workspace.configure(preset)
    chosen = options.programs.split(",") if options.programs else None
    extra = {NATIVE_PRESET: [], WINDOWS_PRESET: ["host_launcher"] if options.no_integration else INTEGRATION_TARGETS}
    programs = []
    for preset in (NATIVE_PRESET, WINDOWS_PRESET):
        names = [name for name in workspace.program_names(preset) if not chosen or name in chosen]
        if names or extra[preset]:
            built = workspace.build(preset, names + extra[preset])
            if not built.passed:
                raise RuntimeError(f"the unchanged tree does not build:\n{built.output[-3000:]}")
        programs += workspace.programs(preset, names)
    workspace.start_wine()
    return programs


def try_unchanged(workspace, programs):
    """Runs the programs, each a second time if it fails. Returns the time that each takes."""
    seconds = {}
    for program in programs:
        run = workspace.run_program(program, 300)
        if not run.passed:
            run = workspace.run_program(program, 300)
        if not run.passed:
            raise RuntimeError(f"{program} fails on the unchanged tree: {failed_tests(run.output)}\n{run.output[-3000:]}")
        seconds[program.preset, program.name] = run.seconds
    return seconds


def check_integration(workspace, files):
    tests = sorted({test for file in files for test in reach.integration_files(file)})
    if tests:
        run = workspace.run_integration(tests, 1800)
        if not run.passed:
            raise RuntimeError(f"integration tests fail on the unchanged tree:\n{run.output[-3000:]}")


def arguments():
    parser = argparse.ArgumentParser(prog="./dev mutate", description=__doc__)
    parser.add_argument("files", nargs="*", metavar="FILE", help="files or folders of the product; all of it without one")
    parser.add_argument("--seed", type=int, default=None, help="which changes are drawn (random unless given)")
    parser.add_argument("--count", type=int, default=None, help="how many changes are judged (all unless given)")
    parser.add_argument("--workers", type=int, default=min(2, os.cpu_count() or 1), help="copies that work side by side")
    parser.add_argument("--programs", metavar="NAME,...", help="run only these unit test programs")
    parser.add_argument("--no-integration", action="store_true", help="leave the integration tests out")
    parser.add_argument("--resume", action="store_true", help="keep what an earlier run on the same sources has judged")
    parser.add_argument("--list", action="store_true", help="print the changes that would be drawn, and do nothing")
    return parser.parse_args()


def main():
    options = arguments()
    seed = options.seed if options.seed is not None else random.randrange(1_000_000)
    files = matching(product_files(ROOT), options.files)
    mutants = drawn(ROOT, files, seed)
    say(f"{len(mutants)} changes in {len(files)} files, seed {seed}")
    if options.list:
        print(*mutants[:options.count], sep="\n")
        return 0
    out = ROOT / "out/mutate"
    out.mkdir(parents=True, exist_ok=True)
    jobs = max(1, (os.cpu_count() or 1) // options.workers)
    workspaces = [Workspace(ROOT, out / f"worker-{number + 1}", jobs) for number in range(options.workers)]
    # SIGTERM also runs the clean-up.
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    try:
        return run(options, files, mutants, seed, out, workspaces)
    except RuntimeError as error:
        print(f"!! {error}", file=sys.stderr)
        return 2
    finally:
        for workspace in workspaces:
            with contextlib.suppress(OSError):
                workspace.close()


def processor_seconds():
    """The processor time of ended children. Wine's services are not included, because they are still running."""
    usage = resource.getrusage(resource.RUSAGE_CHILDREN)
    return usage.ru_utime + usage.ru_stime


def in_threads(functions):
    """Runs the functions in parallel. Raises the first error when all have ended."""
    errors = []

    def guarded(function):
        try:
            function()
        except BaseException as error:  # noqa: BLE001 - raised again below
            errors.append(error)

    threads = [threading.Thread(target=guarded, args=(function,), daemon=True) for function in functions]
    for thread in threads:
        thread.start()
    for thread in threads:
        while thread.is_alive():
            thread.join(1)
    if errors:
        raise errors[0]


def run(options, files, mutants, seed, out, workspaces):
    began = time.monotonic()
    mark = reach.fingerprint(ROOT)
    say("building the unchanged tree" + (" in each copy" if len(workspaces) > 1 else "") + " and trying it")
    programs = {}
    in_threads([lambda workspace=workspace: programs.update({workspace: build_unchanged(workspace, options)})
                for workspace in workspaces])
    first = workspaces[0]
    known = reach.load(first, programs[first], mark, out, say)
    tables = {workspace: known if workspace is first else known.with_programs(programs[workspace])
              for workspace in workspaces}

    def try_programs(workspace):
        table = tables[workspace]
        reaching = {program for mutant in mutants for program in table.programs_for(mutant)
                    if (program.preset, program.name) not in table.seconds}
        table.seconds.update(try_unchanged(workspace, sorted(reaching, key=str)))

    in_threads([lambda workspace=workspace: try_programs(workspace) for workspace in workspaces])
    if not options.no_integration:
        check_integration(first, files)
    say(f"the unchanged tree passes ({time.monotonic() - began:.0f} s)")

    journal = out / "results.jsonl"
    judged = results.read_judged(journal, mark) if options.resume else {}
    equivalents = results.read_equivalents()
    queue = Queue(mutants, options.count)
    began = time.monotonic()
    used_before = processor_seconds()

    def write_report():
        heading = (f"Seed {seed}; {time.monotonic() - began:.0f} s with {len(workspaces)} workers, "
                   f"{processor_seconds() - used_before:.0f} s of processor time, "
                   f"integration tests {'left out' if options.no_integration else 'included'}.")
        text = results.report(queue.records, heading)
        (out / "report.md").write_text(text)
        return text

    with open(journal, "a" if judged else "w") as lines:
        if judged:
            lines.write("\n")  # ends a line that may be incomplete
        else:
            lines.write(json.dumps({"mark": mark}) + "\n")

        def work(workspace):
            trial = Trial(workspace, tables[workspace], not options.no_integration)
            while (mutant := queue.take()) is not None:
                name = results.identity(mutant.file, mutant.begin, mutant.replacement, mutant.before)
                if (mutant.file, mutant.before, mutant.after) in equivalents:
                    entry = results.record(mutant, Verdict(EQUIVALENT))
                elif name in judged:
                    entry = judged[name]
                else:
                    entry = results.record(mutant, trial.judge(mutant))
                number = queue.put(entry)
                if name not in judged:
                    lines.write(json.dumps(entry) + "\n")
                    lines.flush()
                print(f"{number:5} {entry['verdict']:12} {entry['seconds']:6.1f} s  {mutant}"[:200]
                      + (f"  [{entry['by']}]" if entry["by"] else ""), flush=True)
                if number % 20 == 0:
                    write_report()

        in_threads([lambda workspace=workspace: work(workspace) for workspace in workspaces])
    print(write_report())
    say("the report is in out/mutate/report.md")
    return 1 if any(entry["verdict"] == SURVIVED for entry in queue.records) else 0
