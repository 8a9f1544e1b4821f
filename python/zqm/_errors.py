"""What calls into the host raise."""

from __future__ import annotations

from typing import Any


class Error(Exception):
    """Base of all of them."""


class LoadError(Error):
    """A plugin that can't be loaded: no such library, no entry function, nothing registered."""


class CallError(Error):
    """A call that can't be made: arguments that fit no declaration, an object that is gone."""


class ThreadError(Error):
    """A call on another thread than the main thread, the only one that the host knows."""


class HostException(Error):
    """An exception that a plugin raised; each host class of exceptions has its own subclass."""

    message: str = ""
    """What the plugin says."""
    number: int = 0
    """The plugin's number for it."""
    object: Any = None
    """The host's exception object, which may have members of its own."""
    others: tuple[HostException, ...] = ()
    """What else the same call raised, in order."""

    def __init__(self, message: str = "", number: int = 0):
        super().__init__(message)
        self.message = message
        self.number = number

    def __str__(self) -> str:
        return self.message


class RuntimeException(HostException):
    """The host's class above all exceptions."""


class IllegalCastException(RuntimeException):
    """An object of another class than wanted."""


class KeyNotFoundException(RuntimeException):
    """A dictionary without that key."""


class NilObjectException(RuntimeException):
    """No object where one is needed."""


class OutOfBoundsException(RuntimeException):
    """An index beyond the end."""


class OutOfMemoryException(RuntimeException):
    """No room."""


class TypeMismatchException(RuntimeException):
    """A value of another type than wanted."""


class UnsupportedFormatException(RuntimeException):
    """Data that can't be read."""


class UnsupportedOperationException(RuntimeException):
    """Something that the class or system doesn't do."""


_classes: dict[str, type[HostException]] = {
    one.__name__.lower(): one for one in [RuntimeException, *RuntimeException.__subclasses__()]
}


def exception_class(name: str) -> type[HostException] | None:
    """That of this host class, which host names match whatever their case; None when it has none."""
    return _classes.get(name.lower())


def add_exception_class(made: type[HostException]) -> None:
    """Makes it that of the host class of its name."""
    _classes[made.__name__.lower()] = made


def host_exception(raised: list[tuple[str, str, int, Any]]) -> HostException:
    """The first of what a call raised, with all others; each is its class, message, number and object."""
    first, *others = [_made(*one) for one in raised]
    first.others = tuple(others)
    return first


def _made(name: str, message: str, number: int, host_object: Any) -> HostException:
    made = host_object if isinstance(host_object, HostException) else (exception_class(name) or HostException)()
    made.args = (message,)
    made.message = message
    made.number = number
    made.object = host_object
    return made
