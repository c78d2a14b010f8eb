"""The packages, made once for each file of tests, with a stand-in bundle and a stand-in runtime."""

import fcntl
import os
import pathlib
import subprocess
import sys

import pytest

ROOT = pathlib.Path(__file__).resolve().parents[2]
COMMIT_TIME = "1700000000"  # 2023-11-14 22:13:20
sys.path[:0] = [str(ROOT / "devkit/interface"), str(ROOT)]

from tests.packaging.runtimes import check_runtime, make_runtime, published  # noqa: E402
from tests.support.host_fixtures import *  # noqa: E402,F401,F403


@pytest.fixture(scope="module")
def package(tmp_path_factory):
    base = tmp_path_factory.mktemp("package")
    bundle, runtime = base / "bundle", base / "runtime"
    (bundle / "data" / "flutter_assets").mkdir(parents=True)
    (bundle / "data" / "icudtl.dat").write_bytes(b"icu")
    (bundle / "data" / "flutter_assets" / "asset name with blanks.txt").write_text("asset")
    make_runtime(runtime, published(check_runtime.interfaces()[0]))
    # All workers of the tests build in one folder.
    (ROOT / "out").mkdir(exist_ok=True)
    with open(ROOT / "out/package.lock", "w") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        subprocess.run([ROOT / "packaging" / "make-package", "--bundle", bundle, "--runtime", runtime, "--out", base / "out"],
                       check=True, stdout=subprocess.DEVNULL, env=dict(os.environ, SOURCE_DATE_EPOCH=COMMIT_TIME))
    return base / "out"


@pytest.fixture(scope="module")
def stage(package):
    """The folder that the zip and the installer are made of."""
    [folder] = [folder for folder in package.glob("vantro-*") if folder.is_dir()]
    return folder
