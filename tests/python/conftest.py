"""What the tests of the Python module share."""

import gc
import os
import pathlib
import sys

import pytest

import zqm

PLUGINS = pathlib.Path(os.environ["ZQM_TEST_PLUGINS"])
BUILD = pathlib.Path(os.environ["ZQM_TEST_BUILD"])


@pytest.fixture(autouse=True)
def no_breach():
    """The host was spoken to correctly, and nothing went wrong where nobody could be told."""
    untold = []
    hook, sys.unraisablehook = sys.unraisablehook, untold.append
    before = zqm.reports()
    yield
    gc.collect()
    sys.unraisablehook = hook
    assert zqm.reports() == before
    assert [str(one.exc_value) for one in untold] == []


@pytest.fixture
def widgets():
    return zqm.load(PLUGINS / "widget_plugin.so")


@pytest.fixture
def echoes():
    return zqm.load(PLUGINS / "echo_plugin.so")


@pytest.fixture
def echo(echoes):
    return echoes.Echo()


@pytest.fixture
def speech():
    return zqm.load("libZQMNSSpeech")


@pytest.fixture
def unread(tmp_path):
    """A pipe that nobody reads, so that no speech of some length into it is over before it is ended."""
    pipe = tmp_path / "unread.ogg"
    os.mkfifo(pipe)
    reader = os.open(pipe, os.O_RDONLY | os.O_NONBLOCK)
    yield pipe
    os.close(reader)
