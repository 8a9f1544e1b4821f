"""Samples as the host programs write them: comma-separated values, behind them lines of what was done."""

from __future__ import annotations

from dataclasses import dataclass, field
from pathlib import Path

from soaking.measures import MEASURES
from soaking.problems import Problem

TIME = "seconds"
COLUMNS = (TIME, "episodes", *(measure.name for measure in MEASURES))


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
    done = {}
    for line in lines:
        if line.startswith("#"):
            name, count = line[1:].rsplit(":", 1)
            done[name.strip()] = int(count)
    columns: dict[str, list[float]] = {}
    try:
        for index, name in enumerate(COLUMNS):
            values = [row[index] for row in rows[1:]]
            if all(values):
                columns[name] = [float(value) for value in values]
    except (IndexError, ValueError):
        raise Problem(f"{path}: a line is not like its first one") from None
    return Samples(path.stem, columns, done)
