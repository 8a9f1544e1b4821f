"""Events in asyncio's loop."""

from __future__ import annotations

import asyncio
import contextlib
import weakref
from collections.abc import Iterator
from typing import Any

from . import _objects, _zqm
from ._objects import Object

# How often to look where the system has no descriptor that tells of events; words come every 0.3 s or so.
_BETWEEN_LOOKS = 0.02  # seconds


class _Delivery:
    """Brings events about in one of asyncio's loops while anybody wants them there."""

    def __init__(self, loop: asyncio.AbstractEventLoop):
        self._loop = loop
        self._users = 0
        self._descriptor: int | None = None
        self._next_look: asyncio.Handle | None = None
        self._waiting: list[tuple[Object, asyncio.Future[Any]]] = []  # oldest first

    @contextlib.contextmanager
    def wanted(self) -> Iterator[None]:
        if self._users == 0:
            self._begin()
        self._users += 1
        try:
            yield
        finally:
            self._users -= 1
            if self._users == 0:
                self._end()

    @contextlib.contextmanager
    def awaited(self, host_object: Object, future: asyncio.Future[Any]) -> Iterator[None]:
        entry = (host_object, future)
        with self.wanted():
            self._waiting.append(entry)
            try:
                yield
            finally:
                self._waiting.remove(entry)

    def _begin(self) -> None:
        self._descriptor = _zqm.event_descriptor()
        if self._descriptor is None:
            self._next_look = self._loop.call_soon(self._look)
        else:
            # Called again as long as there is more, with a turn of everything else in between.
            self._loop.add_reader(self._descriptor, self._deliver)

    def _end(self) -> None:
        if self._descriptor is not None:
            self._loop.remove_reader(self._descriptor)
        if self._next_look is not None:
            self._next_look.cancel()
            self._next_look = None

    def _look(self) -> None:
        # Set before, since what a handler raises may leave this.
        self._next_look = self._loop.call_later(_BETWEEN_LOOKS, self._look)
        if self._deliver():
            # There may be more, but all else has its turn first: what awaited this event may await the next.
            self._next_look.cancel()
            self._next_look = self._loop.call_soon(self._look)

    def _deliver(self) -> bool:
        try:
            return _zqm.deliver()
        except Exception as error:
            waiting = self._whom_to_tell()
            if waiting is None:
                raise  # to the loop's own handler of exceptions
            waiting.set_exception(error)
            return True

    def _whom_to_tell(self) -> asyncio.Future[Any] | None:
        failed = None if _objects.last_failed is None else _objects.last_failed()
        pending = [entry for entry in self._waiting if not entry[1].done()]
        own = [entry for entry in pending if entry[0] is failed]
        first = next(iter(own + pending), None)
        return None if first is None else first[1]


_deliveries: weakref.WeakKeyDictionary[asyncio.AbstractEventLoop, _Delivery] = weakref.WeakKeyDictionary()


def _delivery() -> _Delivery:
    loop = asyncio.get_running_loop()
    delivery = _deliveries.get(loop)
    if delivery is None:
        delivery = _deliveries[loop] = _Delivery(loop)
    return delivery


@contextlib.asynccontextmanager
async def events() -> Any:
    """Events come while the block runs: for programs that await something else than an object of the host.

    async with zqm.events():
        await asyncio.sleep(10)
    """
    with _delivery().wanted():
        yield


async def wait_for_event(host_object: Object, event: str) -> tuple[Any, ...]:
    """Waits until the event is raised once more, and answers its arguments; raises what handlers raise."""
    loop = asyncio.get_running_loop()
    future: asyncio.Future[tuple[Any, ...]] = loop.create_future()

    def observe(arguments: tuple[Any, ...]) -> None:
        # A loop that was closed under its tasks has nobody to be told.
        if not future.done() and not loop.is_closed():
            future.set_result(arguments)

    _objects.add_observer(host_object, event, observe)
    try:
        with _delivery().awaited(host_object, future):
            return await future
    finally:
        _objects.remove_observer(host_object, event, observe)
