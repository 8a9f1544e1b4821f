"""What was measured, of all runs of programs, and whether that is all that there should be."""

from __future__ import annotations

from pathlib import Path

from common.problems import Problem
from measuring.rows import TABLES, Row, Table
from measuring.runs import Run, run_of
from measuring.times import Times, read_times

MOST_NAMES = 12  # of what is missing, in a message


def file_of(folder: Path, run: Run) -> Path:
    return folder / f"{run.name}.json"


def read_results(folder: Path, runs: tuple[Run, ...]) -> Times:
    """Of these runs. Each has to be there, but a long one."""
    times: Times = {}
    for run in runs:
        file = file_of(folder, run)
        if file.exists():
            times |= read_times(file)
        elif not run.is_long:
            raise Problem(f"{file} is missing: {run.program}_benchmark was not measured yet")
    return times


def listed(names: list[str]) -> str:
    more = len(names) - MOST_NAMES
    return ", ".join(names[:MOST_NAMES]) + (f" and {more} more" if more > 0 else "")


def missing(tables: tuple[Table, ...], times: Times, done: tuple[Run, ...]) -> list[str]:
    """The benchmarks of these runs without which there are rows that can't be filled."""
    names = (
        name
        for table in tables
        for row in table.rows
        for name in row.needs
        if name not in times and run_of(table.program, name) in done
    )
    return list(dict.fromkeys(names))


def check(times: Times, done: tuple[Run, ...]) -> None:
    names = missing(TABLES, times, done)
    if names:
        raise Problem(f"these were not measured: {listed(names)}")


def unmeasured(times: Times) -> tuple[Row, ...]:
    return tuple(row for table in TABLES for row in table.rows if any(name not in times for name in row.needs))
