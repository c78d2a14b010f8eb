"""docs/environment.md names every environment variable that the sources read, and no other."""

import re
import subprocess
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
NAME = r"VANTRO_[A-Z][A-Z_]*[A-Z]"

# How each kind of source names a variable of the environment. What else begins so is a macro, a constant or CMake's.
WRITTEN = {
    ".cpp": rf'L?"({NAME})"',
    ".h": rf'L?"({NAME})"',
    ".py": rf'["\']({NAME})["\']|\b({NAME})=',
    "": rf'["\']({NAME})["\']|\$\{{?({NAME})\b|^\s*(?:export )?({NAME})=|\benv ({NAME})=',
}


def cmake_options():
    files = [ROOT / "CMakeLists.txt", *(ROOT / "cmake").glob("*.cmake")]
    return {name for file in files for name in re.findall(rf"(?:option|set)\(({NAME})", file.read_text())}


def named_in_sources():
    listed = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard"], cwd=ROOT, check=True, capture_output=True, text=True)
    found, options = {}, cmake_options()
    for path in map(Path, listed.stdout.splitlines()):
        pattern = WRITTEN.get(path.suffix)
        if not pattern or not (ROOT / path).is_file() or path.name in {"LICENSE", Path(__file__).name}:
            continue
        for groups in re.findall(pattern, (ROOT / path).read_text(errors="replace"), re.MULTILINE):
            names = [groups] if isinstance(groups, str) else groups
            for name in set(filter(None, names)) - options:
                found.setdefault(name, set()).add(str(path))
    return found


def test_document_names_each_variable_that_the_sources_name_and_no_other():
    table = re.findall(rf"^\| `({NAME})` \| \S.* \| \S.* \|$", (ROOT / "docs/environment.md").read_text(), re.MULTILINE)
    assert len(table) == len(set(table))
    found = named_in_sources()
    assert set(found) - set(table) == set(), {name: found[name] for name in set(found) - set(table)}
    assert set(table) - set(found) == set()


def test_host_reads_no_variable_of_its_own():
    product = ("shell/", "flutter_host/", "channel/", "player/", "services/", "common/")
    assert not {name for name, files in named_in_sources().items() for file in files if file.startswith(product)}
