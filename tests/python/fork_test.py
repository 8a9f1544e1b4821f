"""Processes that a program forks have objects of their own."""

import asyncio
import multiprocessing
import os
import threading
import traceback

import pytest

import zqm


def in_child(work):
    """Answers what the work in a forked process answered, or what it raised and prints."""
    reading, writing = os.pipe()
    child = os.fork()
    if child == 0:
        try:
            answer = repr(work())
        except BaseException as error:
            answer = "".join(traceback.format_exception_only(error)).strip()
        os.write(writing, answer.encode())
        os._exit(0)
    os.close(writing)
    with open(reading, encoding="utf-8") as answers:
        answer = answers.read()
    assert os.waitpid(child, 0) == (child, 0)
    return answer


def speak(speech, file):
    speaker = speech.NSSpeechSynthesizerZQM()
    assert speaker.startSpeakingString("one", file)
    return asyncio.run(asyncio.wait_for(speaker.finished(), 60))


@pytest.fixture
def speaker(speech, tmp_path):
    """One that speaks on and on."""
    speaker = speech.NSSpeechSynthesizerZQM()
    assert speaker.startSpeakingString("word " * 20000, tmp_path / "long.wav")
    return speaker


@pytest.mark.parametrize(
    "use",
    [
        lambda speaker: speaker.stopSpeaking(),
        lambda speaker: speaker.isSpeaking,
        lambda speaker: setattr(speaker, "Rate", 100),
        lambda speaker: speaker.on("willSpeakWord", print),
        lambda speaker: asyncio.run(speaker.finished()),
        lambda speaker: asyncio.run(speaker.raised("willSpeakWord")),
        lambda speaker: speaker.objectForProperty(speaker),
    ],
)
def test_objects_are_those_of_the_process_that_made_them(speaker, use):
    assert in_child(lambda: use(speaker)) == (
        "zqm._errors.CallError: this object belongs to the process that this one was forked from"
    )


def test_a_child_makes_its_own(speaker, speech, tmp_path):
    assert in_child(lambda: speak(speech, tmp_path / "child.wav")) == "True"
    assert (tmp_path / "child.wav").stat().st_size > 1000


def test_the_parent_speaks_on(speaker):
    words = []
    speaker.on("willSpeakWord", lambda *word: words.append(word))
    assert zqm.run(lambda: words, 60)
    assert in_child(lambda: zqm.run(timeout=0.1) or len(words)) == str(len(words))
    heard = len(words)
    assert zqm.run(lambda: len(words) > heard + 10, 60)
    assert speaker.isSpeaking


def test_a_child_that_drops_the_parents_objects_takes_nothing_from_it(speech, tmp_path):
    holder = [speech.NSSpeechSynthesizerZQM()]
    assert holder[0].startSpeakingString("word " * 200, tmp_path / "speech.wav")
    assert in_child(holder.clear) == "None"
    assert asyncio.run(asyncio.wait_for(holder[0].finished(), 60)) is True


def test_workers_speak(speaker, speech, tmp_path):
    def work(number):
        os._exit(0 if speak(speech, tmp_path / f"{number}.wav") else 1)

    context = multiprocessing.get_context("fork")
    workers = [context.Process(target=work, args=(number,)) for number in range(3)]
    for worker in workers:
        worker.start()
    for worker in workers:
        worker.join(60)
    assert [worker.exitcode for worker in workers] == [0, 0, 0]


def test_a_child_of_another_thread_has_no_main_thread_for_the_host(speech):
    answers = []
    thread = threading.Thread(target=lambda: answers.append(in_child(speech.NSSpeechSynthesizerZQM)))
    thread.start()
    thread.join()
    assert answers[0].startswith("zqm._errors.ThreadError: host objects live on the main thread alone")
