"""The independent record of the macOS interfaces: the Pascal units of Debian's fpc-source.

They were made from Apple's headers of the 10.10 generation by others, for a compiler of another language.
They are read when the check runs; nothing of them is kept.
"""

from __future__ import annotations

import re
from dataclasses import dataclass, field
from pathlib import Path

from macos.pascal_text import active_text
from macos.problems import CannotCheck

FOLDER = Path("/usr/share/fpcsrc/3.2.2")
# Units of helpers for Pascal, and the one that repeats all others.
PASCAL_ONLY = ("GPCStrings.pas", "PLStringFuncs.pas", "MacOSAll.pas")
INSTALL = "install the package fpc-source-3.2.2"


@dataclass(frozen=True)
class Parameter:
    type: str
    by_reference: bool


@dataclass(frozen=True)
class Signature:
    result: str
    parameters: tuple[Parameter, ...]
    variadic: bool


@dataclass
class Interface:
    """A class with its categories, or a protocol. Methods by "-selector" or "+selector"."""

    superclass: str | None = None
    protocols: set[str] = field(default_factory=set)
    methods: dict[str, list[Signature]] = field(default_factory=dict)
    optional: set[str] = field(default_factory=set)


@dataclass
class Record:
    """Names as C has them. Types as Pascal has them, their names in lower case: Pascal ignores case."""

    classes: dict[str, Interface] = field(default_factory=dict)
    protocols: dict[str, Interface] = field(default_factory=dict)
    protocol_names: dict[str, str] = field(default_factory=dict)
    functions: dict[str, list[Signature]] = field(default_factory=dict)
    variables: dict[str, set[str]] = field(default_factory=dict)
    constants: dict[str, list[str]] = field(default_factory=dict)
    aliases: dict[str, list[str]] = field(default_factory=dict)
    structures: dict[str, list[tuple[tuple[str, str], ...]]] = field(default_factory=dict)
    routine_types: set[str] = field(default_factory=set)

    def __post_init__(self) -> None:
        self._selectors: set[str] = set()
        self._class_names: dict[str, str] = {}

    @property
    def selectors(self) -> set[str]:
        """All selectors of all classes and protocols."""
        if not self._selectors:
            interfaces = (*self.classes.values(), *self.protocols.values())
            self._selectors = {method[1:] for interface in interfaces for method in interface.methods}
        return self._selectors

    def class_named(self, pascal: str) -> str | None:
        """The class that this Pascal name stands for."""
        if not self._class_names:
            self._class_names = {name.lower(): name for name in self.classes}
        return self._class_names.get(pascal.lower())

    def ancestry(self, name: str) -> list[Interface]:
        """The class's interface, those of its superclasses, and those of all their protocols."""
        found: list[Interface] = []
        waiting = [(self.classes, name)]
        seen: set[tuple[int, str]] = set()
        while waiting:
            table, current = waiting.pop(0)
            interface = table.get(current)
            if interface is None or (id(table), current) in seen:
                continue
            seen.add((id(table), current))
            found.append(interface)
            if interface.superclass:
                waiting.append((self.classes, interface.superclass))
            waiting += [(self.protocols, protocol) for protocol in sorted(interface.protocols)]
        return found

    def protocol_ancestry(self, name: str) -> list[Interface]:
        """The protocol's interface and those of the protocols that it takes in."""
        found: list[Interface] = []
        waiting, seen = [name], set()
        while waiting:
            current = waiting.pop(0)
            if current in seen or current not in self.protocols:
                continue
            seen.add(current)
            found.append(self.protocols[current])
            waiting += sorted(self.protocols[current].protocols)
        return found

    def constant(self, name: str) -> set[int]:
        """The values recorded for this constant; empty when it is unknown or no integer."""
        return _Evaluation(self).values(name)


PARAMETERS = r"(?:\((?P<parameters>(?:[^()]|\([^()]*\))*)\))?"
INTERFACE = re.compile(
    r"\b(?P<name>\w+)\s*=\s*(?P<kind>objcclass|objccategory|objcprotocol)\s+external\b"
    r"(?:\s+name\s+'(?P<external>\w+)')?\s*(?:\((?P<parents>[^)]*)\))?\s*(?P<forward>;)?"
)
METHOD = re.compile(
    r"\b(?P<section>optional|required)\b|(?P<shared>\bclass\s+)?\b(?P<routine>function|procedure)\s+\w+\s*"
    + PARAMETERS
    + r"\s*(?::\s*(?P<result>\w+))?\s*;(?P<modifiers>(?:\s*varargs\s*;)?)\s*message\s+'(?P<selector>[^']+)'"
)
FUNCTION = re.compile(
    r"\b(?P<routine>function|procedure)\s+(?P<name>\w+)\s*"
    + PARAMETERS
    + r"\s*(?::\s*(?P<result>\w+))?\s*;(?P<modifiers>(?:\s*(?:cdecl|varargs|mwpascal)\s*;)*)\s*"
    r"(?:external\b(?:\s+name\s+'_(?P<external>\w+)')?|inline\b)"
)
LOADED_FUNCTION = re.compile(
    r"\b(?P<name>\w+)\s*:\s*(?P<routine>function|procedure)\s*"
    + PARAMETERS
    + r"\s*(?::\s*(?P<result>\w+))?\s*;?(?P<modifiers>)\s*(?:cdecl\s*)?=\s*nil"
)
# The functions that macOS's headers define themselves; the record has them in one file, without "external".
INLINE_FUNCTION = re.compile(
    r"\b(?P<routine>function|procedure)\s+(?P<name>\w+)\s*"
    + PARAMETERS
    + r"\s*(?::\s*(?P<result>\w+))?\s*;(?P<modifiers>)"
)
TYPED_FUNCTION = re.compile(
    r"\bT(?P<name>objc_\w+)\s*=\s*(?P<routine>function|procedure)\s*"
    + PARAMETERS
    + r"\s*(?::\s*(?P<result>\w+))?\s*;(?P<modifiers>)"
)
VARIABLE = re.compile(
    r"\b(?P<name>\w+)\s*:\s*(?P<type>\^?\w+)[^;:=()]*;\s*(?:cvar\s*;\s*external|external\s+name\s+'_\w+')"
)
ALIAS = re.compile(r"\b(\w+)\s*=\s*(\^?\s*\w+)\s*;")
CONSTANT = re.compile(
    r"\b(\w+)\s*(?::\s*\w+\s*)?=\s*([^;:'\[\]{}^]+|FourCharCode\s*\(\s*'[^']{4}'\s*\)|'[^']{4}')\s*;"
)
ENUMERATION = re.compile(r"\b\w+\s*=\s*\((\s*\w+[^()]*)\)\s*;")
STRUCTURE = re.compile(r"\b(?P<name>\w+)\s*=\s*(?:packed\s+)?record\b")
ROUTINE_TYPE = re.compile(r"\b(\w+)\s*=\s*(?:function|procedure)\b")
# A selector, in quotes, may have a part named "end".
WORD_OF_BODY = re.compile(r"'[^']*'|\b(record|end)\b")
FIELD = re.compile(r"((?:\w+\s*,\s*)*\w+)\s*:\s*([^;]+);")


def read_record(folder: Path = FOLDER) -> Record:
    """Reads the units of Foundation, AppKit, the C frameworks and the Objective-C runtime."""
    packages = folder / "packages"
    files = [folder / "rtl/inc/objcbase.pp"]
    for part in ("cocoaint/src/foundation/*.inc", "cocoaint/src/appkit/*.inc", "univint/src/*.pas"):
        found = sorted(file for file in packages.glob(part) if file.name not in PASCAL_ONLY)
        if not found:
            raise CannotCheck(f"the record of the macOS interfaces is missing in {packages}: {INSTALL}")
        files += found
    record = Record()
    for file in files:
        _read_unit(_active(file), record)
    for part in ("foundation", "appkit"):
        inline_functions = _active(packages / f"cocoaint/src/{part}/InlineFunctions.inc")
        _read_functions(INLINE_FUNCTION, inline_functions, record)
    # This unit has the functions of the runtime as variables, which it fills when it has found the library.
    runtime = _active(packages / "objcrtl/src/objcrtl.pas")
    _read_functions(LOADED_FUNCTION, runtime, record)
    _read_functions(TYPED_FUNCTION, runtime, record)
    return record


def _active(file: Path) -> str:
    try:
        text = file.read_bytes().decode("utf-8", errors="replace")
    except OSError as error:
        raise CannotCheck(f"{file} can't be read ({error.strerror}): {INSTALL}") from error
    try:
        return active_text(text)
    except CannotCheck as error:
        raise CannotCheck(f"{file}: {error}") from error


def _read_unit(text: str, record: Record) -> None:
    rest = _read_interfaces(text, record)
    rest = _read_structures(rest, record)
    _read_functions(FUNCTION, rest, record)
    # What a function without parameters returns looks like the type of a variable.
    for match in VARIABLE.finditer(FUNCTION.sub(" ", rest)):
        record.variables.setdefault(match["name"], set()).add(match["type"])
    for name, target in ALIAS.findall(rest):
        record.aliases.setdefault(name.lower(), []).append(re.sub(r"\s", "", target))
    for name in ROUTINE_TYPE.findall(rest):
        record.routine_types.add(name.lower())
    for name, value in CONSTANT.findall(rest):
        record.constants.setdefault(name, []).append(value.strip())
    for names in ENUMERATION.findall(rest):
        previous = "-1"
        for item in names.split(","):
            name, _, value = (part.strip() for part in item.partition("="))
            previous = value or f"{previous} + 1"
            record.constants.setdefault(name, []).append(previous)


def _read_interfaces(text: str, record: Record) -> str:
    """Reads classes, categories and protocols; returns the text without them."""
    rest: list[str] = []
    position = 0
    while match := INTERFACE.search(text, position):
        rest.append(text[position : match.start()])
        parents = [name.strip() for name in (match["parents"] or "").split(",") if name.strip()]
        body, position = ("", match.end()) if match["forward"] else _body(text, match.end())
        _add_interface(match, parents, body, record)
    rest.append(text[position:])
    return "".join(rest)


def _add_interface(match: re.Match[str], parents: list[str], body: str, record: Record) -> None:
    if match["kind"] == "objcprotocol":
        name = match["external"] or match["name"].removesuffix("Protocol")
        record.protocol_names[match["name"].lower()] = name
        interface = record.protocols.setdefault(name, Interface())
        interface.protocols |= {parent.removesuffix("Protocol") for parent in parents}
    elif match["kind"] == "objcclass":
        interface = record.classes.setdefault(match["external"] or match["name"], Interface())
        for parent in parents:
            if parent.endswith("Protocol"):
                interface.protocols.add(parent.removesuffix("Protocol"))
            else:
                interface.superclass = parent
    else:
        interface = record.classes.setdefault(parents[0] if parents else match["name"], Interface())
    optional = False
    for method in METHOD.finditer(body):
        if method["section"]:
            optional = method["section"] == "optional"
            continue
        key = ("+" if method["shared"] else "-") + method["selector"]
        interface.methods.setdefault(key, []).append(_signature(method))
        if optional:
            interface.optional.add(key)


def _body(text: str, start: int) -> tuple[str, int]:
    """The text up to the end that closes what began before start, and where the text goes on."""
    depth = 1
    for word in WORD_OF_BODY.finditer(text, start):
        if word[1] is None:
            continue
        depth += 1 if word[1] == "record" else -1
        if depth == 0:
            return text[start : word.start()], word.end()
    return text[start:], len(text)


def _read_structures(text: str, record: Record) -> str:
    rest: list[str] = []
    position = 0
    while match := STRUCTURE.search(text, position):
        rest.append(text[position : match.start()])
        body, position = _body(text, match.end())
        fields: list[tuple[str, str]] = []
        for names, kind in FIELD.findall(body + ";"):
            fields += [(name.strip(), kind.strip()) for name in names.split(",")]
        record.structures.setdefault(match["name"].lower(), []).append(tuple(fields))
    rest.append(text[position:])
    return "".join(rest)


def _read_functions(pattern: re.Pattern[str], text: str, record: Record) -> None:
    for match in pattern.finditer(text):
        external = match["external"] if "external" in pattern.groupindex else None
        for name in {match["name"], external or match["name"]}:
            record.functions.setdefault(name, []).append(_signature(match))


def _signature(match: re.Match[str]) -> Signature:
    parameters: list[Parameter] = []
    variadic = "varargs" in match["modifiers"]
    for group in (match["parameters"] or "").split(";"):
        group = group.strip()
        if group == "..." or group.endswith("array of const"):
            variadic = True
            continue
        if not group:
            continue
        names, _, kind = group.partition(":")
        by_reference = re.match(r"\s*(var|out)\b", names) is not None
        parameter = Parameter(kind.strip(), by_reference)
        parameters += [parameter] * len(names.split(","))
    result = match["result"] if match["routine"] == "function" else "void"
    return Signature(result or "void", tuple(parameters), variadic)


class _Evaluation:
    """Computes constants, which may be built of others."""

    def __init__(self, record: Record) -> None:
        self.record = record
        self.open: set[str] = set()

    def values(self, name: str) -> set[int]:
        if name == "LONG_MAX":
            return {2**63 - 1}
        if name in self.open:
            return set()
        self.open.add(name)
        results = {self._expression(text) for text in self.record.constants.get(name, [])}
        self.open.discard(name)
        return {value for value in results if value is not None}

    def _expression(self, text: str) -> int | None:
        if match := re.fullmatch(r"(?:FourCharCode\s*\(\s*)?'(.{4})'\s*\)?", text):
            return int.from_bytes(match[1].encode("mac_roman", errors="replace"), "big")
        words = re.findall(r"\$[0-9A-Fa-f]+|\w+|[-+*()]", text)
        if "".join(words) != re.sub(r"\s", "", text):
            return None
        python: list[str] = []
        for word in words:
            if word.startswith("$"):
                python.append(str(int(word[1:], 16)))
            elif word.isdigit() or word in "-+*()":
                python.append(word.lstrip("0") or "0")
            elif word.lower() in ("shl", "or", "shr", "and"):
                python.append({"shl": "<<", "or": "|", "shr": ">>", "and": "&"}[word.lower()])
            else:
                known = self.values(word)
                if not known:
                    return None
                python.append(f"({min(known)})")
        # Only numbers, brackets and operators are left of it.
        try:
            return int(eval(" ".join(python), {"__builtins__": {}}))
        except (SyntaxError, TypeError, ValueError, OverflowError):
            return None
