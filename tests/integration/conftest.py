"""Fixtures for black-box tests of the built host: tests send requests as bytes and check replies and events."""

import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "devkit/interface"), str(ROOT)]

from tests.support.host_fixtures import *  # noqa: E402,F401,F403
