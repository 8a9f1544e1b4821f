"""What pip installs is whole, and needs nothing of the build."""

import os
import pathlib
import shutil
import subprocess
import sys

import pytest
from conftest import BUILD

SOURCES = pathlib.Path(__file__).parents[2] / "python"
PLATFORM = os.readlink(BUILD / "libzqmplatform.so")


def install(target, sources, **variables):
    return subprocess.run(
        [
            *(sys.executable, "-m", "pip", "install", "--quiet", "--disable-pip-version-check", "--no-index"),
            *("--no-build-isolation", "--no-deps", "--no-cache-dir", "--target", str(target), str(sources)),
        ],
        capture_output=True,
        text=True,
        timeout=200,
        env={**os.environ, "ZQM_BUILD_FOLDER": str(BUILD), **variables},
    )


@pytest.fixture
def sources(tmp_path):
    """A copy, since building leaves files beside them."""
    copy = tmp_path / "sources"
    shutil.copytree(SOURCES, copy, ignore=shutil.ignore_patterns("__pycache__", "build", "*.egg-info"))
    return copy


def test_pip_installs_all_that_speaking_needs(tmp_path, sources):
    site = tmp_path / "site"
    done = install(site, sources)
    assert done.returncode == 0, done.stdout + done.stderr
    package = site / "zqm"
    modules = {file.name for file in SOURCES.glob("zqm/*") if file.is_file()}
    binaries = {"libZQMFoundation.so", "libZQMNSSpeech.so", PLATFORM, "zqmspeech-engine"}
    installed = {file.name for file in package.iterdir() if file.is_file()}
    extension = {name for name in installed if name.startswith("_zqm.") and name.endswith(".so")}
    assert len(extension) == 1
    assert installed == modules | binaries | extension

    environment = {**os.environ, "PYTHONPATH": str(site)}
    sound = tmp_path / "speech.wav"
    program = [sys.executable, str(SOURCES / "examples/reader.py"), "Hello, world", str(sound)]
    done = subprocess.run(program, capture_output=True, text=True, timeout=120, env=environment)
    assert (done.stdout, done.stderr, done.returncode) == ("Hello\nworld\n", "", 0)
    assert sound.stat().st_size > 20000

    where = "import zqm; print(zqm.load('libZQMNSSpeech').__file__); print(open('/proc/self/maps').read())"
    done = subprocess.run([sys.executable, "-c", where], capture_output=True, text=True, env=environment)
    assert done.stdout.splitlines()[0] == str(package / "libZQMNSSpeech.so")
    assert str(package / PLATFORM) in done.stdout
    assert str(BUILD) not in done.stdout


def test_a_build_without_the_module_is_told(tmp_path, sources):
    (tmp_path / "CMakeCache.txt").write_text("CMAKE_PROJECT_VERSION:STATIC=1.0\n")
    (tmp_path / "cmake_install.cmake").write_text("")
    done = install(tmp_path / "site", sources, ZQM_BUILD_FOLDER=str(tmp_path))
    assert done.returncode != 0
    assert f"{tmp_path} holds no module for this Python" in done.stdout + done.stderr
