"""Whether what is measured grows: the first quarter of the samples against the last."""

from __future__ import annotations

from dataclasses import dataclass
from statistics import fmean, linear_regression

from common.problems import Problem
from soaking.measures import MEASURES, MIB, Measure
from soaking.samples import Samples

LEAST_SAMPLES = 8
SECONDS_OF_HOUR = 3600


@dataclass(frozen=True)
class Verdict:
    measure: Measure
    first: float  # mean of the first quarter
    last: float  # and of the last one
    slope: float  # an hour
    grows: bool


def verdict_of(measure: Measure, seconds: list[float], values: list[float]) -> Verdict:
    quarter = len(values) // 4
    first, last = fmean(values[:quarter]), fmean(values[-quarter:])
    slope = linear_regression(seconds, values).slope * SECONDS_OF_HOUR
    return Verdict(measure, first, last, slope, last - first > measure.tolerance)


def verdicts_of(samples: Samples) -> list[Verdict]:
    count = len(samples.seconds)
    if count < LEAST_SAMPLES:
        raise Problem(f"{samples.name}: {count} samples are too few, {LEAST_SAMPLES} are needed")
    return [
        verdict_of(measure, samples.seconds, samples.columns[measure.name])
        for measure in MEASURES
        if measure.name in samples.columns
    ]


def shown(value: float, measure: Measure) -> str:
    return f"{value / MIB:.2f} MiB" if measure.unit == "MiB" else f"{value:.2f}"


def row_of(measure: Measure, verdict: Verdict | None) -> tuple[str, ...]:
    allowed = shown(measure.tolerance, measure)
    if verdict is None:
        return measure.name, "", "", "", allowed, "not measured"
    values = [shown(value, measure) for value in (verdict.first, verdict.last, verdict.slope)]
    return measure.name, *values, allowed, "GROWS" if verdict.grows else "flat"


def table_of(verdicts: list[Verdict]) -> str:
    """For people, in lines."""
    rows: list[tuple[str, ...]] = [("", "first quarter", "last quarter", "slope per hour", "may grow by", "verdict")]
    measured = {each.measure: each for each in verdicts}
    rows += [row_of(measure, measured.get(measure)) for measure in MEASURES]
    widths = [max(len(row[column]) for row in rows) for column in range(len(rows[0]))]
    lines = []
    for row in rows:
        cells = [row[0].ljust(widths[0])] + [cell.rjust(width) for cell, width in zip(row[1:], widths[1:])]
        lines.append("  ".join(cells).rstrip())
    return "\n".join(lines)
