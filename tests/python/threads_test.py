"""The host has one thread; Python's objects go where they like."""

import asyncio
import gc
import threading

import pytest

import zqm


def in_thread(work):
    """Runs the work on a thread of its own and answers what it answered or raised."""
    results = []

    def run():
        try:
            results.append(work())
        except BaseException as error:
            results.append(error)

    thread = threading.Thread(target=run)
    thread.start()
    thread.join()
    return results.pop()


@pytest.mark.parametrize(
    "call",
    [
        lambda widget: widget.Add(1),
        lambda widget: widget.Count,
        lambda widget: setattr(widget, "Count", 3),
        lambda widget: type(widget)(),
        lambda widget: widget.Make("title"),
        lambda widget: widget.on("pinged", print),
        lambda widget: widget.off("pinged"),
        lambda widget: zqm.run(timeout=0),
        lambda widget: zqm.run(lambda: True),
        lambda widget: zqm.reports(),
        lambda widget: zqm.listen_to_file(None),
        lambda widget: zqm.load("libZQMFoundation"),
        lambda widget: asyncio.run(widget.raised("pinged")),
    ],
)
def test_calls_on_another_thread_are_told(widgets, call):
    widget = widgets.Widget()
    error = in_thread(lambda: call(widget))
    assert isinstance(error, zqm.ThreadError)
    assert "main thread" in str(error)


def test_a_refused_callback_is_not_called_later(echo):
    heard = []
    echo.on("Heard", heard.append)
    in_thread(lambda: echo.on("Heard", lambda what: heard.append("wrong")))
    in_thread(lambda: asyncio.run(echo.raised("Heard")))
    echo.Tell(1)
    assert heard == [1]
    assert [len(state.observers) for state in echo._events.values()] == [1, 0]  # that of finished()


def test_an_end_is_awaited_on_the_main_thread_alone(speech, tmp_path):
    speaker = speech.NSSpeechSynthesizerZQM()
    assert speaker.startSpeakingString("one", tmp_path / "speech.wav")
    assert isinstance(in_thread(lambda: asyncio.run(speaker.finished())), zqm.ThreadError)
    assert asyncio.run(speaker.finished()) is True
    assert isinstance(in_thread(lambda: asyncio.run(speaker.finished())), zqm.ThreadError)


def test_other_threads_hand_over_what_the_main_thread_shall_speak(speech, tmp_path):
    async def main():
        loop = asyncio.get_running_loop()
        speaker = speech.NSSpeechSynthesizerZQM()
        texts = asyncio.Queue()
        thread = threading.Thread(target=loop.call_soon_threadsafe, args=(texts.put_nowait, "one"))
        thread.start()
        assert speaker.startSpeakingString(await texts.get(), tmp_path / "speech.wav")
        assert await speaker.finished() is True
        thread.join()

    asyncio.run(asyncio.wait_for(main(), 60))


def test_what_another_thread_drops_ends_on_the_main_thread(widgets):
    class Listener(widgets.Widget):
        pass

    ended = widgets.Widget.Destroyed()
    holder = [Listener(), Listener()]
    in_thread(holder.clear)
    assert widgets.Widget.Destroyed() == ended + 2


def test_so_does_what_the_garbage_collector_finds_there(widgets):
    ended = widgets.Widget.Destroyed()
    widget = widgets.Widget()
    widget.itself = widget
    del widget
    in_thread(gc.collect)
    assert widgets.Widget.Destroyed() == ended + 1


def test_many_are_dropped_at_once(widgets):
    ended = widgets.Widget.Destroyed()
    holders = [[widgets.Widget() for _ in range(200)] for _ in range(8)]
    threads = [threading.Thread(target=holder.clear) for holder in holders]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert widgets.Widget.Destroyed() == ended + 1600


def test_an_object_dropped_elsewhere_stays_itself_for_its_keeper(echoes):
    keeper = echoes.Echo()
    holder = [echoes.Echo()]
    holder[0].Number = 5
    keeper.Keep(holder[0])
    in_thread(holder.clear)
    assert keeper.Kept().Number == 5
    assert keeper.Kept() is not None
