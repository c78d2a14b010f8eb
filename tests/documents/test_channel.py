"""Compares interface/channel.json with the product, and the files made from it with the description."""

import json
import re
import shutil
import subprocess
import sys
from pathlib import Path

import pytest

ROOT = Path(__file__).resolve().parents[2]
DESCRIPTION = json.loads((ROOT / "interface/channel.json").read_text())
PLAYER, THUMBNAIL = DESCRIPTION["channels"]


def sources(*folders):
    return "\n".join(path.read_text() for folder in folders for path in sorted((ROOT / folder).glob("*.[ch]*")))


CHANNEL, SERVICES = sources("channel"), sources("services")


def constant(text, name):
    """Returns the value of a constant of the product, as text."""
    return re.search(rf"constexpr [\w:]+ {name}(?: = |\{{)([^;}}]+)", text)[1]


def generate(root, *arguments):
    return subprocess.run([sys.executable, root / "interface/generate", *arguments], capture_output=True, text=True)


def test_files_made_from_the_description_are_up_to_date():
    result = generate(ROOT, "--check")
    assert result.returncode == 0, f"{result.stderr}Run interface/generate."


@pytest.fixture
def copy(tmp_path):
    for name in ("interface", "docs", "tests/unit/channel"):
        shutil.copytree(ROOT / name, tmp_path / name)
    return tmp_path


def test_table_changed_by_hand_is_reported_and_made_again(copy):
    page = copy / "docs/channel.md"
    right = page.read_text()
    page.write_text(right.replace("| `pause` | none | pauses |", "| `pause` | none | stops |"))
    result = generate(copy, "--check")
    assert result.returncode == 1
    assert result.stderr.startswith("docs/channel.md is not what interface/generate makes")
    generate(copy)
    assert page.read_text() == right


def test_new_method_reaches_the_page_the_dart_client_and_the_unit_tests(copy):
    path = copy / "interface/channel.json"
    changed = json.loads(path.read_text())
    changed["channels"][0]["methods"].append({
        "name": "aNewMethod", "does": "plays faster or slower", "reply": {"type": "true"},
        "arguments": [{"key": "rate", "type": "number", "default": 1.0, "use": "the speed"}]})
    path.write_text(json.dumps(changed))
    assert generate(copy).returncode == 0
    assert "| `aNewMethod` | `rate` number (1.0) | plays faster or slower | `true`, always |" in (copy / "docs/channel.md").read_text()
    assert "Future<void> aNewMethod({double rate = 1.0}) async" in (copy / "interface/dart/lib/src/player_channel.dart").read_text()
    assert (copy / "tests/unit/channel/channel_data.h").read_text().count('"aNewMethod"') == 2


def read_arguments():
    """Returns key, type and default, as the product writes it, of every argument that it reads."""
    types = {"Int": "integer", "Bool": "boolean", "Number": "number", "String": "string"}
    found = re.findall(r'Read(Int|Bool|Number|String)Argument\(call, "(\w+)"(?:, ([\w.-]+))?\)', CHANNEL)
    pairs = re.findall(r'ReadEither\(call, "(\w+)", "(\w+)"\)', CHANNEL)
    return {(key, types[reader], text) for reader, key, text in found} | {(key, "string", "") for pair in pairs for key in pair}


def value_of(text):
    """Returns the value of a default of the product: a literal, a constant, or a member of a request with its initial
    value."""
    if text.startswith("request."):
        member = text.removeprefix("request.")
        text = re.search(rf"\b{member} = ([\w.-]+);", sources("player"))[1]
    if text.startswith("k"):
        text = constant(CHANNEL + sources("player"), text)
    named = {"": "", "true": True, "false": False, "id": "id"}
    return named[text] if text in named else float(text)


def test_arguments_are_those_that_the_product_reads_with_their_types_and_defaults():
    read = {(key, kind, value_of(text)) for key, kind, text in read_arguments() if key != "chunkType"}
    described = {(argument["key"], argument["type"], argument.get("defaultKey", argument.get("default")))
                 for method in PLAYER["methods"] for argument in method.get("arguments", [])
                 if argument["key"] != "chunkType" and argument["use"] != "not used"}
    assert described == read


def test_keys_of_get_frame_are_those_that_the_worker_requires():
    required = re.search(r"kRequiredKeys\[\] = \{([^}]+)\}", SERVICES)[1]
    assert re.findall(r'"(\w+)"', required) == [argument["key"] for argument in THUMBNAIL["methods"][1]["arguments"]]


@pytest.mark.parametrize("channel,text", [(PLAYER, CHANNEL), (THUMBNAIL, SERVICES)], ids=["player", "thumbnail"])
def test_errors_are_those_that_the_product_returns(channel, text):
    answered = set(re.findall(r'(?:Error\(|Refuse\(result, )"(\w+)", "([^"]+)"', text))
    assert {(error["code"], error["message"]) for error in channel["errors"]} == answered


def test_toasts_are_those_that_the_product_sends():
    sent = re.findall(r'ShowToast\("([^"]+)"(?: \+ \w+ \+ "([^"]*)")?, (true|false)\)', CHANNEL)
    described = {(toast["message"].replace("ACTION", ""), str(toast["short"]).lower()) for toast in PLAYER["toasts"]}
    assert {(before + after, short) for before, after, short in sent} == described


def test_failures_of_get_frame_are_those_that_the_worker_reports():
    reported = re.findall(r'\bFailure(?:Reply)?\("([^"]+)"\)', SERVICES)
    assert sorted(failure["error"] for failure in THUMBNAIL["failures"]) == sorted(reported)


def test_events_are_named_in_the_product():
    text = sources("channel", "player", "shell")
    missing = [event["name"] for event in PLAYER["events"] if f'"{event["name"]}"' not in text]
    assert not missing


def test_every_call_to_the_interface_is_described():
    calls = r'(?:SendChannelEvent|InvokeMethod|BroadcastEncodableToClientWindows)\("(\w+)"'
    sent = set(re.findall(calls, sources("channel", "player", "services", "shell")))
    assert {"showToast", "settings_requested", "providerDataReceived"} <= sent
    assert sent <= {event["name"] for event in PLAYER["events"]}


def test_channels_are_those_that_the_product_serves():
    assert f'"{PLAYER["name"]}"' in CHANNEL and f'"{THUMBNAIL["name"]}"' in SERVICES


def test_limits_are_those_of_the_product():
    product = {
        "nestedContainers": constant(sources("flutter_host"), "kMaximumNesting"),
        "databaseKeyBytes": constant(SERVICES, "kKeyLength"),
        "frameWaitAfterPlayMs": constant(SERVICES, "kAfterPlay"),
        "frameWaitAfterSeekMs": constant(SERVICES, "kAfterSeek"),
        "frameWaitAfterSnapshotMs": constant(SERVICES, "kAfterSnapshot"),
    }
    assert DESCRIPTION["limits"] == {name: int(value) for name, value in product.items()}


def test_page_states_the_version_and_the_limits():
    page = (ROOT / "docs/channel.md").read_text()
    assert f"version {DESCRIPTION['version']} of the channels" in page
    assert f"deeper than {DESCRIPTION['limits']['nestedContainers']}" in page
    assert f"{DESCRIPTION['limits']['databaseKeyBytes']} random bytes" in page


def test_each_key_and_method_has_one_name_in_dart():
    for channel in DESCRIPTION["channels"]:
        names = [entry.get("dart", entry["name"]) for kind in ("methods", "events") for entry in channel[kind]]
        assert len(set(names)) == len(names)
        text = (ROOT / f"interface/dart/lib/src/{channel['id']}_channel.dart").read_text()
        for name in names:
            assert re.search(rf"(Future<.*>|get) {name}\b", text), name
