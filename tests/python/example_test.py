"""The example does what it says."""

import pathlib
import subprocess
import sys
import wave

EXAMPLE = pathlib.Path(__file__).parents[2] / "python/examples/reader.py"


def run(*arguments):
    return subprocess.run(
        [sys.executable, str(EXAMPLE), *map(str, arguments)], capture_output=True, text=True, timeout=120
    )


def test_it_prints_the_words_it_speaks(tmp_path):
    file = tmp_path / "speech.wav"
    done = run("Two 🎈 balloons", file)
    assert (done.stdout.split()[0], done.stdout.split()[-1]) == ("Two", "balloons")
    assert (done.stderr, done.returncode) == ("", 0)
    with wave.open(str(file)) as sound:
        assert sound.getnframes() / sound.getframerate() > 0.4


def test_it_tells_when_it_can_not_speak(tmp_path):
    done = run("Hello", tmp_path / "no such folder" / "speech.wav")
    assert done.returncode == 1
    assert done.stderr.splitlines()[-1] == "reader.py: the speech could not be started"


def test_it_tells_how_it_is_called():
    done = run()
    assert (done.stderr, done.returncode) == ("usage: reader.py TEXT [FILE]\n", 1)
