"""Tests the files that a hosting service reads: their syntax, and that the files they name exist."""

import json
import re
from pathlib import Path

import pytest
import yaml

ROOT = Path(__file__).resolve().parents[2]
WORKFLOW = yaml.safe_load((ROOT / ".github/workflows/windows.yml").read_text())
STEPS = WORKFLOW["jobs"]["build"]["steps"]
COMMANDS = "\n".join(step.get("run", "") for step in STEPS)


def test_each_step_of_the_workflow_uses_a_versioned_action_or_runs_a_command():
    for step in STEPS:
        assert ("uses" in step) != ("run" in step), step
        assert "run" in step or re.search(r"@v\d+$", step["uses"]), step


def test_presets_and_build_folders_of_the_workflow_exist():
    presets = {preset["name"] for preset in json.loads((ROOT / "CMakePresets.json").read_text())["configurePresets"]}
    used = set(re.findall(r"--preset (\S+)", COMMANDS)) | set(re.findall(r"out/build/(\S+)", COMMANDS))
    assert used == {"windows"} and used <= presets


def test_targets_of_the_workflow_exist():
    listed = re.search(r"--target (.+)", COMMANDS)[1].split()
    text = "\n".join(path.read_text() for path in ROOT.glob("*/CMakeLists.txt"))
    assert listed == [name for name in listed if re.search(rf"add_\w+\({name}\b", text)]


def test_options_of_the_workflow_are_those_that_the_build_reads():
    options = set(re.findall(r"-D(VANTRO_\w+)=", COMMANDS))
    assert options == {"VANTRO_GOOGLETEST_SOURCE"}
    assert "VANTRO_GOOGLETEST_SOURCE" in (ROOT / "cmake/googletest.cmake").read_text()


def test_scripts_of_the_workflow_exist():
    scripts = re.findall(r"^(packaging/\S+)", COMMANDS, re.MULTILINE)
    assert scripts and all((ROOT / script).is_file() for script in scripts)


def test_issue_form_asks_for_version_dump_and_log():
    form = yaml.safe_load((ROOT / ".github/ISSUE_TEMPLATE/fault.yml").read_text())
    fields = {field["id"]: field for field in form["body"] if "id" in field}
    for name in ("version", "dump", "log"):
        assert fields[name]["validations"]["required"], name
    assert "Vantro_Crash.dmp" in fields["dump"]["attributes"]["description"]
    assert "vantro_debug.log" in fields["log"]["attributes"]["description"]


@pytest.mark.parametrize("path", sorted((ROOT / ".github").rglob("*.yml")), ids=lambda path: path.name)
def test_file_is_yaml(path):
    assert yaml.safe_load(path.read_text())
