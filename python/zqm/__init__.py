"""Speech and other services of plugins, as Python classes.

    import asyncio, zqm

    speech = zqm.load("libZQMNSSpeech")

    class Reader(speech.NSSpeechSynthesizerZQM):
        def willSpeakWord(self, position, length, text):
            print(text[position : position + length])

    async def main():
        reader = Reader()
        reader.startSpeakingString("Hello, world")
        await reader.finished()

    asyncio.run(main())
"""

import atexit as _atexit
import os as _os

from . import _zqm
from ._errors import (
    CallError,
    Error,
    HostException,
    IllegalCastException,
    KeyNotFoundException,
    LoadError,
    NilObjectException,
    OutOfBoundsException,
    OutOfMemoryException,
    RuntimeException,
    ThreadError,
    TypeMismatchException,
    UnsupportedFormatException,
    UnsupportedOperationException,
)
from ._library import Library, load
from ._listening import listen_to_file
from ._objects import ByRef, Object
from ._running import run
from ._utf16 import utf16_slice
from ._waiting import events
from ._zqm import reports

__all__ = [
    "ByRef",
    "CallError",
    "Error",
    "HostException",
    "IllegalCastException",
    "KeyNotFoundException",
    "Library",
    "LoadError",
    "NilObjectException",
    "Object",
    "OutOfBoundsException",
    "OutOfMemoryException",
    "RuntimeException",
    "ThreadError",
    "TypeMismatchException",
    "UnsupportedFormatException",
    "UnsupportedOperationException",
    "events",
    "listen_to_file",
    "load",
    "reports",
    "run",
    "utf16_slice",
]

# Handlers, and what host objects run as they end, need the interpreter.
_atexit.register(_zqm.end_runtime)
# Objects of before a fork are the parent's alone.
_os.register_at_fork(after_in_child=_zqm.after_fork)
