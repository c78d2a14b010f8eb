"""Tests that ./dev asks the person at the terminal before it installs packages as root."""

import os
import pathlib
import pty
import subprocess

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
QUESTION = "Install these Debian packages as root: "
# A command that needs packages and then does little.
COMMAND = ["console", "--help"]


@pytest.fixture
def machine(tmp_path):
    """A search path on which no package is installed, and a file with the arguments of each call of apt-get."""
    calls = tmp_path / "calls"
    calls.touch()
    scripts = {"dpkg-query": "exit 1", "apt-get": f'echo "$@" >>"{calls}"', "sudo": '"$@"'}
    for name, text in scripts.items():
        (tmp_path / name).write_text(f"#!/bin/sh\n{text}\n")
        (tmp_path / name).chmod(0o755)
    return dict(os.environ, PATH=f"{tmp_path}:{os.environ['PATH']}"), calls


def at_terminal(environment, answer, *options):
    """The output and the exit code of ./dev at a terminal where someone gives this answer."""
    person, terminal = pty.openpty()
    process = subprocess.Popen([ROOT / "dev", *options, *COMMAND], env=environment, stdin=terminal, stdout=terminal,
                               stderr=terminal, start_new_session=True)
    os.close(terminal)
    os.write(person, answer)
    output = b""
    while True:
        try:
            piece = os.read(person, 4096)
        except OSError:  # the terminal is closed with the process
            break
        if not piece:
            break
        output += piece
    os.close(person)
    return output.decode(), process.wait(30)


@pytest.mark.parametrize("answer", [b"y\n", b"YES\n"])
def test_packages_are_installed_when_the_person_agrees(machine, answer):
    environment, calls = machine
    output, code = at_terminal(environment, answer)
    assert QUESTION in output and "nginx-light" in output.split(QUESTION)[1]
    assert "install -y --no-install-recommends" in calls.read_text()
    assert code == 0


@pytest.mark.parametrize("answer", [b"n\n", b"\n", b"later\n", b"\x04"])
def test_nothing_is_installed_when_the_person_does_not_agree(machine, answer):
    environment, calls = machine
    output, code = at_terminal(environment, answer)
    assert QUESTION in output and "nothing was installed" in output
    assert calls.read_text() == ""
    assert code == 1


def test_yes_option_installs_without_a_question(machine):
    environment, calls = machine
    output, code = at_terminal(environment, b"", "--yes")
    assert QUESTION not in output
    assert "nginx-light" in calls.read_text()
    assert code == 0


def test_without_a_terminal_packages_are_installed_without_a_question(machine):
    environment, calls = machine
    result = subprocess.run([ROOT / "dev", *COMMAND], env=environment, stdin=subprocess.DEVNULL, capture_output=True, text=True)
    assert QUESTION not in result.stdout + result.stderr
    assert "nginx-light" in calls.read_text()
    assert result.returncode == 0
