"""The run loop without asyncio."""

from __future__ import annotations

import inspect
import math
import numbers
import time
from collections.abc import Callable

from . import _zqm

# What the predicate looks at may be changed by another thread, of which no event tells.
_LONGEST_WAIT = 0.1  # seconds


def run(until: Callable[[], object] | None = None, timeout: float | None = None) -> bool:
    """Runs the run loop, where events come from, until the predicate is true or the time is over.

    Without a predicate it runs for that time, without a time for ever. The predicate is asked between events;
    whether it has become true is the answer. What a handler raises leaves this call, as does Ctrl-C. Other
    threads run while it waits.
    """
    _zqm.enter()
    if inspect.iscoroutine(until) or inspect.iscoroutinefunction(until):
        raise TypeError("what to wait until is a coroutine, which asyncio.run runs")
    if until is not None and not callable(until):
        raise TypeError(
            f"what to wait until is {until!r}, which can't be called; zqm.run(timeout=...) runs for so many seconds"
        )
    end = None if timeout is None else time.monotonic() + _seconds(timeout)
    while until is None or not until():
        delivered = _zqm.deliver()
        left = _LONGEST_WAIT if end is None else end - time.monotonic()
        if left <= 0:
            return until is not None and bool(until())
        if not delivered:
            _zqm.wait_for_events(min(left, _LONGEST_WAIT))
    return True


def _seconds(timeout: object) -> float:
    if not isinstance(timeout, numbers.Real):
        raise TypeError(f"the timeout is a number of seconds, not {timeout!r}")
    seconds = float(timeout)
    if math.isnan(seconds):
        raise ValueError("the timeout is not a number")
    return seconds
