"""Counts beside those that are recorded."""

from __future__ import annotations

MOST_PERCENT = 5  # by which a count may change


def is_changed(recorded: int, counted: int) -> bool:
    return abs(counted - recorded) * 100 > MOST_PERCENT * recorded


def problems_of(record: dict[str, int], counts: dict[str, int]) -> list[str]:
    problems = []
    for path, counted in counts.items():
        recorded = record.get(path)
        if recorded is None:
            problems.append(f"{path} is not recorded")
        elif is_changed(recorded, counted):
            problems.append(f"{path} takes {counted} instructions and is recorded with {recorded}")
    problems += [f"{path} is recorded, but is no path" for path in record if path not in counts]
    return problems


def table_of(record: dict[str, int], counts: dict[str, int]) -> str:
    """For people, in lines."""
    rows = [("path", "recorded", "counted", "change in %")]
    for path, counted in counts.items():
        recorded = record.get(path)
        if recorded is None:
            rows.append((path, "", str(counted), ""))
        else:
            rows.append((path, str(recorded), str(counted), f"{(counted - recorded) * 100 / recorded:+.1f}"))
    widths = [max(map(len, column)) for column in zip(*rows)]
    lines = []
    for first, *rest in rows:
        cells = [first.ljust(widths[0])] + [cell.rjust(width) for cell, width in zip(rest, widths[1:])]
        lines.append("  ".join(cells).rstrip())
    return "\n".join(lines)
