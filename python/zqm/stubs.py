"""Type stubs of a plugin library's classes:

    python3 -m zqm.stubs libZQMNSSpeech > zqm_speech.pyi

They describe a module zqm_speech.py that has the classes:

    import zqm
    globals().update(vars(zqm.load("libZQMNSSpeech")))
"""

from __future__ import annotations

import argparse
import keyword
import sys
from collections.abc import Iterator
from typing import Any

from . import _zqm
from ._classes import CONSTRUCTOR, constant_value, identifier, overloads_by_name, visible_methods
from ._errors import Error
from ._library import Library, load
from ._objects import Object

_HEADER = '''# Made by python3 -m zqm.stubs {name}

import datetime
import pathlib
from typing import Any, overload

import zqm
'''

# By the lowered name of the declared type; what is taken is as wide as what the conversion takes.
_TYPES = {
    "boolean": ("bool", "bool"),
    "int32": ("int", "int"),
    "uint32": ("int", "int"),
    "integer": ("int", "int"),
    "int64": ("int", "int"),
    "ptr": ("int", "int | None"),
    "single": ("float", "float"),
    "double": ("float", "float"),
    "string": ("str", "str | bytes | None"),
    "text": ("str", "str | None"),
    "variant": ("Any", "Any"),
    "date": ("datetime.datetime | None", "datetime.date | None"),
    "dictionary": ("dict[Any, Any] | None", "dict[Any, Any] | None"),
    "folderitem": ("pathlib.Path | None", "pathlib.Path | None"),
    "memoryblock": ("bytes | None", "bytes | bytearray | None"),
}


def stubs(library: Library) -> str:
    """The text of the .pyi file."""
    names = _Names({one.name.lower(): one.name for one in library.descriptions})
    lines = [_HEADER.format(name=library.__name__)]
    for description, made in zip(library.descriptions, library.classes):
        lines += ["", *_class_lines(description, made, names), ""]
    return "\n".join(lines).rstrip("\n") + "\n"


class _Names:
    """How types are written in one file of stubs."""

    def __init__(self, local: dict[str, str]):
        self._local = local

    def of_class(self, name: str) -> str:
        """Classes of other libraries have no name in this file."""
        local = self._local.get(name.lower())
        return "Any" if local is None else f"{local} | None"

    def result(self, described: _zqm.TypeDescription) -> str:
        return self._type(described, 0)

    def parameter(self, described: _zqm.TypeDescription) -> str:
        return self._type(described, 1)

    def _type(self, described: _zqm.TypeDescription, column: int) -> str:
        pair = _TYPES.get(described.name.lower())
        name = self.of_class(described.name) if pair is None else pair[column]
        if not described.is_array:
            return name
        return f"list[{name}] | None" if column == 0 else f"list[{name}] | tuple[{name}, ...] | None"


def _class_lines(description: _zqm.ClassDescription, made: type[Object], names: _Names) -> Iterator[str]:
    bases = [f"zqm.{one.__name__}" if one.__module__.startswith("zqm.") else one.__name__ for one in made.__bases__]
    yield f"class {description.name}({', '.join(bases)}):"
    body = [line for member in _members(description, made, names) for line in member]
    yield from (f"    {line}" for line in body or ["..."])


def _members(description: _zqm.ClassDescription, made: type[Object], names: _Names) -> Iterator[list[str]]:
    for constant in description.constants:
        yield [f"{constant.name}: {type(constant_value(constant.value)).__name__}"]
    constructors = overloads_by_name(description.methods, {}).get(CONSTRUCTOR, [])
    callable_ones = [one for one in constructors if one.is_callable]
    yield from _methods("__init__", callable_ones, names, ["self"])
    if not constructors and not description.super:
        yield ["def __init__(self) -> None: ..."]
    for one in description.properties:
        yield from _property(one, names)
    for name in visible_methods(description.shared_methods):
        yield from _methods(name, made._shared_methods[name.lower()], names, [], "@staticmethod")
    for name in visible_methods(description.methods):
        yield from _methods(name, made._methods[name.lower()], names, ["self"])
    for event in description.events:
        yield from _event(event, names)
    if "finished" in vars(made):
        yield ["async def finished(self) -> bool: ..."]


def _methods(
    name: str, overloads: list[Any], names: _Names, before: list[str], *decorators: str
) -> Iterator[list[str]]:
    if keyword.iskeyword(name):
        return  # it is reached by getattr alone
    for one in overloads:
        result = "None" if one.result is None else names.result(one.result)
        several = ["@overload"] if len(overloads) > 1 else []
        arguments = [*before, *(_argument(parameter, names) for parameter in one.parameters)]
        listed = ", ".join([*arguments, "/"]) if arguments else ""
        yield [*several, *decorators, f"def {name}({listed}) -> {result}: ..."]


def _event(description: _zqm.EventDescription, names: _Names) -> Iterator[list[str]]:
    arguments = [f"{identifier(one.name)}: {names.result(one.type)}" for one in description.parameters]
    yield [f"def {description.name}({', '.join(['self', *arguments, '/'])}) -> None: ..."]


def _argument(parameter: _zqm.ParameterDescription, names: _Names) -> str:
    written = names.parameter(parameter.type)
    if parameter.by_ref:
        written = f"zqm.ByRef[{names.result(parameter.type)}] | None"
    default = "" if parameter.default is None else " = ..."
    return f"{identifier(parameter.name)}: {written}{default}"


def _property(description: _zqm.PropertyDescription, names: _Names) -> Iterator[list[str]]:
    name = description.name
    if keyword.iskeyword(name):
        return
    if not description.is_writable:
        yield ["@property", f"def {name}(self) -> {names.result(description.type)}: ..."]
    else:
        # A type checker has no property that can be set but not read.
        yield [f"{name}: {names.result(description.type)}"]


def main(arguments: list[str] | None = None) -> int:
    parser = argparse.ArgumentParser(
        prog="python3 -m zqm.stubs", description="Writes type stubs of a plugin library's classes."
    )
    parser.add_argument("library", help="its name or path, as zqm.load takes it")
    parser.add_argument("siblings", nargs="*", help="libraries to load first, whose classes it uses")
    options = parser.parse_args(arguments)
    try:
        for sibling in options.siblings:
            load(sibling)
        sys.stdout.write(stubs(load(options.library)))
    except Error as error:
        print(f"zqm.stubs: {error}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
