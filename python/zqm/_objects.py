"""Host objects in Python: their identity, and the events that they raise."""

from __future__ import annotations

import functools
import weakref
from collections.abc import Callable
from typing import TYPE_CHECKING, Any, Generic, TypeVar, overload

from . import _zqm
from ._errors import CallError
from ._handlers import check_callback, check_methods, is_event

T = TypeVar("T")
Callback = TypeVar("Callback", bound=Callable[..., object])


class ByRef(Generic[T]):
    """Holds an argument that is declared byref: its value, which the call may replace.

    error = zqm.ByRef()
    speaker.objectForProperty("no such key", error)
    print(error.value)
    """

    __slots__ = ("value",)

    @overload
    def __init__(self: ByRef[Any]) -> None: ...
    @overload
    def __init__(self, value: T) -> None: ...
    def __init__(self, value: Any = None) -> None:
        self.value: T = value

    def __repr__(self) -> str:
        return f"ByRef({self.value!r})"


Observer = Callable[[tuple[Any, ...]], object]


class EventState:
    """Who is to be told of one event of one object."""

    __slots__ = ("event", "listening", "method", "callback", "observers")

    def __init__(self, event: str):
        self.event = event
        self.listening = False
        self.method = False  # the Python class has a method of its own for it
        self.callback: Callable[..., object] | None = None
        self.observers: list[Observer] = []


class Object:
    """An object of the host. It ends when Python drops it, unless a plugin still holds it."""

    # Of each class that is made from a host class:
    _host_class: str | None = None
    _constructor: _zqm.ExpectedTypes | None = None  # none: the host class has no Constructor
    _methods: dict[str, list[_zqm.MethodDescription]] = {}  # by lowered name; those of superclasses too
    _shared_methods: dict[str, list[_zqm.MethodDescription]] = {}
    _declared_events: dict[str, _zqm.EventDescription] = {}  # by name; those of superclasses too
    _event_names: dict[str, str] = {}  # by lowered name
    _property_names: dict[str, str] = {}  # by lowered name; those of superclasses too
    _prepare: tuple[Callable[[Any], None], ...] = ()  # called with each new object

    # Of each object:
    _handle: _zqm.Handle | None = None
    _events: dict[str, EventState] = {}

    def __init__(self, *arguments: Any):
        if self._host_class is None:
            raise CallError(f"objects of {type(self).__name__} are not made by its name")
        if self._handle is not None:
            raise CallError(f"this {type(self).__name__} has been made already")
        check_methods(type(self), self._declared_events)  # they may be newer than the class
        handle = _zqm.create(self._host_class)
        _adopt(self, handle)
        try:
            if self._constructor is not None:
                handle.call("Constructor", arguments, self._constructor)
            elif arguments:
                raise TypeError(f"{self._host_class}() takes no arguments")
        except BaseException:
            self._handle = None  # it is no whole object
            raise

    def __init_subclass__(cls, **options: Any):
        super().__init_subclass__(**options)
        for name in vars(cls):
            event = cls._event_names.get(name.lower(), name)
            if event != name:
                raise TypeError(f"{cls.__name__}.{name}: the event is called {event}")
        check_methods(cls, cls._declared_events)

    if not TYPE_CHECKING:  # which would take it for leave to set anything

        def __setattr__(self, name: str, value: Any) -> None:
            _check_name(type(self), name)
            super().__setattr__(name, value)

    def __reduce_ex__(self, protocol: Any) -> Any:
        raise TypeError(f"a {type(self).__name__} can't be copied or pickled")

    @overload
    def on(self, event: str, /) -> Callable[[Callback], Callback]: ...
    @overload
    def on(self, event: str, callback: Callback, /) -> Callback: ...
    def on(self, event: str, /, *callback: Any) -> Any:
        """Calls the callback with the event's arguments, after the class's own method; in place of an earlier one.

        With the event alone it decorates the callback.
        """
        if not callback:
            _state(self, event)  # which knows the event
            return functools.partial(_decorate, self, event)
        return _decorate(self, event, *callback)

    def off(self, event: str, /) -> None:
        """Drops the callback of the event."""
        _set_callback(self, event, None)

    async def raised(self, event: str) -> tuple[Any, ...]:
        """Waits until the event is raised once more, and answers its arguments."""
        from ._waiting import wait_for_event

        return await wait_for_event(self, event)


def add_observer(host_object: Object, event: str, observer: Observer) -> None:
    """Has the observer called with the event's arguments, before methods and callbacks."""
    state = _state(host_object, event)
    state.observers.append(observer)
    _listen(host_object, state)


def remove_observer(host_object: Object, event: str, observer: Observer) -> None:
    state = _state(host_object, event)
    state.observers.remove(observer)
    _listen(host_object, state)


def handle_of(host_object: Object) -> _zqm.Handle:
    if host_object._handle is None:
        name = type(host_object).__name__
        raise CallError(f"this {name} has not been made: __init__ has to call super().__init__()")
    return host_object._handle


def wrapped(handle: _zqm.Handle) -> Object:
    """The one Python object of a host object."""
    known = _objects.get(handle.address)
    if known is not None:
        return known
    kind = _classes.get(handle.class_name.lower(), Object)
    made = kind.__new__(kind)
    _adopt(made, handle)
    return made


def add_class(made: type[Object]) -> None:
    """Makes it that of the host class of its name."""
    _classes[made.__name__.lower()] = made


def class_of(name: str) -> type[Object] | None:
    """That of this host class, which host names match whatever their case."""
    return _classes.get(name.lower())


# The object whose handler threw last: whoever awaits something of that is told first.
last_failed: weakref.ref[Object] | None = None

_classes: dict[str, type[Object]] = {}

# By address, which no other object can have while a handle is kept.
_objects: weakref.WeakValueDictionary[int, Object] = weakref.WeakValueDictionary()


def _adopt(host_object: Object, handle: _zqm.Handle) -> None:
    host_object._handle = handle
    host_object._events = {}
    _objects[handle.address] = host_object
    for name in host_object._declared_events:
        if not is_event(getattr(type(host_object), name)):
            state = _state(host_object, name)
            state.method = True
            _listen(host_object, state)
    for prepare in host_object._prepare:
        prepare(host_object)


def check_alive(host_object: Object) -> None:
    """Raises what any call of the object would raise on this thread, in this process."""
    handle_of(host_object).check()


def _state(host_object: Object, event: str) -> EventState:
    check_alive(host_object)
    name = _declared_name(type(host_object), event)
    if name is None:
        known = ", ".join(host_object._declared_events) or "none at all"
        raise CallError(f"{type(host_object).__name__} has no event {event}, but {known}")
    return host_object._events.setdefault(name, EventState(name))


def _declared_name(owner: type[Object], event: str) -> str | None:
    """The host's names match whatever their case."""
    if not isinstance(event, str):
        raise TypeError(f"the name of an event is a str, not {event!r}")
    return owner._event_names.get(event.lower())


def _check_name(owner: type[Object], name: str) -> None:
    """Refuses to set what the host would never look at."""
    event = _declared_name(owner, name)
    if event is not None:
        raise AttributeError(f'{event} is an event of {owner.__name__}: on("{event}", callback) sets a callback')
    known = owner._property_names.get(name.lower(), name)
    if known != name and not hasattr(owner, name):
        raise AttributeError(f"{owner.__name__}.{name}: the property is called {known}")


def _set_callback(host_object: Object, event: str, callback: Callable[..., object] | None) -> None:
    state = _state(host_object, event)
    state.callback = callback
    _listen(host_object, state)


def _decorate(host_object: Object, event: str, callback: Callable[..., object]) -> Callable[..., object]:
    state = _state(host_object, event)
    check_callback(type(host_object), host_object._declared_events[state.event], callback)
    _set_callback(host_object, event, callback)
    return callback


class _Listener:
    """What the host calls. It keeps no object alive, else none with a handler would ever end."""

    __slots__ = ("object", "event")

    def __init__(self, host_object: Object, event: str):
        self.object = weakref.ref(host_object)
        self.event = event

    def __call__(self, *arguments: Any) -> None:
        host_object = self.object()
        if host_object is not None:
            _raise(host_object, self.event, arguments)


def _listen(host_object: Object, state: EventState) -> None:
    """Has the host call us just for events that somebody waits for: plugins spare themselves all others."""
    wanted = state.method or state.callback is not None or bool(state.observers)
    if wanted and not state.listening:
        handle_of(host_object).on(state.event, _Listener(host_object, state.event))
    if not wanted and state.listening:
        handle_of(host_object).off(state.event)
    state.listening = wanted


def _raise(host_object: Object, event: str, arguments: tuple[Any, ...]) -> None:
    global last_failed
    state = host_object._events[event]
    try:
        for observer in tuple(state.observers):
            observer(arguments)
        if state.method:
            getattr(host_object, event)(*arguments)
        if state.callback is not None:
            state.callback(*arguments)
    except BaseException:
        last_failed = weakref.ref(host_object)
        raise
