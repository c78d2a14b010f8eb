"""The fixtures that integration and end-to-end tests share.

`host` and `player_host` are functions that start a host and return it. Everything that a test starts ends with the
test. At the end each host is checked: it must have given every answer exactly once, and all its messages must be
decodable. A test that expects otherwise calls allow_violations.

A watchdog ends a test that exceeds its limit and prints the stack of every thread. The limit is 60 seconds, or that of
the marker time_limit(seconds).
"""

import faulthandler
import os
import sys

import pytest

from vantro_interface import host as hosts
from vantro_interface.display import Display

DEFAULT_LIMIT = 60

__all__ = ["pytest_configure", "watchdog", "wine_prefix", "fresh_prefix", "host", "player_host",
           "callbacks_host", "bare_host", "screen", "screen_prefix", "screen_host"]


def pytest_configure(config):
    config.addinivalue_line("markers", "time_limit(seconds): how long the test may take before the watchdog ends it")


@pytest.fixture(autouse=True)
def watchdog(request):
    marker = request.node.get_closest_marker("time_limit")
    faulthandler.dump_traceback_later(marker.args[0] if marker else DEFAULT_LIMIT, exit=True, file=sys.__stderr__)
    yield
    faulthandler.cancel_dump_traceback_later()


def _prefix_folder(name):
    # In the same folder as the template, because a prefix is a clone by hard links.
    return hosts.ROOT / "out/wine" / f"{name}-{os.getpid()}"


@pytest.fixture(scope="session")
def wine_prefix():
    """One prefix for each test session, because starting a prefix takes longer than starting a host. Traces of earlier
    hosts are removed before each host."""
    with hosts.Prefix(_prefix_folder("session")) as prefix:
        yield prefix


@pytest.fixture
def fresh_prefix():
    """A prefix that no host has run in, for tests that change the system's settings."""
    with hosts.Prefix(_prefix_folder("fresh")) as prefix:
        yield prefix


class HostStarter:
    """Starts hosts for one test and ends them with the test."""

    def __init__(self, prefix, folder, libraries):
        self.prefix = prefix
        self.allow_violations = False
        self.started = []
        self._folder = folder
        self._libraries = libraries

    def make(self, **options):
        """Makes a host without starting it, so that its folder can be changed first."""
        options.setdefault("libraries", self._libraries)
        options.setdefault("folder", self._folder / f"host{len(self.started) + 1}")
        host = hosts.Host(self.prefix, options.pop("folder"), **options)
        self.started.append(host)
        return host

    def __call__(self, *arguments, connect=True, **options):
        return self.make(**options).start(*arguments, connect=connect)

    def finish(self):
        clients = [host.client for host in self.started if host.client]
        for host in self.started:
            host.close()
        if not self.allow_violations:
            assert [violation for client in clients for violation in client.violations] == []
            assert [message for client in clients for message in client.undecodable] == []


def _starter(prefix, folder, libraries):
    prefix.remove_traces()
    starter = HostStarter(prefix, folder, libraries)
    yield starter
    starter.finish()


def _require(*files):
    missing = [str(file) for file in files if not file.exists()]
    # A failure and not a skip, because skipped tests would look like passed ones.
    assert not missing, f"not built: {', '.join(missing)}; ./dev test builds them"


@pytest.fixture
def host(wine_prefix, tmp_path):
    """Starts the built host with the scripted libvlc: `host()`, or `host(libraries=scripted("vlc4"))`."""
    libraries = hosts.scripted("full")
    _require(hosts.BUILD / "vantro.exe", *libraries.values())
    yield from _starter(wine_prefix, tmp_path, libraries)


def _player_starter(prefix, folder, libraries):
    _require(hosts.BUILD / "vantro.exe", *libraries.values())
    yield from _starter(prefix, folder, libraries)


@pytest.fixture
def player_host(wine_prefix, tmp_path):
    """Starts the built host with the adapter and the development library below it, so that real streams play. Its
    windows have no display; client.capture takes their pictures."""
    yield from _player_starter(wine_prefix, tmp_path, hosts.player_libraries())


@pytest.fixture
def callbacks_host(wine_prefix, tmp_path):
    """Like player_host, with the development library as a libvlc 4 of 2026: callbacks and microseconds."""
    yield from _player_starter(wine_prefix, tmp_path, hosts.player_libraries("callbacks"))


@pytest.fixture
def bare_host(wine_prefix, tmp_path):
    """Like player_host, with the development library but without the adapter."""
    yield from _player_starter(wine_prefix, tmp_path, hosts.bare_libraries())


@pytest.fixture(scope="session")
def screen():
    """An X server without a screen."""
    with Display(use_existing=False) as display:
        yield display


@pytest.fixture(scope="session")
def screen_prefix(screen):
    with hosts.Prefix(_prefix_folder("screen"), "x11", screen.name) as prefix:
        yield prefix


@pytest.fixture
def screen_host(screen_prefix, tmp_path):
    """Like player_host, with its windows on the screen. The overlay is cut away so that the video is visible."""
    for starter in _player_starter(screen_prefix, tmp_path, hosts.player_libraries()):
        make = starter.make
        starter.make = lambda **options: make(**{"glass": True, **options})
        yield starter
