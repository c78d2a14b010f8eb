#!/usr/bin/env python3
"""Prints the results in the logs of a soak's parts as a Markdown table.

    summary.py FOLDER
"""

import pathlib
import re
import sys

# A fragment of each line of a part's log that reports a result. The last matching line counts.
PARTS = {
    "windows": ["moves and resizes", "windows at once", "windows opened and closed"],
    "player-storm": [],
    "kills": ["kills during calls"],
    "playback-storm": ["threads,", "rounds in"],
    "multi-view-rounds": ["rounds;", "before their events"],
    "preview-frames": ["passed"],
    "random-steps": ["steps in"],
}


def last_with(lines, text):
    found = [line.strip() for line in lines if text in line]
    return found[-1:] or [f"no line with '{text}'"]


def repeated_tests(lines):
    """Summarises GoogleTest's brief output, which has a line for each round."""
    passed = [int(match[1]) for line in lines if (match := re.match(r"\[  PASSED  \] (\d+) test", line))]
    failed = [line for line in lines if line.startswith("[  FAILED  ]")]
    milliseconds = sum(int(match[1]) for line in lines if (match := re.search(r"ran\. \((\d+) ms total\)", line)))
    return [f"{len(passed)} rounds of {max(passed, default=0)} storms from four threads in {milliseconds // 1000} s; "
            f"{len(failed)} failures"]


def results_of(name, lines):
    failed = [line.strip() for line in lines if re.match(r"failed|FAILED", line)]
    results = repeated_tests(lines) if name == "player-storm" else [text for part in PARTS[name]
                                                                   for text in last_with(lines, part)]
    return "; ".join(failed + results)


def main():
    folder = pathlib.Path(sys.argv[1])
    print("| Part | Result |\n|---|---|")
    for name in PARTS:
        log = folder / f"{name}.log"
        text = results_of(name, log.read_text(errors="replace").splitlines()) if log.exists() else "not run"
        print(f"| {name} | {text.replace('|', '/')} |")


if __name__ == "__main__":
    main()
