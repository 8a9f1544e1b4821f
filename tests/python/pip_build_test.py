"""What pip builds from the sources alone, in a virtual environment, speaks.

The first run compiles everything, which takes minutes; later ones compile what has changed.
"""

import os
import pathlib
import shutil
import subprocess
import sys

import pytest
from conftest import BUILD

PROJECT = pathlib.Path(__file__).parents[2]
NOT_SOURCES = {"build", "python", ".git", ".cache"}

READER = """
import asyncio
import pathlib

import zqm

speech = zqm.load("libZQMNSSpeech")


async def main():
    reader = speech.NSSpeechSynthesizerZQM()
    assert reader.startSpeakingString("Hello, world", pathlib.Path("speech.wav"))
    print(await reader.finished(), speech.__file__)


asyncio.run(main())
"""


def environment_without_this_build():
    ours = {"PYTHONPATH", "ZQM_PLUGIN_PATH", "ZQM_BUILD_FOLDER", "LD_LIBRARY_PATH"}
    others = {name: value for name, value in os.environ.items() if name not in ours}
    # The optimizer would take most of the time; what it makes is tested elsewhere.
    return others | {"CMAKE_BUILD_TYPE": "None"}


def run(*command, limit=120, **options):
    done = subprocess.run(
        [str(one) for one in command],
        capture_output=True,
        text=True,
        timeout=limit,
        env=environment_without_this_build(),
        **options,
    )
    assert done.returncode == 0, done.stdout + done.stderr
    return done.stdout


@pytest.fixture
def project():
    """The project's sources, seen from a folder in which building may leave files, and find them again."""
    project = BUILD / "pip/project"
    project.mkdir(parents=True, exist_ok=True)
    for entry in PROJECT.iterdir():
        link = project / entry.name
        if entry.name not in NOT_SOURCES and not link.is_symlink():
            link.symlink_to(entry)
    for name in ("zqm", "src", "examples"):
        shutil.rmtree(project / "python" / name, ignore_errors=True)
    left_behind = shutil.ignore_patterns("build", "*.egg-info", "__pycache__")
    shutil.copytree(PROJECT / "python", project / "python", ignore=left_behind, dirs_exist_ok=True)
    for packed in (project / "python/build").glob("lib*"):
        shutil.rmtree(packed)
    return project


def test_pip_builds_what_speaks_from_another_folder(project, tmp_path):
    environment = tmp_path / "environment"
    run(sys.executable, "-m", "venv", "--system-site-packages", environment)
    python = environment / "bin/python"
    run(
        *(python, "-m", "pip", "install", "--disable-pip-version-check", "--no-index", "--no-cache-dir"),
        *("--no-build-isolation", "--no-deps", project / "python"),
        limit=3000,
    )
    (tmp_path / "reader.py").write_text(READER)
    whole, plugin = run(python, tmp_path / "reader.py", cwd=tmp_path).split()
    assert whole == "True"
    assert pathlib.Path(plugin).is_relative_to(environment)
    assert (tmp_path / "speech.wav").stat().st_size > 20000
    loaded = run(python, "-c", "import zqm; zqm.load('libZQMNSSpeech'); print(open('/proc/self/maps').read())")
    assert str(environment) in loaded
    assert str(BUILD) not in loaded
    run(python, "-m", "pip", "uninstall", "--disable-pip-version-check", "--yes", "zqm")
    assert list((environment / "lib").rglob("*zqm*")) == []
