"""The method finished() of classes that tell the end of what they were told to start.

These have an event "didFinishDoing" with one argument, and methods "startDoing..." that answer whether something
was started; each such start is followed by that event once.
"""

from __future__ import annotations

import functools
from collections.abc import Callable
from typing import Any

from . import _zqm
from ._errors import CallError
from ._objects import Object, add_observer, check_alive
from ._waiting import wait_for_event

_EVENT_PREFIX = "didFinish"


class _Starts:
    """What one object has started, and how much of it has ended."""

    def __init__(self) -> None:
        self.started = 0
        self.ended = 0
        self.result: Any = None

    def end(self, arguments: tuple[Any, ...]) -> None:
        self.ended += 1
        (self.result,) = arguments


def add_finished(description: _zqm.ClassDescription, members: dict[str, Any]) -> None:
    """Adds the method to the members of a new class, if it is one of these."""
    for event in description.events:
        activity = event.name.removeprefix(_EVENT_PREFIX)
        if activity == event.name or len(event.parameters) != 1 or "finished" in members:
            continue
        starts = _starting_methods(description, "start" + activity)
        for name in starts:
            members[name] = _counting(members[name])
        if starts:
            members["finished"] = _finished(event.name, starts[0])
            members["_prepare"] = (functools.partial(_prepare, event.name),)


def _starting_methods(description: _zqm.ClassDescription, prefix: str) -> list[str]:
    names = [
        method.name
        for method in description.methods
        if method.name.startswith(prefix) and method.result is not None and method.result.name == "Boolean"
    ]
    return list(dict.fromkeys(names))


def _prepare(event: str, host_object: Any) -> None:
    host_object._starts = _Starts()
    add_observer(host_object, event, host_object._starts.end)


def _counting(method: Callable[..., Any]) -> Callable[..., Any]:
    @functools.wraps(method)
    def counting(self: Any, *arguments: Any) -> Any:
        started = method(self, *arguments)
        if started:
            self._starts.started += 1
        return started

    return counting


def _finished(event: str, start: str) -> Callable[..., Any]:
    async def finished(self: Any) -> bool:
        check_alive(self)
        starts = self._starts
        wanted = starts.started
        if wanted == 0:
            raise CallError(f"nothing that {start} started can be waited for")
        while starts.ended < wanted:
            await wait_for_event(self, event)
        return bool(starts.result)

    finished.__doc__ = f"""Waits for the end of what was started last, and answers what {event} tells of it."""
    return finished
