"""Libraries are found, loaded once, and answer their classes."""

import inspect

import pytest
from conftest import BUILD, PLUGINS

import zqm


def test_a_library_has_a_class_for_each_class_record(speech):
    names = ["NSSpeechRecognizerZQM", "NSVoiceZQM", "NSSpeechSynthesizerZQM"]
    assert [one.__name__ for one in speech.classes] == names
    assert speech.__all__ == names
    assert speech.__name__ == "libZQMNSSpeech"
    assert speech.__file__ == str(BUILD / "libZQMNSSpeech.so")
    assert issubclass(speech.NSVoiceZQM, zqm.Object)
    assert speech.NSVoiceZQM.__module__ == "libZQMNSSpeech"


def test_an_unknown_class_is_an_attribute_error(speech):
    with pytest.raises(AttributeError, match="libZQMNSSpeech has no class NSSpeech"):
        speech.NSSpeech


def test_a_library_is_loaded_once(speech):
    assert zqm.load("libZQMNSSpeech.so") is speech
    assert zqm.load(BUILD / "libZQMNSSpeech.so") is speech
    assert zqm.load(str(BUILD / "libZQMNSSpeech")) is speech


def test_a_link_to_a_library_is_that_library(speech, tmp_path):
    link = tmp_path / "other.so"
    link.symlink_to(BUILD / "libZQMNSSpeech.so")
    assert zqm.load(link) is speech


def test_a_relative_path_is_one_of_the_current_folder(widgets, monkeypatch):
    monkeypatch.chdir(PLUGINS)
    assert zqm.load("./widget_plugin") is widgets


def test_siblings_share_the_runtime(speech):
    foundation = zqm.load("libZQMFoundation")
    synthesizer = speech.NSSpeechSynthesizerZQM()
    error = zqm.ByRef()
    assert synthesizer.objectForProperty("no such key", error) is None
    assert isinstance(error.value, foundation.NSErrorZQM)
    assert error.value.Code() != 0


def test_names_are_looked_for_where_the_variable_says(widgets, monkeypatch, tmp_path):
    monkeypatch.setenv("ZQM_PLUGIN_PATH", f"{tmp_path}:{PLUGINS}")
    assert zqm.load("widget_plugin") is widgets


def test_a_missing_name_tells_where_it_was_looked_for(monkeypatch, tmp_path):
    monkeypatch.setenv("ZQM_PLUGIN_PATH", str(tmp_path))
    with pytest.raises(zqm.LoadError) as error:
        zqm.load("libNone")
    assert str(error.value).startswith(f"there is no libNone.so in {tmp_path}, ")
    assert "ZQM_PLUGIN_PATH" in str(error.value)


def test_a_missing_path_is_told():
    with pytest.raises(zqm.LoadError, match="there is no plugin library /nowhere/libNone"):
        zqm.load("/nowhere/libNone")


def test_what_is_no_plugin_is_told(tmp_path):
    text = tmp_path / "text.so"
    text.write_text("no library")
    with pytest.raises(zqm.LoadError, match="can't be loaded"):
        zqm.load(text)
    with pytest.raises(zqm.LoadError, match="no function REALPluginMain"):
        zqm.load(PLUGINS / "no_entry_plugin.so")
    with pytest.raises(zqm.LoadError, match="registered no class"):
        zqm.load(PLUGINS / "empty_plugin.so")


@pytest.mark.parametrize("wrong", [b"libZQMNSSpeech", 3, None, ["libZQMNSSpeech"]])
def test_what_is_no_name_is_told(wrong):
    with pytest.raises(TypeError) as error:
        zqm.load(wrong)
    assert str(error.value) == f"a plugin library is named by a str or a path, not {wrong!r}"


def test_names_that_no_file_can_have_are_told(tmp_path):
    with pytest.raises(zqm.LoadError, match="the name of the plugin library is empty"):
        zqm.load("")
    with pytest.raises(zqm.LoadError, match=r"'lib\\x00None' is no name of a file"):
        zqm.load("lib\0None")
    long = "a" * 5000
    with pytest.raises(zqm.LoadError, match="there is no plugin library .*/a: File name too long"):
        zqm.load(f"{tmp_path}/{long}/a")
    with pytest.raises(zqm.LoadError, match=f"there is no {long}.so in "):
        zqm.load(long)


def test_what_is_no_file_is_told(tmp_path):
    with pytest.raises(zqm.LoadError) as error:
        zqm.load(tmp_path)
    assert str(error.value) == f"{tmp_path} is a folder, not a plugin library"
    with pytest.raises(zqm.LoadError, match="/dev/null is no file"):
        zqm.load("/dev/null")


def test_a_library_with_its_version_is_found_by_its_name(widgets, monkeypatch, tmp_path):
    (tmp_path / "libwidget.so.2").symlink_to(PLUGINS / "widget_plugin.so")
    monkeypatch.setenv("ZQM_PLUGIN_PATH", str(tmp_path))
    assert zqm.load("libwidget.so.2") is widgets


def test_what_could_not_be_loaded_can_not_be_loaded_again(tmp_path):
    for _ in range(2):
        with pytest.raises(zqm.LoadError, match="registered no class"):
            zqm.load(PLUGINS / "empty_plugin.so")


def test_classes_tell_their_declarations(speech):
    synthesizer = speech.NSSpeechSynthesizerZQM
    assert "didFinishSpeaking(finishedSpeaking as Boolean)" in synthesizer.__doc__
    assert "Constructor(voice as String)" in synthesizer.__doc__
    assert synthesizer.startSpeakingString.__doc__.splitlines() == [
        "startSpeakingString(Text as String) as Boolean",
        "startSpeakingString(Text as String, URL as String) as Boolean",
        "startSpeakingString(Text as String, File as folderitem) as Boolean",
    ]
    assert synthesizer.Rate.__doc__ == "Rate as Double"
    assert str(inspect.signature(synthesizer.willSpeakWord)) == "(self, Position, Length, Text, /)"
    assert str(inspect.signature(synthesizer.setVoice)) == "(self, Voice, /)"
