"""Recognizers hear sound files."""

import subprocess

import pytest

import zqm


@pytest.fixture
def said(tmp_path):
    """A file in which somebody says a command."""
    file = tmp_path / "gesprochen 🎈.wav"
    subprocess.run(["flite", "-voice", "slt", "-t", "Open the window.", "-o", str(file)], check=True)
    yield file
    zqm.listen_to_file(None)


def recognizer(speech, heard):
    made = speech.NSSpeechRecognizerZQM()
    made.setCommands(["open the window", "stop"])
    made.on("DidRecognizeCommand", heard.append)
    return made


def test_a_recognizer_hears_a_file(speech, said):
    heard = []
    zqm.listen_to_file(said)
    listening = recognizer(speech, heard)
    listening.startListening()
    assert zqm.run(lambda: heard, 60)
    assert heard == ["open the window"]


def test_a_relative_name_is_one_of_the_folder_that_is_current_now(speech, said, monkeypatch, tmp_path):
    heard = []
    monkeypatch.chdir(tmp_path)
    zqm.listen_to_file(said.name)
    monkeypatch.chdir("/")
    listening = recognizer(speech, heard)
    listening.startListening()
    assert zqm.run(lambda: heard, 60)


def test_what_can_not_be_heard_is_told(tmp_path):
    with pytest.raises(FileNotFoundError, match="none.wav"):
        zqm.listen_to_file(tmp_path / "none.wav")
    with pytest.raises(IsADirectoryError):
        zqm.listen_to_file(tmp_path)
    for wrong in (3, b"speech.wav"):
        with pytest.raises(TypeError) as error:
            zqm.listen_to_file(wrong)
        assert str(error.value) == f"a sound file is named by a str or a path, not {wrong!r}"
