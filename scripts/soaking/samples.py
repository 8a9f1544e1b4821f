"""Samples as the host programs write them: comma-separated values, behind them lines of what was done."""

from __future__ import annotations

import math
from dataclasses import dataclass, field
from pathlib import Path

from common.problems import Problem
from soaking.measures import MEASURES

TIME = "seconds"
COLUMNS = (TIME, "episodes", *(measure.name for measure in MEASURES))
# Where it isn't measured, in all samples: memory says nothing under a sanitizer.
MAY_BE_EMPTY = {measure.name for measure in MEASURES if measure.unit == "MiB"}


@dataclass
class Samples:
    """Of one host program."""

    name: str
    columns: dict[str, list[float]]  # those that were measured
    done: dict[str, int] = field(default_factory=dict)

    @property
    def seconds(self) -> list[float]:
        return self.columns[TIME]


def read_samples(path: Path) -> Samples:
    lines = path.read_text(encoding="utf-8").splitlines()
    rows = [line.split(",") for line in lines if not line.startswith("#")]
    if not rows or tuple(rows[0]) != COLUMNS:
        raise Problem(f"{path}: these are no samples")
    if any(len(row) != len(COLUMNS) for row in rows):
        raise unlike(path)
    columns = {}
    for name, *cells in zip(*rows):
        if any(cells) or name not in MAY_BE_EMPTY:
            columns[name] = [value_of(name, cell, path) for cell in cells]
    return Samples(path.stem, columns, done_of([line for line in lines if line.startswith("#")], path))


def value_of(name: str, cell: str, path: Path) -> float:
    if not cell:
        raise Problem(f"{path}: a sample has no {name}")
    try:
        value = float(cell)
    except ValueError:
        raise unlike(path) from None
    if not math.isfinite(value):
        raise unlike(path)
    return value


def done_of(lines: list[str], path: Path) -> dict[str, int]:
    done = {}
    for line in lines:
        name, _, count = line[1:].rpartition(":")
        if not count.strip().isdecimal():
            raise unlike(path)
        done[name.strip()] = int(count)
    return done


def unlike(path: Path) -> Problem:
    return Problem(f"{path}: a line is not like its first one")
