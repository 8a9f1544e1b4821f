"""The kinds of figures that tables have, each made of what benchmarks took."""

from __future__ import annotations

import math
from abc import ABC, abstractmethod
from dataclasses import dataclass

from common.problems import Problem
from measuring.times import Measured, Times

MOST_DECIMALS = 9
SECOND = 1e9  # nanoseconds
MILLISECOND = 1e6
DURATIONS = ((SECOND, "s"), (MILLISECOND, "ms"), (1e3, "µs"), (1.0, "ns"))
SIZES = ((1024.0**3, "GiB"), (1024.0**2, "MiB"), (1024.0, "KiB"))


def decimals_of(value: float) -> int:
    """Three digits tell enough, and of what is less than a tenth two."""
    if 0 < abs(value) < 0.1:
        return min(1 - math.floor(math.log10(abs(value))), MOST_DECIMALS)
    return 2 if abs(value) < 10 else 1 if abs(value) < 100 else 0


def shown_number(value: float, more: int = 0) -> str:
    """With so many more digits than is usual."""
    return f"{value:,.{decimals_of(value) + more}f}"


def shown_duration(nanoseconds: float, more: int = 0) -> str:
    scale, unit = next(((scale, unit) for scale, unit in DURATIONS if abs(nanoseconds) >= scale), DURATIONS[-1])
    return f"{shown_number(nanoseconds / scale, more)} {unit}"


def shown_size(size: float) -> str:
    scale, unit = next(((scale, unit) for scale, unit in SIZES if abs(size) >= scale), (1.0, "bytes"))
    return f"{size:,.0f} bytes" if unit == "bytes" else f"{shown_number(size / scale)} {unit}"


@dataclass(frozen=True)
class Figure(ABC):
    of: str  # a benchmark

    @property
    def needs(self) -> tuple[str, ...]:
        """The benchmarks that it is made of."""
        return (self.of,)

    @abstractmethod
    def value(self, times: Times) -> float:
        pass

    @abstractmethod
    def shown(self, value: float, more: int = 0) -> str:
        """With so many more digits than is usual."""

    def shown_limit(self, most: float) -> str:
        return f"≤ {self.shown(most)}"


@dataclass(frozen=True)
class Ratio(Figure):
    """How many times as long one takes as another."""

    to: str

    @property
    def needs(self) -> tuple[str, ...]:
        return self.of, self.to

    def value(self, times: Times) -> float:
        return times[self.of].nanoseconds / times[self.to].nanoseconds

    def shown(self, value: float, more: int = 0) -> str:
        return shown_number(value, more)


@dataclass(frozen=True)
class Difference(Figure):
    """How much longer one takes than another."""

    to: str

    @property
    def needs(self) -> tuple[str, ...]:
        return self.of, self.to

    def value(self, times: Times) -> float:
        return times[self.of].nanoseconds - times[self.to].nanoseconds

    def shown(self, value: float, more: int = 0) -> str:
        return shown_duration(value, more)


@dataclass(frozen=True)
class Duration(Figure):
    def value(self, times: Times) -> float:
        return times[self.of].nanoseconds

    def shown(self, value: float, more: int = 0) -> str:
        return shown_duration(value, more)


@dataclass(frozen=True)
class Growth(Figure):
    """How many times as long each element takes of many as of few: 1 where all is linear. Its name has no size."""

    few: int
    many: int

    @property
    def needs(self) -> tuple[str, ...]:
        return f"{self.of}/{self.few}", f"{self.of}/{self.many}"

    def value(self, times: Times) -> float:
        few, many = (times[name].nanoseconds for name in self.needs)
        return (many / self.many) / (few / self.few)

    def shown(self, value: float, more: int = 0) -> str:
        return shown_number(value, more)


def counter_of(name: str, measured: Measured, counter: str) -> float:
    if counter not in measured.counters:
        raise Problem(f"{name} has no counter {counter}")
    return measured.counters[counter]


@dataclass(frozen=True)
class Count(Figure):
    """What the benchmark counted itself."""

    counter: str

    def value(self, times: Times) -> float:
        return counter_of(self.of, times[self.of], self.counter)

    def shown(self, value: float, more: int = 0) -> str:
        return f"{value:,.{(0 if value == int(value) else 2) + more}f}"


@dataclass(frozen=True)
class Size(Count):
    """The same in bytes."""

    def shown(self, value: float, more: int = 0) -> str:
        return shown_size(value)


@dataclass(frozen=True)
class Rate(Figure):
    """So many of those in a second."""

    counter: str

    def value(self, times: Times) -> float:
        measured = times[self.of]
        return counter_of(self.of, measured, self.counter) / measured.nanoseconds * SECOND

    def shown(self, value: float, more: int = 0) -> str:
        return f"{value:,.{more}f} a second"
