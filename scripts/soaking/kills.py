"""The tables of the programs that kill engines, as one."""

from __future__ import annotations

from pathlib import Path

from common.problems import Problem


def sum_of(files: list[Path]) -> list[list[str]]:
    head: list[str] = []
    counts: dict[str, list[float]] = {}
    for file in files:
        rows = [line.split("\t") for line in file.read_text(encoding="utf-8").splitlines()]
        if not rows:  # of one that failed before it killed any
            continue
        head = rows[0]
        for name, *values in rows[1:]:
            sums = counts.setdefault(name, [0.0] * len(values))
            try:
                counts[name] = [one + float(value) for one, value in zip(sums, values, strict=True)]
            except ValueError:
                raise Problem(f"{file}: a line is not like its first one") from None
    if not counts:
        raise Problem("no engine was killed")
    total = [sum(column) for column in zip(*counts.values())]
    return [head, *([name, *map(number, values)] for name, values in [*counts.items(), ("all", total)])]


def number(value: float) -> str:
    return f"{value:.0f}"


def table_of(rows: list[list[str]]) -> str:
    widths = [max(len(row[column]) for row in rows) for column in range(len(rows[0]))]
    return "\n".join(
        "  ".join([row[0].ljust(widths[0]), *(cell.rjust(width) for cell, width in zip(row[1:], widths[1:]))])
        for row in rows
    )
