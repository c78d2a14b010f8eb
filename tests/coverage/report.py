#!/usr/bin/env python3
"""report.py BUILD: reports which lines of the product the runs of an instrumented build visited.

Prints a table of the folders and then the unvisited lines, each with its source. The table of the section
"Coverage" in docs/testing.md excuses lines: a number of lines of a function, with a reason. Exits with 1 when there is
no data, or when more lines are unvisited than are excused.
"""

import collections
import json
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
FOLDERS = ("shell", "flutter_host", "channel", "player", "services", "common")
GCOV = "x86_64-w64-mingw32-gcov-posix"

# | `file` | `function` | lines | reason |
EXCUSE = re.compile(r"^\| `([\w/.]+)` \| `([^`]+)` \| (\d+) \| \S.* \|$", re.MULTILINE)


def gcov_documents(build):
    """Yields gcov's output for each object, including those that never ran."""
    notes = sorted(map(str, pathlib.Path(build).resolve().rglob("*.gcno")))
    if not any(pathlib.Path(build).rglob("*.gcda")):
        return
    for begin in range(0, len(notes), 50):
        # gcov fails for an object whose data are from an earlier build, but still prints all the others.
        output = subprocess.run([GCOV, "--json-format", "--stdout", *notes[begin:begin + 50]], check=False,
                                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True).stdout
        yield from map(json.loads, output.splitlines())


def merge(documents):
    """Returns {file: {line: [visits, function]}} of the product. A line of a template or of an inline function counts
    once, however many objects contain it."""
    files = collections.defaultdict(dict)
    for document in documents:
        for file in document["files"]:
            if file["file"].split("/")[0] not in FOLDERS:
                continue
            names = {function["name"]: function["demangled_name"] for function in file["functions"]}
            for line in file["lines"]:
                name = line.get("function_name", "")
                entry = files[file["file"]].setdefault(line["line_number"], [0, names.get(name, name)])
                entry[0] += line["count"]
    return files


def table(files):
    """Returns rows of folder, lines and visited lines, with the sum last."""
    rows = []
    for folder in FOLDERS:
        counts = [entry[0] for file, lines in files.items() if file.startswith(folder + "/") for entry in lines.values()]
        rows.append((folder, len(counts), sum(1 for count in counts if count)))
    return rows + [("all", sum(row[1] for row in rows), sum(row[2] for row in rows))]


def unvisited(files):
    """Returns triples of file, line and function, in order."""
    return [(file, number, lines[number][1]) for file, lines in sorted(files.items()) for number in sorted(lines)
            if not lines[number][0]]


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


def source_line(file, number):
    return (ROOT / file).read_text().splitlines()[number - 1].strip()


def without_closing_braces(files):
    """Drops lines with only a brace: the compiler puts only the clean-up after an exception there."""
    return {file: {number: entry for number, entry in lines.items() if source_line(file, number).strip("};)")}
            for file, lines in files.items()}


def main(build):
    files = without_closing_braces(merge(gcov_documents(build)))
    rows = table(files)
    if not rows[-1][1] or not rows[-1][2]:
        print(f"no data of any run in {build}")
        return 1
    print(f"| {'Folder':<14} | {'Lines':>6} | {'Visited':>7} | Per cent |\n|{'-' * 16}|{'-' * 7}:|{'-' * 8}:|{'-' * 9}:|")
    for folder, lines, visited in rows:
        print(f"| {folder:<14} | {lines:>6} | {visited:>7} | {100 * visited / lines if lines else 100:>8.2f} |")
    missing = unvisited(files)
    left = without_excuse(missing, (ROOT / "docs/testing.md").read_text())
    print(f"\n{len(missing)} unvisited lines, {len(left)} of them without a reason in docs/testing.md (marked !):")
    for line in missing:
        function = line[2].split("(anonymous namespace)::")[-1].split("(")[0]
        print(f"{'!' if line in left else ' '} {line[0]}:{line[1]}: {source_line(*line[:2])}    [{function}]")
    return 1 if left else 0


if __name__ == "__main__":
    if len(sys.argv) != 2:
        sys.exit(__doc__)
    sys.exit(main(sys.argv[1]))
