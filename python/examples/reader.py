#!/usr/bin/python3
"""Reads a text aloud, or into a sound file, and prints each word as it is spoken.

    reader.py TEXT [FILE]
"""

import asyncio
import pathlib
import sys

import zqm

speech = zqm.load("libZQMNSSpeech")


class Reader(speech.NSSpeechSynthesizerZQM):
    def willSpeakWord(self, position, length, text):
        print(zqm.utf16_slice(text, position, length), flush=True)


async def read(text, *file):
    reader = Reader()
    if not reader.startSpeakingString(text, *file):
        sys.exit("reader.py: the speech could not be started")
    return await reader.finished()


if __name__ == "__main__":
    if len(sys.argv) not in (2, 3):
        sys.exit("usage: reader.py TEXT [FILE]")
    complete = asyncio.run(read(sys.argv[1], *map(pathlib.Path, sys.argv[2:])))
    sys.exit(0 if complete else 1)
