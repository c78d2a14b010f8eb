"""Tests one change: builds and runs the programs that reach it until one notices."""

import dataclasses
import time

from . import reach as reaches
from .workspace import NATIVE_PRESET, WINDOWS_PRESET, failed_tests

KILLED, SURVIVED, EQUIVALENT, NOT_COMPILED = "killed", "survived", "equivalent", "not compiled"
SLACK_SECONDS = 20  # added to three times the time of the unchanged program
INTEGRATION_SECONDS = 900
LOG_PAGE = "page of the log's lines"
BATCH = 4  # programs that are built together after the first program has not noticed the change


@dataclasses.dataclass
class Verdict:
    """by is the program or test file that noticed the change. unconfirmed lists failures that did not happen again."""

    verdict: str
    by: str = ""
    tests: list = dataclasses.field(default_factory=list)
    ran: list = dataclasses.field(default_factory=list)
    hung: bool = False
    unconfirmed: list = dataclasses.field(default_factory=list)
    seconds: float = 0.0


class CompileError(Exception):
    pass


def batches(programs):
    """Groups of programs to build together: the native ones, the first Windows program alone, then the others."""
    native = [program for program in programs if program.preset == NATIVE_PRESET]
    windows = [program for program in programs if program.preset == WINDOWS_PRESET]
    found = [native] if native else []
    found += [windows[:1]] if windows else []
    found += [windows[begin:begin + BATCH] for begin in range(1, len(windows), BATCH)]
    return found


class Trial:
    """Judges one mutant at a time. Not thread-safe."""

    def __init__(self, workspace, reach, integration=True):
        self.workspace = workspace
        self.reach = reach
        self.integration = integration

    def judge(self, mutant):
        began = time.monotonic()
        verdict = Verdict(SURVIVED)
        with self.workspace.changed(mutant):
            try:
                self._run_unit_programs(mutant, verdict)
                if verdict.verdict == SURVIVED and self.integration:
                    self._run_integration(mutant, verdict)
            except CompileError:
                verdict = Verdict(NOT_COMPILED)
        verdict.seconds = time.monotonic() - began
        return verdict

    def _build(self, preset, targets):
        if not self.workspace.build(preset, targets).passed:
            raise CompileError

    def _run_unit_programs(self, mutant, verdict):
        for number, batch in enumerate(batches(self.reach.programs_for(mutant))):
            self._build(batch[0].preset, [program.name for program in batch])
            # The page is compared after the first build, because a change that does not compile is no mutant.
            if number == 0 and self._log_page_notices(verdict):
                return
            for program in batch:
                verdict.ran.append(str(program))
                if self._notices(program, verdict):
                    self.reach.note_kill(mutant, program)
                    verdict.verdict, verdict.by = KILLED, str(program)
                    return

    def _log_page_notices(self, verdict):
        if self.workspace.compare_log_page().passed:
            return False
        verdict.verdict, verdict.by = KILLED, LOG_PAGE
        return True

    def _limit(self, program):
        return 3 * self.reach.seconds.get((program.preset, program.name), 10) + SLACK_SECONDS

    def _notices(self, program, verdict):
        """Whether the program fails, and fails again when the failed test is run a second time."""
        run = self.workspace.run_program(program, self._limit(program))
        if run.passed:
            return False
        verdict.tests, verdict.hung = failed_tests(run.output)[:5], run.hung
        only = verdict.tests[0] if verdict.tests else None
        for filter_ in dict.fromkeys((only, None)):
            again = self.workspace.run_program(program, self._limit(program), only=filter_)
            if not again.passed:
                verdict.hung = verdict.hung and again.hung
                return True
        verdict.unconfirmed.append(f"{program}: {', '.join(verdict.tests) or 'no test named'}")
        verdict.tests, verdict.hung = [], False
        return False

    def _run_integration(self, mutant, verdict):
        files = reaches.integration_files(mutant.file)
        if not files:
            return
        self._build(WINDOWS_PRESET, ["vantro"])
        verdict.ran += files
        run = self.workspace.run_integration(files, INTEGRATION_SECONDS)
        if run.passed:
            return
        tests = failed_tests(run.output)[:5]
        if tests:  # there is at most one, because of -x
            again = self.workspace.run_integration(tests, INTEGRATION_SECONDS)
            if again.passed:
                verdict.unconfirmed += tests
                return
        verdict.verdict, verdict.by, verdict.tests, verdict.hung = KILLED, "integration", tests, run.timed_out
