"""Fixtures for tests of the built host with the development library, in which real streams are played."""

import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "devkit/interface"), str(ROOT)]

from tests.support.host_fixtures import *  # noqa: E402,F401,F403

import subprocess  # noqa: E402

import pytest  # noqa: E402

from tests.end_to_end.stream_server import StreamServer  # noqa: E402


@pytest.fixture(scope="session")
def streams():
    """The folder of generated streams; made once and kept between runs."""
    folder = ROOT / "out/streams"
    subprocess.run([ROOT / "devkit/streams/make-streams", folder], check=True, stdin=subprocess.DEVNULL)
    return folder


@pytest.fixture
def server(streams):
    """Serves the streams, healthy and broken, for one test."""
    with StreamServer(streams) as server:
        yield server


@pytest.fixture(scope="module")
def module_server(streams):
    """The same server for all tests of a file."""
    with StreamServer(streams) as server:
        yield server
