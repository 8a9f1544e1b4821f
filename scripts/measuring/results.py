"""What was measured, of all runs of programs, and whether that is all that there should be."""

from __future__ import annotations

from pathlib import Path

from common.problems import Problem
from measuring.rows import TABLES
from measuring.runs import Run, run_of
from measuring.times import Times, read_times

MOST_NAMES = 12  # of what is missing, in a message


def file_of(folder: Path, run: Run) -> Path:
    return folder / f"{run.name}.json"


def read_results(folder: Path, runs: tuple[Run, ...]) -> Times:
    times: Times = {}
    for run in runs:
        file = file_of(folder, run)
        if not file.exists():
            raise Problem(f"{file} is missing: {run.program}_benchmark was not measured yet")
        times |= read_times(file)
    return times


def listed(names: list[str]) -> str:
    more = len(names) - MOST_NAMES
    return ", ".join(names[:MOST_NAMES]) + (f" and {more} more" if more > 0 else "")


def check(times: Times, runs: tuple[Run, ...]) -> None:
    """That the benchmarks of these runs are all there without which some rows can't be filled."""
    missing = (
        name
        for table in TABLES
        for row in table.rows
        for name in row.needs
        if name not in times and run_of(table.program, name) in runs
    )
    names = list(dict.fromkeys(missing))
    if names:
        raise Problem(f"these were not measured: {listed(names)}")
