"""How each program is run."""

from __future__ import annotations

import re
from dataclasses import dataclass


@dataclass(frozen=True)
class Run:
    program: str  # without "_benchmark"
    least_seconds: float  # of each repetition, so that enough is measured in a time that can be waited for
    names: str = ""  # of the benchmarks: an expression; without, all that no other run of the program has
    is_slow: bool = False  # done once, for what takes so long varies little, and not where it is to be quick

    @property
    def name(self) -> str:
        return self.program + ("-slow" if self.is_slow else "")


RUNS = (
    Run("calls", 0.2),
    Run("loading", 0.2),
    Run("strings", 0.03),
    Run("collections", 0.05),
    Run("values", 0.1),
    Run("speech_files", 0.1),
    Run("speech_files", 0.1, "^file/.*/100000(/|$)", is_slow=True),
    Run("first_samples", 0.1),
    Run("events", 0.1),
    Run("voices", 0.1),
    Run("listening", 0.1),
)
PROGRAMS = tuple(dict.fromkeys(run.program for run in RUNS))


def run_of(program: str, benchmark: str) -> Run:
    """The one that measures it."""
    runs = [run for run in RUNS if run.program == program]
    named = [run for run in runs if run.names and re.search(run.names, benchmark)]
    return (named or [run for run in runs if not run.names])[0]


def filter_of(run: Run) -> str:
    """For Google Benchmark, which leaves out what comes after a "-"."""
    others = [other.names for other in RUNS if other.program == run.program and other.names]
    return run.names or ("-" + "|".join(others) if others else ".")
