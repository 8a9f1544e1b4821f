"""What is to be called for an event, held against its declaration before anything raises it."""

from __future__ import annotations

import inspect
from collections.abc import Callable
from typing import Any

from . import _zqm


# Functions whose call alone runs nothing.
_RUN_LATER = (inspect.iscoroutinefunction, inspect.isgeneratorfunction, inspect.isasyncgenfunction)


def is_event(method: object) -> bool:
    """Whether it is what the class of a plugin has in place of a handler."""
    return hasattr(method, "_zqm_event")


def mark_as_event(method: Callable[..., None]) -> None:
    setattr(method, "_zqm_event", True)


def check_callback(owner: type, event: _zqm.EventDescription, callback: object) -> None:
    """Raises TypeError for what could not handle the event."""
    _check(f"the callback of {owner.__name__}.{event.name}", event, callback, [])


def check_methods(owner: type, events: dict[str, _zqm.EventDescription]) -> None:
    """Raises TypeError for what the class has by the name of one of these events, and could not handle it."""
    for name, event in events.items():
        method = getattr(owner, name)
        if not is_event(method):
            bound = inspect.isfunction(method) and not isinstance(inspect.getattr_static(owner, name), staticmethod)
            _check(f"{owner.__name__}.{name}", event, method, ["self"] if bound else [])


def _check(what: str, event: _zqm.EventDescription, handler: object, before: list[Any]) -> None:
    if not callable(handler):
        raise TypeError(f"{what} is {handler!r}, which can't be called for the event {event.declaration}")
    if any(is_kind(handler) for is_kind in _RUN_LATER):
        raise TypeError(
            f"{what} is a coroutine function or a generator, of which the event {event.declaration} would run nothing; "
            "a function can start a task with asyncio.create_task"
        )
    try:
        # Decorators may pass on other arguments than they take.
        signature = inspect.signature(handler, follow_wrapped=False)
    except (TypeError, ValueError):
        return  # Python knows none: the call will tell
    try:
        signature.bind(*before, *event.parameters)
    except TypeError as error:
        raise TypeError(f"{what}{signature} can't be called for the event {event.declaration}: {error}") from None
