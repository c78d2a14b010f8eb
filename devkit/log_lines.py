#!/usr/bin/env python3
"""log_lines.py [--check]: writes docs/log-lines.md, the list of all lines that the host writes to its log.

The list is made from the log statements of the sources. With --check nothing is written: if the page is out of date,
the differences are printed and the exit code is 1.
"""

import difflib
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[1]
FOLDERS = ("shell", "channel", "player", "services", "flutter_host", "common")
PAGE = "docs/log-lines.md"

STATEMENT = re.compile(r"\bLOG_(DEBUG|INFO|WARNING|ERROR)\(")
LITERAL = re.compile(r'"((?:[^"\\\n]|\\.)*)"')
TOKEN = re.compile(r'"(?:[^"\\\n]|\\.)*"|//[^\n]*|[(),]')

INTRODUCTION = """# The lines of the log

Every line that the host can write to its log, by source file, in the order of the source. `devkit/log_lines.py`
makes this page from the sources. Search it for a line of a customer's log to find the level and the source file.

The placeholders are those of `printf`: `%s` is a text, `%d`, `%ld` and `%zu` are whole numbers, `%f` is a decimal number,
`%p` is a handle or an address, `%%` is a percent sign. Texts in parentheses can be in the place of a `%s` of the line.

[field-failures.md](field-failures.md#the-log) says how to switch the log on and what to look for in it, and
[log-tool.md](log-tool.md) how to remove private data from it.
"""


def arguments(source, begin):
    """Splits the call whose arguments start at begin into its first argument and the text of the others."""
    depth, first_ends = 0, None
    for token in TOKEN.finditer(source, begin):
        if token[0] == "(":
            depth += 1
        elif token[0] == ")" and depth > 0:
            depth -= 1
        elif token[0] == ")" or token[0] == "," and depth == 0 and first_ends is None:
            first_ends = first_ends or token.start()
            if token[0] == ")":
                return source[begin:first_ends], source[first_ends:token.start()]
    raise ValueError("a log statement does not end")


def literals(text):
    return [found.replace('\\"', '"').replace("\\\\", "\\") for found in LITERAL.findall(text)]


def lines_of(source):
    """Returns (level, text, words) of each log statement of a source. words are the texts among its other arguments."""
    found = []
    for statement in STATEMENT.finditer(source):
        first, others = arguments(source, statement.end())
        if not literals(first):
            raise ValueError(f"the text of a log statement is not a literal: {source[statement.start():][:60]}")
        found.append((statement[1], "".join(literals(first)), literals(others)))
    return found


def code(text):
    """The text as code in a cell of a table."""
    return f"`{text.replace('|', chr(92) + '|')}`"


def statements(root=ROOT):
    """Yields (path from the root, rows of lines_of) of each source of the host that writes to the log."""
    for folder in FOLDERS:
        for path in sorted((root / folder).glob("*.cpp")):
            if rows := lines_of(path.read_text()):
                yield path.relative_to(root).as_posix(), rows


def page(root=ROOT):
    """Returns the text of the page."""
    text = INTRODUCTION
    for name, rows in statements(root):
        text += f"\n## [`{name}`](../{name})\n\n| Level | Text |\n|---|---|\n"
        for level, line, words in rows:
            text += f"| {level} | {code(line)}" + (f" ({', '.join(map(code, words))})" if words else "") + " |\n"
    return text


def main(arguments):
    if arguments not in ([], ["--check"]):
        print(__doc__, file=sys.stderr)
        return 2
    wanted, path = page(), ROOT / PAGE
    present = path.read_text() if path.exists() else ""
    if not arguments:
        path.write_text(wanted)
        print(f"{PAGE}: {len(wanted.splitlines())} lines")
        return 0
    sys.stderr.writelines(difflib.unified_diff(present.splitlines(True), wanted.splitlines(True), PAGE, "the sources"))
    return int(present != wanted)


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
