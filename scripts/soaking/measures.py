"""What a soak measures, and when that has grown."""

from __future__ import annotations

from dataclasses import dataclass

KIB = 1024
MIB = 1024 * KIB


@dataclass(frozen=True)
class Measure:
    """A column of the samples."""

    name: str
    # By so much the mean of the last quarter may be above that of the first: caches that fill once.
    tolerance: float
    unit: str = ""  # "MiB": it counts bytes
    panel: str = ""  # of the plot: measures of one order of magnitude share one


# Memory that is freed may stay with a process, more of it the more its sizes vary; its heap tells what is held. Counts
# may be higher in one sample or another, as an engine closes a file a moment after it told of its end.
MEASURES = (
    Measure("host heap", 256 * KIB, "MiB", "heap of the host program"),
    Measure("host resident", 1 * MIB, "MiB", "resident memory of the host program"),
    Measure("speaking engine resident", 512 * KIB, "MiB", "resident memory of engines that last"),
    Measure("listening engine resident", 512 * KIB, "MiB", "resident memory of engines that last"),
    Measure("host descriptors", 0.9, panel="descriptors"),
    Measure("engine descriptors", 0.9, panel="descriptors"),
    Measure("processes", 0.9, panel="processes"),
    Measure("ledger handles", 0.9, panel="handles and locks of the host's ledger"),
    Measure("ledger locks", 0.9, panel="handles and locks of the host's ledger"),
)
