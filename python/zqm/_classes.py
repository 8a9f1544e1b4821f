"""A Python class for each class that a plugin registered, made from its description."""

from __future__ import annotations

import inspect
import keyword
from collections.abc import Callable, Iterable
from typing import Any, cast

from . import _zqm
from ._errors import HostException, add_exception_class, exception_class
from ._finishing import add_finished
from ._handlers import mark_as_event
from ._objects import Object, add_class, class_of, handle_of

CONSTRUCTOR = "constructor"
# The host runs them, never host code.
_HIDDEN = {CONSTRUCTOR, "destructor"}

Overloads = dict[str, list[_zqm.MethodDescription]]


def make_class(description: _zqm.ClassDescription, module: str) -> type[Object]:
    """The Python class, which is known from now on as that of its host class."""
    bases = _bases(description.super)
    above = bases[-1]
    methods = overloads_by_name(description.methods, above._methods)
    shared = overloads_by_name(description.shared_methods, above._shared_methods)
    members: dict[str, Any] = {
        "__doc__": _class_doc(description),
        "__module__": module,
        "__init__": Object.__init__,
        "_host_class": description.name,
        "_methods": methods,
        "_shared_methods": shared,
        "_declared_events": {**above._declared_events, **{event.name: event for event in description.events}},
        "_event_names": {**above._event_names, **_by_lowered_name(description.events)},
        "_property_names": {**above._property_names, **_by_lowered_name(description.properties)},
    }
    if CONSTRUCTOR in methods:
        members["_constructor"] = _expected(methods[CONSTRUCTOR])
    for constant in description.constants:
        members[constant.name] = constant_value(constant.value)
    for one in description.properties:
        members[one.name] = _property(one)
    for name in _names(description.shared_methods):
        members[name] = staticmethod(_shared_method(description.name, name, shared[name.lower()]))
    for name in _names(description.methods):
        members[name] = _method(name, methods[name.lower()])
    for event in description.events:
        members[event.name] = _event(event)
    add_finished(description, members)
    made: Any = type(description.name, bases, members)
    add_class(made)
    if issubclass(made, HostException):
        add_exception_class(made)
    return cast(type[Object], made)


def _by_lowered_name(described: Iterable[Any]) -> dict[str, str]:
    return {one.name.lower(): one.name for one in described}


def constant_value(text: str) -> Any:
    """What the text of a constant's record stands for; itself where it is no literal of another type."""
    for read in (int, float):
        try:
            return read(text)
        except ValueError:
            pass
    if text.lower() in ("true", "false"):
        return text.lower() == "true"
    return text[1:-1] if len(text) > 1 and text[0] == text[-1] == '"' else text


def visible_methods(methods: Iterable[_zqm.MethodDescription]) -> dict[str, list[_zqm.MethodDescription]]:
    """Those that Python classes have, by the name that was declared first."""
    return {
        overloads[0].name: overloads
        for name, overloads in overloads_by_name(methods, {}).items()
        if name not in _HIDDEN and any(one.is_callable for one in overloads)
    }


def _bases(super_name: str) -> tuple[Any, ...]:
    # The last is a class of objects.
    if not super_name:
        return (Object,)
    exception = exception_class(super_name)
    if exception is not None and not issubclass(exception, Object):
        return (exception, Object)
    return (class_of(super_name) or Object,)


def _names(methods: Iterable[_zqm.MethodDescription]) -> list[str]:
    return list(visible_methods(methods))


def overloads_by_name(methods: Iterable[_zqm.MethodDescription], inherited: Overloads) -> Overloads:
    """By name, whose case doesn't count; a class's own before those of its superclasses that they don't hide."""
    own: Overloads = {}
    for method in methods:
        own.setdefault(method.name.lower(), []).append(method)
    return {
        name: [*own.get(name, []), *_not_hidden(inherited.get(name, []), own.get(name, []))]
        for name in {**inherited, **own}
    }


def _not_hidden(
    inherited: list[_zqm.MethodDescription], own: list[_zqm.MethodDescription]
) -> list[_zqm.MethodDescription]:
    hidden = [_places(method) for method in own]
    return [method for method in inherited if _places(method) not in hidden]


def _places(method: _zqm.MethodDescription) -> list[str]:
    return [_written(parameter).lower() for parameter in method.parameters]


def type_name(described: _zqm.TypeDescription) -> str:
    return described.name + ("()" if described.is_array else "")


def _written(parameter: _zqm.ParameterDescription) -> str:
    return ("byref " if parameter.by_ref else "") + type_name(parameter.type)


def _expected(overloads: list[_zqm.MethodDescription]) -> _zqm.ExpectedTypes:
    places = max(len(method.parameters) for method in overloads)
    return _zqm.ExpectedTypes(
        [
            [
                _written(method.parameters[place])
                for method in overloads
                if place < len(method.parameters)
            ]
            for place in range(places)
        ]
    )


def _method(name: str, overloads: list[_zqm.MethodDescription]) -> Callable[..., Any]:
    expected = _expected(overloads)

    def method(self: Object, *arguments: Any) -> Any:
        return handle_of(self).call(name, arguments, expected)

    return _documented(method, name, overloads, ["self"])


def _shared_method(
    class_name: str, name: str, overloads: list[_zqm.MethodDescription]
) -> Callable[..., Any]:
    expected = _expected(overloads)

    def shared_method(*arguments: Any) -> Any:
        return _zqm.call_shared(class_name, name, arguments, expected)

    return _documented(shared_method, name, overloads, [])


def _event(description: _zqm.EventDescription) -> Callable[..., Any]:
    def event(self: Object, *arguments: Any) -> None:
        pass

    _documented(event, description.name, [description], ["self"])
    event.__doc__ = f"Event: {description.declaration}"
    mark_as_event(event)
    return event


def _documented(
    function: Callable[..., Any], name: str, overloads: list[Any], before: list[str]
) -> Callable[..., Any]:
    function.__name__ = function.__qualname__ = name
    function.__doc__ = "\n".join(method.declaration for method in overloads)
    if len(overloads) == 1:
        function.__signature__ = signature(overloads[0], before)  # type: ignore[attr-defined]
    return function


def signature(description: Any, before: Iterable[str] = ()) -> inspect.Signature:
    """Of a method or event, whose arguments go by their places."""
    kind = inspect.Parameter.POSITIONAL_ONLY
    parameters = [inspect.Parameter(name, kind) for name in before]
    for one in description.parameters:
        default = getattr(one, "default", None)
        parameters.append(
            inspect.Parameter(
                identifier(one.name),
                kind,
                default=inspect.Parameter.empty if default is None else default_value(default),
            )
        )
    return inspect.Signature(parameters)


def identifier(name: str) -> str:
    """The name of a parameter as Python can have it."""
    return f"{name}_" if keyword.iskeyword(name) else name


def default_value(literal: str) -> Any:
    """What a parameter has when its argument is left out."""
    return None if literal.lower() == "nil" else constant_value(literal)


def _property(description: _zqm.PropertyDescription) -> property:
    name = description.name
    expected = [type_name(description.type)]

    def get(self: Object) -> Any:
        return handle_of(self).get(name)

    def set_(self: Object, value: Any) -> None:
        handle_of(self).set(name, value, expected)

    return property(
        get if description.is_readable else None,
        set_ if description.is_writable else None,
        doc=description.declaration,
    )


def _class_doc(description: _zqm.ClassDescription) -> str:
    lines = [f"The host class {description.name}."]
    constructors = [one.declaration for one in description.methods if one.name.lower() == CONSTRUCTOR]
    events = [one.declaration for one in description.events]
    for title, declarations in (("Made by:", constructors), ("Events:", events)):
        if declarations:
            lines += ["", title, *(f"    {declaration}" for declaration in declarations)]
    return "\n".join(lines)
