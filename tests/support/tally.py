"""tally.py JUNIT...: counts the tests of all tiers, names the failed ones, and ends with "N passed, M failed".

A GoogleTest program is one test of ctest but contains many, which are counted by the lines that it printed. A program
that ended without its last line counts as one more failure. Exits with 1 when a test failed or none ran.
"""

import re
import sys
import xml.etree.ElementTree as ElementTree

_PASSED = re.compile(r"^\[  PASSED  \] (\d+) tests?\.", re.MULTILINE)
_FAILED = re.compile(r"^\[  FAILED  \] ([\w/.]+\.[\w/]+)(?:, where .*)? \(\d+ ms\)", re.MULTILINE)


def tally_program(name, output, succeeded):
    """Returns the number of passed tests and the names of the failed ones from the output of one ctest program."""
    passed = sum(int(number) for number in _PASSED.findall(output))
    failed = [f"{name}: {test}" for test in _FAILED.findall(output)]
    if not succeeded and not failed:
        failed.append(f"{name}: the program did not end as it should")
    if succeeded and not passed:
        passed = 1
    return passed, failed


def tally_file(path):
    passed, failed, skipped = 0, [], 0
    for case in ElementTree.parse(path).iter("testcase"):
        name = ".".join(filter(None, [case.get("classname"), case.get("name")]))
        bad = case.find("failure") is not None or case.find("error") is not None or case.get("status") == "fail"
        output = case.findtext("system-out") or ""
        if case.find("skipped") is not None or case.get("status") in ("notrun", "disabled"):
            skipped += 1
        elif "[==========]" in output or case.get("status"):
            more, names = tally_program(case.get("name"), output, not bad)
            passed += more
            failed += names
        elif bad:
            failed.append(name)
        else:
            passed += 1
    return passed, failed, skipped


def main(paths):
    passed, failed, skipped = 0, [], 0
    for path in paths:
        more, names, left_out = tally_file(path)
        passed += more
        failed += names
        skipped += left_out
    for name in failed:
        print(f"FAILED {name}")
    if skipped:
        print(f"({skipped} skipped)")
    print(f"{passed} passed, {len(failed)} failed")
    return 1 if failed or not passed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
