"""What recognizers hear."""

from __future__ import annotations

import os

from . import _zqm


def listen_to_file(path: str | os.PathLike[str] | None) -> None:
    """Has each start of a recognizer from now on hear a sound file, from its beginning; None: the microphone.

    At the file's end the recognizer hears nothing more. Raises what open() does for a file that can't be read.
    """
    if path is None:
        _zqm.listen_to_file(None)
        return
    if not isinstance(path, (str, os.PathLike)):
        raise TypeError(f"a sound file is named by a str or a path, not {path!r}")
    with open(path, "rb"):  # the recognizer would only log what is wrong with it
        _zqm.listen_to_file(os.fsencode(os.path.abspath(path)))
