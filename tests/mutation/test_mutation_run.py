"""The mutation run: which changes it selects, which programs it runs, and which changes it reports as survivors."""

import contextlib
import subprocess
import threading

import pytest

from vantro_mutation import reach, results, run, trial, workspace
from vantro_mutation.operators import mutants
from vantro_mutation.workspace import NATIVE_PRESET, WINDOWS_PRESET, Program, Run, Workspace

PRODUCT_FILE = "player/limit.cpp"
PRODUCT = "int Clamp(int value) {\n  if (value > 10) return 10;\n  return value;\n}\n"
TEST = """#include <cstdio>
int Clamp(int value);
int main() {
  if (Clamp(11) == 10 && Clamp(3) == 3) return 0;
  std::puts("[  FAILED  ] Clamp.Limits");
  return 1;
}
"""


class ToyWorkspace(Workspace):
    """A tree of one file and one test, built directly by the compiler."""

    def __init__(self, folder):
        super().__init__(folder, folder / "worker")
        (self.tree / "player").mkdir(parents=True)
        (self.tree / PRODUCT_FILE).write_text(PRODUCT)
        (self.tree / "test.cpp").write_text(TEST)

    def build(self, preset, targets):
        return self.command("g++", "-o", "test", "test.cpp", PRODUCT_FILE)

    def compare_log_page(self):
        return Run(0, 0, False, "")


@pytest.fixture
def toy(tmp_path):
    return ToyWorkspace(tmp_path)


@pytest.fixture
def judge(toy):
    program = Program("limit_test", NATIVE_PRESET, "player", ("./test",), str(toy.tree))
    table = reach.Reach([program], {}, {}, portable={PRODUCT_FILE})

    def judge(*after):
        (mutant,) = [found for found in mutants(PRODUCT_FILE, PRODUCT) if found.after in after]
        return mutant, trial.Trial(toy, table, integration=False).judge(mutant)

    return judge


def test_a_change_that_the_test_notices_is_killed_by_the_test_that_failed(judge):
    _, verdict = judge("if (value > 10) return 11;")
    assert (verdict.verdict, verdict.by, verdict.tests) == (trial.KILLED, "limit_test (native)", ["Clamp.Limits"])


def test_a_survivor_is_reported_with_its_line_the_change_and_what_ran(judge):
    mutant, verdict = judge("if (value >= 10) return 10;")
    text = results.report([results.record(mutant, verdict)], "")
    assert verdict.verdict == trial.SURVIVED
    assert "player/limit.cpp:2: comparison\n    - if (value > 10) return 10;\n    + if (value >= 10) return 10;" in text
    assert "Ran: limit_test (native)" in text


def test_the_file_is_as_before_when_a_change_was_judged(judge, toy):
    judge("if (value > 10) return 11;")
    assert (toy.tree / PRODUCT_FILE).read_text() == PRODUCT


def test_a_workspace_that_was_closed_runs_nothing_more(toy):
    toy.close()
    with pytest.raises(RuntimeError, match="ended"):
        toy.build(NATIVE_PRESET, [])


def test_a_changed_line_of_the_log_is_noticed_by_the_page_before_any_program():
    log_workspace = ScriptedWorkspace([])
    log_workspace.compare_log_page = lambda: FAILED
    program = Program("limit_test", NATIVE_PRESET, "player", ("./test",), ".")
    table = reach.Reach([program], {}, {}, portable={PRODUCT_FILE})
    found = trial.Trial(log_workspace, table, integration=False).judge(mutants(PRODUCT_FILE, PRODUCT)[0])
    assert (found.verdict, found.by, found.ran) == (trial.KILLED, trial.LOG_PAGE, [])


def test_a_change_that_does_not_compile_is_no_mutant(toy):
    program = Program("limit_test", NATIVE_PRESET, "player", ("./test",), str(toy.tree))
    (toy.tree / "test.cpp").write_text("not C++")
    table = reach.Reach([program], {}, {}, portable={PRODUCT_FILE})
    verdict = trial.Trial(toy, table, integration=False).judge(mutants(PRODUCT_FILE, PRODUCT)[0])
    assert verdict.verdict == trial.NOT_COMPILED


class ScriptedWorkspace:
    """Returns the next of the given results for each run of a program."""

    def __init__(self, runs):
        self.runs = list(runs)

    @contextlib.contextmanager
    def changed(self, mutant):
        yield

    def build(self, preset, targets):
        return Run(0, 0, False, "")

    def compare_log_page(self):
        return PASSED

    def run_program(self, program, seconds, only=None, environment=None):
        return self.runs.pop(0)


PASSED = Run(0, 0, False, "")
FAILED = Run(1, 0, False, "[  FAILED  ] Suite.Test (3 ms)\n")


@pytest.mark.parametrize("runs, verdict, hung, unconfirmed", [
    ([FAILED, FAILED], trial.KILLED, False, 0),
    ([FAILED, PASSED, FAILED], trial.KILLED, False, 0),  # it fails only after the tests before it
    ([FAILED, PASSED, PASSED], trial.SURVIVED, False, 1),
    ([Run(-9, 40, True, ""), Run(-9, 40, True, "")], trial.KILLED, True, 0),
    ([Run(97, 20, False, "HUNG: Suite.Test did not end\n"), PASSED, PASSED], trial.SURVIVED, False, 1),
])
def test_a_failure_counts_when_it_comes_again(runs, verdict, hung, unconfirmed):
    program = Program("limit_test", NATIVE_PRESET, "player", ("./test",), ".")
    table = reach.Reach([program], {}, {}, portable={PRODUCT_FILE})
    found = trial.Trial(ScriptedWorkspace(runs), table, integration=False).judge(mutants(PRODUCT_FILE, PRODUCT)[0])
    assert (found.verdict, found.hung, len(found.unconfirmed)) == (verdict, hung, unconfirmed)


def wine(name, folder="player"):
    return Program(name, WINDOWS_PRESET, folder, (), "")


def test_programs_that_visit_the_line_run_and_those_of_its_folder_run_first():
    visited = {"a_test": {PRODUCT_FILE: {2, 3}}, "b_test": {PRODUCT_FILE: {2}}, "c_test": {PRODUCT_FILE: {3}}}
    table = reach.Reach([wine("a_test", "shell"), wine("b_test"), wine("c_test")], visited, {PRODUCT_FILE: {2, 3}})
    second_line = next(mutant for mutant in mutants(PRODUCT_FILE, PRODUCT) if mutant.line == 2)
    assert [program.name for program in table.programs_for(second_line)] == ["b_test", "a_test"]


def test_a_program_that_noticed_a_change_of_the_file_runs_before_others():
    visited = {"a_test": {PRODUCT_FILE: {2}}, "b_test": {PRODUCT_FILE: {2}}}
    table = reach.Reach([wine("a_test"), wine("b_test")], visited, {PRODUCT_FILE: {2}})
    mutant = mutants(PRODUCT_FILE, PRODUCT)[0]
    table.note_kill(mutant, wine("b_test"))
    assert [program.name for program in table.programs_for(mutant)] == ["b_test", "a_test"]


def test_data_without_counters_are_left_to_all_programs_that_visit_the_file_or_include_it():
    visited = {"a_test": {"player/a.cpp": {9}}, "b_test": {"player/b.cpp": {9}}}
    table = reach.Reach([wine("a_test"), wine("b_test")], visited, {"player/a.cpp": {9}},
                        includers={"player/ids.h": {"player/b.cpp"}})
    (of_source,) = mutants("player/a.cpp", "constexpr int kA = 1;\n")
    (of_header,) = mutants("player/ids.h", "constexpr int kA = 1;\n")
    assert [program.name for program in table.programs_for(of_source)] == ["a_test"]
    assert [program.name for program in table.programs_for(of_header)] == ["b_test"]


@pytest.fixture
def tree(tmp_path):
    (tmp_path / "player").mkdir()
    (tmp_path / PRODUCT_FILE).write_text(PRODUCT)
    subprocess.run(["git", "init", "-q", tmp_path], check=True)
    return tmp_path


def test_a_seed_draws_the_same_changes_again_and_another_one_others(tree):
    assert run.drawn(tree, [PRODUCT_FILE], 1) == run.drawn(tree, [PRODUCT_FILE], 1)
    assert run.drawn(tree, [PRODUCT_FILE], 1) != run.drawn(tree, [PRODUCT_FILE], 2)


def test_changes_that_do_not_compile_are_drawn_again_until_the_count_is_reached():
    queue = run.Queue(range(10), 3)
    for verdict in (trial.NOT_COMPILED, trial.KILLED, trial.NOT_COMPILED, trial.SURVIVED, trial.KILLED):
        assert queue.take() is not None
        queue.put({"verdict": verdict})
    assert queue.take() is None


def test_the_copy_follows_the_tree_and_leaves_it_alone(tree, tmp_path_factory):
    copy = tmp_path_factory.mktemp("copy")
    (copy / "gone.cpp").write_text("")
    (copy / "out").mkdir()
    (copy / "out/kept.txt").write_text("")
    workspace.copy_tree(tree, copy)
    assert (copy / PRODUCT_FILE).read_text() == PRODUCT
    assert not (copy / "gone.cpp").exists() and (copy / "out/kept.txt").exists()
    (copy / PRODUCT_FILE).write_text("changed, and then killed")
    workspace.copy_tree(tree, copy)
    assert (copy / PRODUCT_FILE).read_text() == (tree / PRODUCT_FILE).read_text() == PRODUCT


def test_a_run_goes_on_where_one_that_was_killed_stopped(tmp_path):
    mutant = mutants(PRODUCT_FILE, PRODUCT)[0]
    entry = results.record(mutant, trial.Verdict(trial.KILLED))
    journal = tmp_path / "results.jsonl"
    journal.write_text('{"mark": "m"}\n' + results.json.dumps(entry) + '\n{"file": "pla\n')
    name = results.identity(mutant.file, mutant.begin, mutant.replacement, mutant.before)
    assert results.read_judged(journal, "m") == {name: entry}
    assert results.read_judged(journal, "of other sources") == {}


def test_the_table_counts_by_folder_and_what_does_not_compile_apart():
    verdicts = [("shell", trial.KILLED), ("shell", trial.SURVIVED), ("player", trial.EQUIVALENT), ("player", trial.NOT_COMPILED)]
    rows = results.table([{"file": f"{folder}/a.cpp", "verdict": verdict} for folder, verdict in verdicts])
    assert rows == [("player", 1, 0, 0, 1, 1), ("shell", 2, 1, 1, 0, 0), ("all", 3, 1, 1, 1, 1)]


def test_an_error_of_a_worker_ends_the_run():
    def fail():
        raise RuntimeError("no Wine")

    with pytest.raises(RuntimeError, match="no Wine"):
        run.in_threads([fail, threading.Event().is_set])


def test_each_listed_equivalent_is_a_change_of_the_tree_and_has_a_reason():
    for (file, before, after), reason in results.read_equivalents().items():
        found = {(mutant.before, mutant.after) for mutant in mutants(file, (run.ROOT / file).read_text())}
        assert (before, after) in found, f"{file}: {after}"
        assert len(reason) > 10


def test_files_of_the_table_of_integration_tests_exist():
    rows = reach.tomllib.loads(reach.TABLE.read_text())["rows"]
    for row in rows:
        assert list(run.ROOT.glob(row["files"])), row["files"]
        assert all((run.ROOT / test).is_file() for test in row["tests"])
