"""Events in asyncio's loop."""

import asyncio
import functools
import gc
import weakref

import pytest

import zqm
from zqm import _waiting, _zqm

LIMIT = 250


def in_loop(test):
    """Runs the coroutine, with an end to whatever never comes."""

    @functools.wraps(test)
    def run(*arguments, **named):
        asyncio.run(asyncio.wait_for(test(*arguments, **named), LIMIT))

    return run


@pytest.fixture(params=["descriptor", "looking"])
def way(request, monkeypatch):
    """Events are waited for by a descriptor; where the system has none, somebody looks now and then."""
    if request.param == "looking":
        monkeypatch.setattr(_zqm, "event_descriptor", lambda: None)


@in_loop
async def test_a_reader_reads(speech, tmp_path, way):
    class Reader(speech.NSSpeechSynthesizerZQM):
        def __init__(self):
            super().__init__()
            self.words = []

        def willSpeakWord(self, position, length, text):
            self.words.append(text[position : position + length])

    reader = Reader()
    assert reader.startSpeakingString("Hello, world", tmp_path / "speech.wav")
    assert await reader.finished() is True
    assert reader.words == ["Hello", "world"]


@in_loop
async def test_several_are_awaited_in_any_order(speech, tmp_path, way):
    readers = [speech.NSSpeechSynthesizerZQM() for _ in range(3)]
    for number, reader in enumerate(readers):
        assert reader.startSpeakingString("Hello " * (1 + 50 * number), tmp_path / f"{number}.wav")
    for reader in reversed(readers):
        assert await reader.finished() is True


@in_loop
async def test_they_are_awaited_together_and_again(speech, tmp_path):
    reader = speech.NSSpeechSynthesizerZQM()
    for text in ("one", "two"):
        assert reader.startSpeakingString(text, tmp_path / f"{text}.wav")
        assert await asyncio.gather(reader.finished(), reader.finished()) == [True, True]
    assert await reader.finished() is True  # it has been


@in_loop
async def test_a_new_start_ends_the_old_one(speech, tmp_path):
    reader = speech.NSSpeechSynthesizerZQM()
    assert reader.startSpeakingString("word " * 20000, tmp_path / "long.wav")
    assert reader.startSpeakingString("short", tmp_path / "short.wav")
    assert await reader.finished() is True
    assert (tmp_path / "short.wav").exists()


@in_loop
async def test_what_was_stopped_has_not_finished(speech, unread):
    reader = speech.NSSpeechSynthesizerZQM()
    assert reader.startSpeakingString("word " * 20000, unread)
    reader.stopSpeaking()
    assert await reader.finished() is False


@in_loop
async def test_nothing_started_can_not_be_awaited(speech, echo):
    with pytest.raises(zqm.CallError, match="nothing that startSpeakingString started"):
        await speech.NSSpeechSynthesizerZQM().finished()
    assert echo.startCounting(0) is False
    with pytest.raises(zqm.CallError, match="nothing that startCounting started"):
        await echo.finished()


@in_loop
async def test_an_end_before_the_wait_counts(echo):
    assert echo.startCounting(1)
    echo.FinishCounting(False)
    assert await echo.finished() is False
    assert echo.startCounting(1)
    asyncio.get_running_loop().call_later(0.01, echo.FinishCounting, True)
    assert await echo.finished() is True


@in_loop
async def test_the_next_event_is_awaited_with_its_arguments(echo, way):
    asyncio.get_running_loop().call_later(0.01, echo.Tell, "news")
    assert await echo.raised("heard") == ("news",)
    assert echo.Tell("more") is False  # nobody waits any more


@in_loop
async def test_an_unknown_event_is_told(echo):
    with pytest.raises(zqm.CallError, match="Echo has no event Herd"):
        await echo.raised("Herd")


@in_loop
async def test_each_word_can_be_awaited(speech, tmp_path, way):
    reader = speech.NSSpeechSynthesizerZQM()
    assert reader.startSpeakingString("one two three", tmp_path / "speech.wav")
    for word in ("one", "two", "three"):
        position, length, text = await reader.raised("willSpeakWord")
        assert text[position : position + length] == word


@in_loop
async def test_a_wait_can_be_given_up(echo, way):
    with pytest.raises(asyncio.TimeoutError):
        await asyncio.wait_for(echo.raised("Heard"), 0.05)
    assert echo.Tell(1) is False
    assert not _waiting._delivery()._waiting


def failing_reader(speech):
    class Reader(speech.NSSpeechSynthesizerZQM):
        def willSpeakWord(self, position, length, text):
            raise KeyError(text)

    return Reader()


@in_loop
async def test_what_a_handler_raises_leaves_the_wait_for_its_object(speech, echo, tmp_path, way):
    other = asyncio.ensure_future(echo.raised("Heard"))
    await asyncio.sleep(0)
    reader = failing_reader(speech)
    assert reader.startSpeakingString("one", tmp_path / "speech.wav")
    with pytest.raises(KeyError, match="one"):
        await reader.finished()
    assert await reader.finished() is True
    assert not other.done()
    other.cancel()


@in_loop
async def test_or_else_the_oldest_wait(speech, echo, tmp_path):
    reader = failing_reader(speech)
    assert reader.startSpeakingString("one", tmp_path / "speech.wav")
    with pytest.raises(KeyError, match="one"):
        await echo.raised("Heard")


@in_loop
async def test_or_else_the_loop_is_told(speech, tmp_path, way):
    told = []
    asyncio.get_running_loop().set_exception_handler(lambda loop, context: told.append(context["exception"]))
    reader = failing_reader(speech)
    assert reader.startSpeakingString("one", tmp_path / "speech.wav")
    async with zqm.events():
        while not told:
            await asyncio.sleep(0.01)
    assert isinstance(told[0], KeyError)


def test_an_interruption_in_a_handler_leaves_the_loop(speech, tmp_path):
    async def read():
        reader = speech.NSSpeechSynthesizerZQM()
        reader.on("willSpeakWord", interrupt)
        assert reader.startSpeakingString("one", tmp_path / "speech.wav")
        await asyncio.wait_for(reader.finished(), LIMIT)

    def interrupt(*_):
        raise KeyboardInterrupt

    with pytest.raises(KeyboardInterrupt):
        asyncio.run(read())


@in_loop
async def test_events_come_while_something_else_is_awaited(speech, tmp_path, way):
    ends = []
    reader = speech.NSSpeechSynthesizerZQM()
    reader.on("didFinishSpeaking", ends.append)
    assert reader.startSpeakingString("one", tmp_path / "speech.wav")
    async with zqm.events():
        while not ends:
            await asyncio.sleep(0.01)
    assert ends == [True]


@in_loop
async def test_nothing_is_watched_when_nobody_waits(echo):
    descriptor = _zqm.event_descriptor()
    loop = asyncio.get_running_loop()
    async with zqm.events():
        async with zqm.events():
            pass
        assert loop.remove_reader(descriptor) is True
        loop.add_reader(descriptor, print)
    assert loop.remove_reader(descriptor) is False


@in_loop
async def test_a_task_cancelled_in_mid_speech_leaves_the_speech_as_it_is(speech, tmp_path, way):
    reader = speech.NSSpeechSynthesizerZQM()
    assert reader.startSpeakingString("word " * 20000, tmp_path / "speech.wav")
    task = asyncio.ensure_future(reader.finished())
    await reader.raised("willSpeakWord")
    task.cancel()
    with pytest.raises(asyncio.CancelledError):
        await task
    assert reader.isSpeaking
    await reader.raised("willSpeakWord")
    reader.stopSpeaking()
    assert await reader.finished() is False
    assert not _waiting._delivery()._waiting


@in_loop
async def test_a_cancelled_task_that_held_the_object_ends_the_speech(speech, unread):
    ends = weakref.WeakSet()

    async def read():
        reader = speech.NSSpeechSynthesizerZQM()
        ends.add(reader)
        assert reader.startSpeakingString("word " * 20000, unread)
        await reader.finished()

    task = asyncio.ensure_future(read())
    await asyncio.sleep(0.05)
    assert len(ends) == 1
    task.cancel()
    await asyncio.wait([task])
    assert task.cancelled()
    del task
    gc.collect()
    assert len(ends) == 0


def test_loops_take_turns(speech, tmp_path):
    async def start():
        assert reader.startSpeakingString("one two three", tmp_path / "speech.wav")
        await reader.raised("willSpeakWord")

    reader = speech.NSSpeechSynthesizerZQM()
    first, second = asyncio.new_event_loop(), asyncio.new_event_loop()
    first.run_until_complete(asyncio.wait_for(start(), LIMIT))
    waiting = first.create_task(reader.finished())
    first.run_until_complete(asyncio.sleep(0))
    assert second.run_until_complete(asyncio.wait_for(reader.finished(), LIMIT)) is True
    assert first.run_until_complete(asyncio.wait_for(waiting, LIMIT)) is True
    first.close()
    second.close()


@pytest.mark.filterwarnings("ignore::pytest.PytestUnraisableExceptionWarning")
def test_a_loop_that_was_closed_under_its_tasks_disturbs_no_other(echo):
    closed = asyncio.new_event_loop()
    waiting = closed.create_task(echo.raised("Heard"))
    closed.run_until_complete(asyncio.sleep(0))
    closed.close()

    async def hear():
        asyncio.get_running_loop().call_later(0.01, echo.Tell, "news")
        return await echo.raised("Heard")

    assert asyncio.run(asyncio.wait_for(hear(), LIMIT)) == ("news",)
    waiting._log_destroy_pending = False
    echo.off("Heard")


def test_another_loop_does_as_well(speech, tmp_path):
    for number in range(2):

        async def read(number):
            reader = speech.NSSpeechSynthesizerZQM()
            assert reader.startSpeakingString("one", tmp_path / f"{number}.wav")
            assert await asyncio.wait_for(reader.finished(), LIMIT) is True

        asyncio.run(read(number))
