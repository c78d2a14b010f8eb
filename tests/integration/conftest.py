"""Fixtures for tests of the built host as a black box: requests go in as bytes, replies and events come out."""

import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "devkit/interface"), str(ROOT)]

from tests.support.host_fixtures import *  # noqa: E402,F401,F403
