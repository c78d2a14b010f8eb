"""The results of a run: stored line by line during the run, and reported as a table and a list."""

import collections
import json
import pathlib
import tomllib

from .trial import EQUIVALENT, KILLED, NOT_COMPILED, SURVIVED

EQUIVALENTS = pathlib.Path(__file__).resolve().parents[1] / "equivalent.toml"


def read_equivalents(path=EQUIVALENTS):
    """{(file, before, after): reason}."""
    return {(change["file"], change["before"], change["after"]): change["reason"]
            for change in tomllib.loads(path.read_text())["change"]}


def record(mutant, verdict):
    return {"file": mutant.file, "line": mutant.line, "operator": mutant.operator, "before": mutant.before,
            "after": mutant.after, "begin": mutant.begin, "replacement": mutant.replacement, **vars(verdict)}


def identity(file, begin, replacement, before):
    return f"{file}\0{begin}\0{replacement}\0{before}"


def read_judged(path, mark):
    """Returns {identity: record} from the file of an earlier run on the same sources."""
    if not path.is_file():
        return {}
    lines = path.read_text().splitlines()
    if not lines or json.loads(lines[0]).get("mark") != mark:
        return {}
    records = []
    for line in lines[1:]:
        try:
            records.append(json.loads(line))
        except ValueError:  # the run was killed while it wrote this line
            continue
    return {identity(entry["file"], entry["begin"], entry["replacement"], entry["before"]): entry for entry in records}


def table(records):
    """Rows of folder, mutants, killed, survived, equivalent, not compiled. The last row is the sum."""
    counts = collections.defaultdict(collections.Counter)
    for entry in records:
        for folder in (entry["file"].split("/")[0], "all"):
            counts[folder][entry["verdict"]] += 1
    rows = []
    for folder in sorted(counts, key=lambda name: (name == "all", name)):
        count = counts[folder]
        rows.append((folder, sum(count.values()) - count[NOT_COMPILED], count[KILLED], count[SURVIVED], count[EQUIVALENT],
                     count[NOT_COMPILED]))
    return rows


def change(entry):
    return f"{entry['file']}:{entry['line']}: {entry['operator']}\n    - {entry['before']}\n    + {entry['after']}"


def report(records, heading):
    lines = ["# Mutation run", "", heading, "",
             "| Folder | Mutants | Killed | Survived | Equivalent | Not compiled |", "|---|---:|---:|---:|---:|---:|"]
    lines += [f"| {' | '.join(map(str, row))} |" for row in table(records)]
    place = sorted(records, key=lambda entry: (entry["file"], entry["begin"]))
    survivors = [entry for entry in place if entry["verdict"] == SURVIVED]
    lines += ["", f"## {len(survivors)} survivors", ""]
    for entry in survivors:
        lines += ["```", change(entry), "```", f"Ran: {', '.join(entry['ran']) or 'no test program reaches it'}", ""]
    hung = [entry for entry in place if entry["verdict"] == KILLED and entry["hung"]]
    if hung:
        lines += [f"## {len(hung)} killed by a program that did not end", ""]
        lines += [f"- {entry['file']}:{entry['line']}: {entry['operator']}, in {entry['by']}" for entry in hung] + [""]
    unconfirmed = [entry for entry in place if entry["unconfirmed"]]
    if unconfirmed:
        lines += [f"## {len(unconfirmed)} with a failure that did not come again, which does not count", ""]
        lines += [f"- {entry['file']}:{entry['line']}: {'; '.join(entry['unconfirmed'])}" for entry in unconfirmed] + [""]
    return "\n".join(lines)
