"""Tables as Markdown, and which targets they meet."""

from __future__ import annotations

from dataclasses import dataclass

from measuring.figures import Figure, shown_duration
from measuring.rows import Row, Table
from measuring.times import Times

MOST_MORE = 6  # digits than is usual


@dataclass(frozen=True)
class Judged:
    """A row with a target, and how far it is from it."""

    table: Table
    row: Row
    value: float
    is_met: bool

    @property
    def words(self) -> str:
        figure, most = self.row.figures[0], self.row.most
        assert most is not None
        reached = shown(figure, self.value, most)
        column = self.table.columns[0]
        return f"{self.table.subject}: {self.row.what}: {reached} {column}, aimed at {figure.shown_limit(most)}"


def is_measured(row: Row, times: Times) -> bool:
    return all(name in times for name in row.needs)


def is_met(value: float, most: float) -> bool:
    return value <= most


def judged(tables: tuple[Table, ...], times: Times) -> list[Judged]:
    rows = []
    for table in tables:
        for row in table.rows:
            if row.most is not None and is_measured(row, times):
                value = row.figures[0].value(times)
                rows.append(Judged(table, row, value, is_met(value, row.most)))
    return rows


def shown(figure: Figure, value: float, most: float | None) -> str:
    """What misses a limit by little must not look like it."""
    more = 0
    if most is not None and not is_met(value, most):
        while more < MOST_MORE and figure.shown(value, more) == figure.shown(most, more):
            more += 1
    return figure.shown(value, more)


def cells_of(row: Row, table: Table, times: Times) -> list[str]:
    shown_times = ", ".join(f"{words} {shown_duration(times[name].nanoseconds)}" for words, name in row.times)
    values = [figure.value(times) for figure in row.figures]
    figures = [
        shown(figure, value, row.most if place == 0 else None)
        for place, (figure, value) in enumerate(zip(row.figures, values))
    ]
    figures += [""] * (len(table.columns) - len(figures))
    if row.most is None:
        return [row.what, *figures, "", "", shown_times]
    verdict = "met" if is_met(values[0], row.most) else "**missed**"
    return [row.what, *figures, row.figures[0].shown_limit(row.most), verdict, shown_times]


def lines_of(cells: list[list[str]]) -> list[str]:
    return ["| " + " | ".join(row) + " |" for row in cells]


def table_of(table: Table, times: Times) -> str:
    """Of the rows that were measured."""
    head = ["", *table.columns, "target", "", "times"]
    rows = [cells_of(row, table, times) for row in table.rows if is_measured(row, times)]
    # Columns that say nothing, as where no row has a target, are left out.
    kept = [place for place in range(len(head)) if place == 0 or any(row[place] for row in rows)]
    if "target" in [head[place] for place in kept]:
        kept = sorted({*kept, head.index("target") + 1})
    chosen = [[row[place] for place in kept] for row in [head, *rows]]
    return "\n".join(lines_of([chosen[0], ["---"] * len(kept), *chosen[1:]]))


def summary_of(rows: list[Judged]) -> str:
    missed = [each for each in rows if not each.is_met]
    met = f"{len(rows) - len(missed)} of {len(rows)} targets are met"
    if not missed:
        return f"{met}."
    return "\n".join([f"{met}. Missed are:", "", *(f"- {each.words}" for each in missed)])
