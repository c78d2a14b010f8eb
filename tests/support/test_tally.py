"""Tests that the tally counts the tests that ran and the programs that failed."""

import pytest

from tally import main, tally_file

PROGRAM = ('<testsuite><testcase name="codec_test" status="{status}">{extra}<system-out>{output}</system-out>'
           '</testcase></testsuite>')
THREE_PASSED = "[==========] 3 tests from 1 test suite ran.\n[  PASSED  ] 3 tests.\n"
ONE_FAILED = ("[==========] 3 tests from 1 test suite ran.\n[  FAILED  ] Codec.Reads (1 ms)\n[  PASSED  ] 2 tests.\n"
              "[  FAILED  ] 1 test, listed below:\n[  FAILED  ] Codec.Reads\n")
FAILURE = '<failure message="Failed"/>'


@pytest.fixture
def junit(tmp_path):
    def write(text):
        path = tmp_path / "results.xml"
        path.write_text(text)
        return path

    return write


@pytest.mark.parametrize("status,extra,output,passed,failed", [
    ("run", "", THREE_PASSED, 3, []),
    ("fail", FAILURE, ONE_FAILED, 2, ["codec_test: Codec.Reads"]),
    ("fail", FAILURE, "[==========] Running 3 tests.\n", 0, ["codec_test: the program did not end as it should"]),
    ("fail", FAILURE, THREE_PASSED, 3, ["codec_test: the program did not end as it should"]),
    ("run", "", "a program that is no GoogleTest", 1, []),
], ids=["all passed", "one failed", "crashed", "bad exit code", "another kind of program"])
def test_each_test_of_a_program_is_counted(junit, status, extra, output, passed, failed):
    assert tally_file(junit(PROGRAM.format(status=status, extra=extra, output=output))) == (passed, failed, 0)


def test_cases_of_pytest_count_one_each(junit):
    path = junit("""<testsuites><testsuite>
        <testcase classname="a" name="good"/>
        <testcase classname="a" name="bad"><failure message="x"/></testcase>
        <testcase classname="a" name="broken"><error message="x"/></testcase>
        <testcase classname="a" name="left out"><skipped message="x"/></testcase>
        </testsuite></testsuites>""")
    assert tally_file(path) == (1, ["a.bad", "a.broken"], 1)


def test_a_run_without_tests_is_a_failure(junit, capsys):
    assert main([junit("<testsuite/>")]) == 1
    assert capsys.readouterr().out.endswith("0 passed, 0 failed\n")
