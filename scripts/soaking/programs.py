"""Runs programs beside each other, and says which of them failed."""

from __future__ import annotations

import os
import subprocess
import time
from dataclasses import dataclass, field
from pathlib import Path

SECONDS_TO_END = 5  # of one that is told to
MOST_LINES = 50  # of what one that failed had to say


@dataclass(frozen=True)
class Program:
    name: str
    arguments: list[str]
    output: Path  # its standard output
    environment: dict[str, str] = field(default_factory=dict)  # beside this one's


def run(programs: list[Program], seconds: float | None = None) -> list[str]:
    """What went wrong; a program that runs longer than the seconds is ended."""
    running = []
    problems = []
    end = None if seconds is None else time.monotonic() + seconds
    try:
        for program in programs:
            program.output.parent.mkdir(parents=True, exist_ok=True)
            with program.output.open("wb") as output, program.output.with_suffix(".log").open("wb") as log:
                process = subprocess.Popen(
                    program.arguments,
                    stdin=subprocess.DEVNULL,
                    stdout=output,
                    stderr=log,
                    env=os.environ | program.environment,
                )
            running.append((program, process))
        for program, process in running:
            try:
                code = process.wait(None if end is None else max(0.0, end - time.monotonic()))
            except subprocess.TimeoutExpired:
                problems.append(f"{program.name} doesn't come to its end")
                continue
            if code != 0:
                words = program.output.with_suffix(".log").read_text(encoding="utf-8", errors="replace").strip()
                last = "\n".join(words.splitlines()[-MOST_LINES:])
                problems.append(f"{program.name} failed ({code}):\n{last}")
    finally:
        for _, process in running:
            stop(process)
    return problems


def stop(process: subprocess.Popen[bytes]) -> None:
    if process.poll() is None:
        process.terminate()
        try:
            process.wait(SECONDS_TO_END)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
