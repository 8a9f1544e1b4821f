"""What benchmarks took, as Google Benchmark writes it."""

from __future__ import annotations

import json
import re
from collections.abc import Callable
from dataclasses import dataclass, field
from pathlib import Path
from statistics import median
from typing import Any

from common.problems import Problem

NANOSECONDS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}
# Parts of a benchmark's name that tell how it is run: how often is no part of what it does, nor is the clock.
RUN_PARTS = re.compile(r"/(iterations|repeats|min_time|min_warmup_time|threads):[^/]*")
# What other processes do, and what a benchmark times itself, is no time of its processor's.
REAL_TIMES = re.compile(r"/(real_time|manual_time)$")
# What Google Benchmark tells of each repetition; the other numbers are the benchmark's own counters.
OWN_NUMBERS = {
    "family_index", "per_family_instance_index", "repetitions", "repetition_index", "threads", "iterations",
    "real_time", "cpu_time",
}  # fmt: skip


@dataclass(frozen=True)
class Measured:
    """Of one benchmark, the medians of its repetitions."""

    nanoseconds: float
    counters: dict[str, float] = field(default_factory=dict)


Times = dict[str, Measured]  # by the name of the benchmark


def name_and_clock_of(entry: dict[str, Any]) -> tuple[str, str]:
    name, real_times = REAL_TIMES.subn("", RUN_PARTS.sub("", str(entry["run_name"])))
    return name, "real_time" if real_times > 0 else "cpu_time"


def nanoseconds_of(entry: dict[str, Any]) -> float:
    _, clock = name_and_clock_of(entry)
    return float(entry[clock]) * NANOSECONDS[entry["time_unit"]]


def counters_of(entry: dict[str, Any]) -> dict[str, float]:
    return {
        name: float(value)
        for name, value in entry.items()
        if name not in OWN_NUMBERS and isinstance(value, (int, float)) and not isinstance(value, bool)
    }


def read_times(file: Path) -> Times:
    try:
        entries = json.loads(file.read_text(encoding="utf-8"))["benchmarks"]
        return times_of([entry for entry in entries if entry["run_type"] == "iteration"])
    except Problem as problem:
        raise Problem(f"{file}: {problem}") from None
    except (ValueError, KeyError, TypeError):
        raise Problem(f"{file}: this is not what Google Benchmark writes") from None


def times_of(entries: list[dict[str, Any]]) -> Times:
    repetitions: dict[str, list[dict[str, Any]]] = {}
    for entry in entries:
        name, _ = name_and_clock_of(entry)
        if entry.get("error_occurred"):
            raise Problem(f"{name} failed: {entry.get('error_message', 'it does not say why')}")
        repetitions.setdefault(name, []).append(entry)
    return {name: measured_of(name, entries) for name, entries in repetitions.items()}


def measured_of(name: str, entries: list[dict[str, Any]]) -> Measured:
    def median_of(values: Callable[[dict[str, Any]], float]) -> float:
        return median(map(values, entries))

    if len({entry["run_name"] for entry in entries}) > 1:
        raise Problem(f"{name} is there in more than one way")
    nanoseconds = median_of(nanoseconds_of)
    if not 0 < nanoseconds < float("inf"):
        raise Problem(f"{name} took no time that can be compared: {nanoseconds} ns")
    counters = [counters_of(entry) for entry in entries]
    if any(each.keys() != counters[0].keys() for each in counters):
        raise Problem(f"{name} has other counters in one repetition than in another")
    return Measured(nanoseconds, {key: median(each[key] for each in counters) for key in counters[0]})
