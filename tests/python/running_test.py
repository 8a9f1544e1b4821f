"""The run loop without asyncio."""

import os
import signal
import threading
import time
import weakref

import pytest

import zqm

TEXT = "one two three four five"


@pytest.fixture
def speaker(speech):
    return speech.NSSpeechSynthesizerZQM()


@pytest.fixture
def file(tmp_path):
    return tmp_path / "speech.wav"


def test_events_come_while_the_run_loop_runs(speaker, file):
    words, ends = [], []
    speaker.on("willSpeakWord", lambda position, length, text: words.append(text[position:][:length]))
    speaker.on("didFinishSpeaking", ends.append)
    assert speaker.startSpeakingString(TEXT, file) is True
    assert zqm.run(lambda: ends, 250) is True
    assert words == TEXT.split()
    assert ends == [True]
    assert file.read_bytes()[:4] == b"RIFF"


def test_a_subclass_hears_as_well(speech, file):
    class Speaker(speech.NSSpeechSynthesizerZQM):
        done = None

        def didFinishSpeaking(self, finished):
            self.done = finished

    speaker = Speaker()
    assert speaker.startSpeakingString("Hello", file)
    assert zqm.run(lambda: speaker.done is not None, 250)
    assert speaker.done is True


def test_the_predicate_is_asked_between_events(speaker, file):
    words = []
    speaker.on("willSpeakWord", lambda *word: words.append(word))
    assert speaker.startSpeakingString(TEXT, file)
    assert zqm.run(lambda: len(words) == 2, 250)
    assert len(words) == 2


def test_a_predicate_that_is_true_needs_no_time(speaker):
    assert zqm.run(lambda: True) is True
    assert zqm.run(lambda: True, 0) is True


def test_the_time_ends_the_run(speaker):
    asked = []
    assert zqm.run(lambda: asked.append(1), 0.3) is False
    assert 0 < len(asked) < 30  # it waits in between
    assert zqm.run(timeout=0) is False


def test_the_predicate_is_asked_again_and_again(speaker):
    asked = []
    assert zqm.run(lambda: asked.append(1) or len(asked) > 2, 250) is True
    assert len(asked) == 3


def test_a_time_that_is_no_number_is_refused(speaker):
    with pytest.raises(ValueError, match="not a number"):
        zqm.run(lambda: False, float("nan"))


@pytest.mark.parametrize("wrong", ["3", [], 1j])
def test_so_is_one_of_another_kind(speaker, wrong):
    with pytest.raises(TypeError) as error:
        zqm.run(lambda: False, wrong)
    assert str(error.value) == f"the timeout is a number of seconds, not {wrong!r}"


@pytest.mark.parametrize("wrong", [3, 0.5, True, "done"])
def test_a_predicate_that_can_not_be_called_is_refused(wrong):
    with pytest.raises(TypeError) as error:
        zqm.run(wrong)
    assert str(error.value) == (
        f"what to wait until is {wrong!r}, which can't be called; zqm.run(timeout=...) runs for so many seconds"
    )


def test_coroutines_are_for_asyncio():
    async def main():
        pass

    coroutine = main()
    for wrong in (main, coroutine):
        with pytest.raises(TypeError, match="a coroutine, which asyncio.run"):
            zqm.run(wrong)
    coroutine.close()


def test_the_last_answer_counts(speaker):
    answers = iter([False, True])
    assert zqm.run(lambda: next(answers), 0) is True


def test_what_a_handler_raises_leaves_the_run(speaker, file):
    class Stop(Exception):
        pass

    error = Stop()

    def stop(position, length, text):
        words.append(position)
        raise error

    words, ends = [], []
    speaker.on("willSpeakWord", stop)
    speaker.on("didFinishSpeaking", ends.append)
    assert speaker.startSpeakingString("one two", file)
    for count in (1, 2):
        with pytest.raises(Stop) as raised:
            zqm.run(timeout=250)
        assert raised.value is error
        assert len(words) == count
    assert zqm.run(lambda: ends, 250)


def test_a_handler_that_drops_the_last_reference_ends_the_speech(speech, file):
    holder = [speech.NSSpeechSynthesizerZQM()]
    words = []

    def drop(*word):
        words.append(word)
        holder.clear()

    gone = weakref.ref(holder[0])
    holder[0].on("willSpeakWord", drop)
    assert holder[0].startSpeakingString("word " * 20000, file)
    assert zqm.run(lambda: words, 250)
    assert gone() is None
    zqm.run(timeout=0.2)
    assert len(words) == 1


def test_what_the_predicate_raises_leaves_the_run():
    with pytest.raises(ZeroDivisionError):
        zqm.run(lambda: 1 / 0)


def test_a_handler_may_run_the_run_loop(speaker, file):
    def wait(position, length, text):
        if not words:
            words.append(position)
            inner.append(zqm.run(lambda: ends, 250))

    words, inner, ends = [], [], []
    speaker.on("willSpeakWord", wait)
    speaker.on("didFinishSpeaking", ends.append)
    assert speaker.startSpeakingString(TEXT, file)
    assert zqm.run(lambda: ends, 250)
    assert inner == [True]


def test_other_threads_run_while_it_waits(speaker):
    done = threading.Event()
    asked = []

    def work():
        for _ in range(2000):
            time.sleep(0)  # takes the interpreter's lock again each time
        done.set()

    thread = threading.Thread(target=work)
    thread.start()
    assert zqm.run(lambda: asked.append(1) or done.is_set(), 250)
    thread.join()
    assert len(asked) < 1000  # times that it waited; it would be as often as the thread goes on, if that had to wait


def test_a_signal_ends_the_run(speaker):
    def interrupt():
        started.wait()
        os.kill(os.getpid(), signal.SIGINT)

    started = threading.Event()
    thread = threading.Thread(target=interrupt)
    thread.start()
    with pytest.raises(KeyboardInterrupt):
        zqm.run(started.set)  # which answers None
    thread.join()


def test_a_signal_ends_a_run_that_has_long_been_waiting(speaker):
    # The handler has run as soon as it is woken, though nothing happens in the run loop.
    seen = []
    before = signal.signal(signal.SIGALRM, lambda *_: seen.append(True))
    try:
        signal.setitimer(signal.ITIMER_REAL, 0.05)
        assert zqm.run(lambda: seen, 250)
    finally:
        signal.setitimer(signal.ITIMER_REAL, 0)
        signal.signal(signal.SIGALRM, before)


def test_waiting_costs_no_time_of_the_processor(speaker):
    before = time.process_time()
    zqm.run(timeout=0.5)
    assert time.process_time() - before < 0.25
