#!/usr/bin/env python3
"""report.py BUILD: reports which lines of the product the runs of an instrumented build visited.

Prints a table of the folders and then the unvisited lines, each with its source. The table of the section
"Coverage" in docs/testing.md excuses lines: a number of lines of a function, with a reason. Exits with 1 when there is
no data, or when more lines are unvisited than are excused. gcovr reads the counters.
"""

import json
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
FOLDERS = ("shell", "flutter_host", "channel", "player", "services", "common")
GCOV = "x86_64-w64-mingw32-gcov-posix"
# The compiler puts only the clean-up after an exception on such a line.
ONLY_CLOSING_BRACES = r"\s*[};)]*\s*$"

# | `file` | `function` | lines | reason |
EXCUSE = re.compile(r"^\| `([\w/.]+)` \| `([^`]+)` \| (\d+) \| \S.* \|$", re.MULTILINE)


def covered_files(build):
    """Returns gcovr's records of the product's files, including those that never ran."""
    output = subprocess.run(["gcovr", "--json", "--gcov-executable", GCOV, *(f"--filter={name}/" for name in FOLDERS),
                             "--exclude-lines-by-pattern", ONLY_CLOSING_BRACES, pathlib.Path(build).resolve()],
                            cwd=ROOT, check=True, stdout=subprocess.PIPE, text=True).stdout
    return json.loads(output)["files"]


def lines_of(files):
    """Returns tuples of file, line, function and visits, in order."""
    lines = []
    for file in files:
        functions = sorted((function["lineno"], function["name"]) for function in file["functions"])
        for line in file["lines"]:
            if not line["gcovr/noncode"]:
                above = [name for begin, name in functions if begin <= line["line_number"]]
                lines.append((file["file"], line["line_number"], above[-1] if above else "", line["count"]))
    return lines


def table(lines):
    """Returns rows of folder, lines and visited lines, with the sum last."""
    rows = []
    for folder in FOLDERS:
        visits = [count for file, _, _, count in lines if file.startswith(folder + "/")]
        rows.append((folder, len(visits), sum(1 for count in visits if count)))
    return rows + [("all", sum(row[1] for row in rows), sum(row[2] for row in rows))]


def without_excuse(missing, document):
    """Returns the unvisited lines of functions with more unvisited lines than the document excuses."""
    excuses = [(file, function, int(count)) for file, function, count in EXCUSE.findall(document)]

    def belongs(line, excuse):
        return line[0] == excuse[0] and re.search(rf"\b{re.escape(excuse[1])}\b", line[2])

    left = list(missing)
    for excuse in excuses:
        covered = [line for line in left if belongs(line, excuse)]
        if len(covered) <= excuse[2]:
            left = [line for line in left if line not in covered]
    return left


def main(build):
    lines = lines_of(covered_files(build))
    rows = table(lines)
    if not rows[-1][2]:
        print(f"no data of any run in {build}")
        return 1
    print(f"| {'Folder':<14} | {'Lines':>6} | {'Visited':>7} | Per cent |\n|{'-' * 16}|{'-' * 7}:|{'-' * 8}:|{'-' * 9}:|")
    for folder, count, visited in rows:
        print(f"| {folder:<14} | {count:>6} | {visited:>7} | {100 * visited / count if count else 100:>8.2f} |")
    missing = [line[:3] for line in lines if not line[3]]
    left = without_excuse(missing, (ROOT / "docs/testing.md").read_text())
    print(f"\n{len(missing)} unvisited lines, {len(left)} of them without a reason in docs/testing.md (marked !):")
    for line in missing:
        file, number, function = line
        source = (ROOT / file).read_text().splitlines()[number - 1].strip()
        name = function.split("(anonymous namespace)::")[-1].split("(")[0]
        print(f"{'!' if line in left else ' '} {file}:{number}: {source}    [{name}]")
    return 1 if left else 0


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    sys.exit(main(sys.argv[1]))
