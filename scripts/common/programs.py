"""Runs programs beside each other, and says which of them failed."""

from __future__ import annotations

import os
import signal
import subprocess
import sys
import tempfile
import time
from dataclasses import dataclass, field
from pathlib import Path
from types import FrameType

from common.problems import words_of

SECONDS_TO_END = 60  # of those that are told to: some come to the end of what they are at
SECONDS_TO_LOOK = 0.2
MOST_LINES = 50  # of what one that failed had to say

interruptions: list[int] = []  # signals that are to end all


def note_interruption(number: int, frame: FrameType | None) -> None:
    """A handler of them. They are looked at where no program is about to be started, which would be left behind."""
    interruptions.append(number)


def heed_interruptions() -> None:
    for number in (signal.SIGINT, signal.SIGTERM, signal.SIGHUP):
        if signal.getsignal(number) != signal.SIG_IGN:  # as nohup has it
            signal.signal(number, note_interruption)


@dataclass(frozen=True)
class Program:
    name: str
    arguments: list[str]
    output: Path  # its standard output
    environment: dict[str, str] = field(default_factory=dict)  # beside this one's


@dataclass(frozen=True)
class Patience:
    """With programs, in seconds."""

    limit: float  # one that runs longer is ended
    until_told: float  # how long they run: between two words of that


@dataclass
class Running:
    program: Program
    process: subprocess.Popen[bytes]


def run(what: str, programs: list[Program], patience: Patience, problems: list[str]) -> None:
    """Adds to the problems what went wrong. An interruption ends the programs."""
    running: list[Running] = []
    with tempfile.TemporaryDirectory(prefix="zqm-run-", ignore_cleanup_errors=True) as folder:
        try:
            for program in programs:
                try:
                    running.append(start(program, folder))
                except OSError as error:
                    problems.append(f"{program.name} can't be started: {words_of(error)}")
            wait(what, running, patience)
            if not interruptions:
                problems += [f"{each.program.name} doesn't come to its end" for each in running if is_alive(each)]
        finally:
            ended = [each for each in running if not is_alive(each)]
            stop(running)
            problems += [failure_of(each) for each in running if failed(each, each in ended)]


def start(program: Program, folder: str) -> Running:
    """In a process group of its own, so that a Ctrl-C ends it only after this one has decided how."""
    program.output.parent.mkdir(parents=True, exist_ok=True)
    with program.output.open("wb") as output, program.output.with_suffix(".log").open("wb") as log:
        process = subprocess.Popen(
            program.arguments,
            stdin=subprocess.DEVNULL,
            stdout=output,
            stderr=log,
            env=os.environ | {"TMPDIR": folder} | program.environment,
            start_new_session=True,
        )
    return Running(program, process)


def wait(what: str, running: list[Running], patience: Patience) -> None:
    """Until all have ended, or they may run no longer; tells from time to time that they run."""
    begin = time.monotonic()
    tell_at = patience.until_told
    while any(map(is_alive, running)) and not interruptions:
        gone = time.monotonic() - begin
        if gone > patience.limit:
            return
        if gone >= tell_at:
            print(f"{what}: {gone / 60:.0f} minutes so far ...", file=sys.stderr, flush=True)
            tell_at += patience.until_told
        time.sleep(SECONDS_TO_LOOK)


def is_alive(running: Running) -> bool:
    """Nothing is reaped before stop(): until then nobody else has its number, or that of its group."""
    return os.waitid(os.P_PID, running.process.pid, os.WEXITED | os.WNOHANG | os.WNOWAIT) is None


def stop(running: list[Running]) -> None:
    """Each in its own time, unless that is long or there is another interruption; then what is left of their groups."""
    end = time.monotonic() + SECONDS_TO_END
    noted = len(interruptions)
    for each in running:
        if is_alive(each):
            each.process.terminate()
    while any(map(is_alive, running)) and len(interruptions) == noted and time.monotonic() < end:
        time.sleep(SECONDS_TO_LOOK)
    for each in running:
        os.killpg(each.process.pid, signal.SIGKILL)
        each.process.wait()


def failed(running: Running, by_itself: bool) -> bool:
    """One that was told to end may do so by that signal, or have been killed because it did not."""
    told = (0, -signal.SIGTERM, -signal.SIGKILL)
    return running.process.returncode not in ((0,) if by_itself else told)


def failure_of(running: Running) -> str:
    words = running.program.output.with_suffix(".log").read_text(encoding="utf-8", errors="replace").strip()
    last = "\n".join(words.splitlines()[-MOST_LINES:])
    return f"{running.program.name} failed ({running.process.returncode}):\n{last}"
