"""Interpreters end in peace, whatever is still going on."""

import signal
import subprocess
import sys
import wave

import pytest

PRELUDE = """
import asyncio, os, signal, sys, threading, zqm
speech = zqm.load("libZQMNSSpeech")
widgets = zqm.load(os.environ["ZQM_TEST_PLUGINS"] + "/widget_plugin.so")
url = "file://" + sys.argv[1]
"""


def run(program, tmp_path, **options):
    file = str(tmp_path / "speech.wav")
    return subprocess.run(
        [sys.executable, "-c", PRELUDE + program, file], capture_output=True, text=True, timeout=120, **options
    )


@pytest.mark.parametrize(
    "program",
    [
        "",
        "widget = widgets.Widget(); widget.itself = widget",
        "widget = widgets.Widget(); widget.on('Ending', lambda: print('ending'))",
        "speaker = speech.NSSpeechSynthesizerZQM(); speaker.startSpeakingString('word ' * 5000, url)",
        "import sys; sys.holder = speech.NSSpeechSynthesizerZQM()",
        """
class Speaker(speech.NSSpeechSynthesizerZQM):
    def willSpeakWord(self, *word):
        sys.exit()
speaker = Speaker()
speaker.startSpeakingString('one two', url)
zqm.run()
""",
        """
async def main():
    speaker = speech.NSSpeechSynthesizerZQM()
    speaker.startSpeakingString('word ' * 5000, url)
    asyncio.ensure_future(speaker.finished())
    await asyncio.sleep(0)
asyncio.run(main())
""",
        """
holder = [widgets.Widget()]
def wait_for_the_end():
    threading.main_thread().join()
    holder.clear()
threading.Thread(target=wait_for_the_end).start()
""",
        """
import atexit
atexit.register(lambda: print(widget.Count))  # runs before the end of the host
widget = widgets.Widget()
assert widget.Count == 1
""",
        """
child = os.fork()
if child == 0:
    sys.exit()
assert os.waitpid(child, 0)[1] == 0
""",
    ],
)
def test_the_end_is_quiet(program, tmp_path):
    done = run(program, tmp_path)
    assert done.stderr == ""
    assert done.returncode == 0


def test_an_object_that_outlives_the_host_says_so(tmp_path):
    program = """
import atexit

@atexit.register
def call_late():  # after what zqm has registered
    try:
        widget.Add(1)
    except zqm.CallError as error:
        print(error)
""" + PRELUDE
    done = subprocess.run(
        [sys.executable, "-c", program + "widget = widgets.Widget()", str(tmp_path / "a.wav")],
        capture_output=True,
        text=True,
        timeout=120,
    )
    assert (done.stdout, done.stderr) == ("the runtime of this value has ended\n", "")
    assert done.returncode == 0


def test_an_interrupted_run_ends_as_python_programs_do(tmp_path):
    program = [sys.executable, "-c", PRELUDE + "print('ready', flush=True); zqm.run()", str(tmp_path / "a.wav")]
    process = subprocess.Popen(program, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
    assert process.stdout.readline() == "ready\n"
    process.send_signal(signal.SIGINT)
    _, errors = process.communicate(timeout=120)
    assert errors.splitlines()[-1] == "KeyboardInterrupt"
    assert process.returncode == -signal.SIGINT


def test_an_interrupted_loop_ends_as_python_programs_do(tmp_path):
    program = PRELUDE + """
async def main():
    widget = widgets.Widget()
    print("ready", flush=True)
    await widget.raised("pinged")
asyncio.run(main())
"""
    process = subprocess.Popen(
        [sys.executable, "-c", program, str(tmp_path / "a.wav")],
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
        text=True,
    )
    assert process.stdout.readline() == "ready\n"
    process.send_signal(signal.SIGINT)
    _, errors = process.communicate(timeout=120)
    assert errors.splitlines()[-1] == "KeyboardInterrupt"
    assert process.returncode == -signal.SIGINT


@pytest.mark.parametrize("way", ["zqm.run()", "asyncio.run(finished())"])
def test_speech_goes_on_after_an_interruption_until_it_is_stopped(tmp_path, way):
    program = PRELUDE + """
async def finished():
    await speaker.finished()

def tell(*word):
    words.append(word)
    if len(words) == 1:
        os.kill(os.getpid(), signal.SIGINT)

words = []
speaker = speech.NSSpeechSynthesizerZQM()
speaker.on("willSpeakWord", tell)
assert speaker.startSpeakingString("word " * 100000, url)  # a file that takes a while
try:
    WAY
except KeyboardInterrupt:
    print("interrupted", speaker.isSpeaking)
heard = len(words)
assert zqm.run(lambda: len(words) > heard, 100)
speaker.stopSpeaking()
print(asyncio.run(speaker.finished()))
"""
    file = tmp_path / "speech.wav"
    done = subprocess.run(
        [sys.executable, "-c", program.replace("WAY", way), str(file)], capture_output=True, text=True, timeout=120
    )
    assert (done.stdout, done.stderr, done.returncode) == ("interrupted True\nFalse\n", "", 0)
    with wave.open(str(file)) as sound:
        assert sound.getnframes() > 0


def test_a_module_that_other_threads_import_first_works(tmp_path):
    program = """
import threading
thread = threading.Thread(target=__import__, args=("zqm",))
thread.start()
thread.join()
import zqm
print(zqm.load("libZQMNSSpeech").NSSpeechSynthesizerZQM().Rate > 0)
"""
    done = subprocess.run([sys.executable, "-c", program], capture_output=True, text=True, timeout=120)
    assert (done.stdout, done.stderr, done.returncode) == ("True\n", "", 0)
