"""Holds our declarations of macOS, headers and stubs of libraries, against the record of its interfaces."""

from __future__ import annotations

from pathlib import Path

from macos import headers as header_files
from macos.exceptions import Exceptions
from macos.headers import Callable, Declarations, Method
from macos.interfaces import Interface, Record, Signature
from macos.stubs import Stub
from macos.type_names import form_of_ours, forms_of_recorded, same

FRAMEWORKS = ("Foundation", "AppKit", "CoreFoundation", "CoreServices", "CoreText")


def read_ours(compiler: list[str], sdk: Path, added: list[Path], record: Record) -> Declarations:
    """Reads the headers of our frameworks and of the Objective-C runtime, and these further ones."""
    frameworks = sdk / "System/Library/Frameworks"
    runtime = sdk / "usr/include/objc"
    names = [f"{name}/{name}.h" for name in FRAMEWORKS]
    names += [f"objc/{file.name}" for file in sorted(runtime.glob("*.h"))]
    names += [str(file.resolve()) for file in added]
    return header_files.read_declarations(compiler, names, [frameworks, runtime, *added], record.constants)


class Comparison:
    """Finds what our headers declare otherwise than the record has it."""

    def __init__(self, ours: Declarations, record: Record, exceptions: Exceptions) -> None:
        self.ours = ours
        self.record = record
        self.exceptions = exceptions
        self.problems: list[str] = []
        self.checked = 0

    def run(self) -> list[str]:
        self._classes()
        for method in self.ours.methods:
            self._method(method)
        for name, types in self.ours.functions.items():
            self._function(name, types)
        for name, written in self.ours.variables.items():
            self._variable(name, written)
        for name, value in self.ours.constants.items():
            self._constant(name, value)
        for name in self.ours.typedefs:
            self._typedef(name)
        for name, fields in self.ours.structures.items():
            self._structure(name, fields)
        return self.problems

    def _unknown(self, name: str, kind: str) -> None:
        if not self.exceptions.covers(name):
            self.problems.append(f"{name}: the record has no such {kind}")

    def _complain(self, name: str, message: str) -> None:
        problem = f"{name}: {message}"
        if not self.exceptions.covers(problem):
            self.problems.append(problem)

    def _classes(self) -> None:
        for name, superclass in self.ours.superclasses.items():
            self.checked += 1
            recorded = self.record.classes.get(name)
            if recorded is None:
                self._unknown(name, "class")
                continue
            if superclass is not None and superclass != recorded.superclass:
                self._complain(name, f"superclass is {superclass}, recorded is {recorded.superclass}")
            conforms = set().union(*(interface.protocols for interface in self.record.ancestry(name)))
            for protocol in self.ours.adopted.get(name, set()):
                every = conforms | {
                    inner
                    for outer in conforms
                    for interface in self.record.protocol_ancestry(outer)
                    for inner in interface.protocols
                }
                if protocol not in every:
                    self._complain(name, f"adopts {protocol}, which is not recorded")
        for name in self.ours.protocols:
            self.checked += 1
            if name not in self.record.protocols:
                self._unknown(name, "protocol")

    def _interfaces(self, method: Method) -> list[Interface]:
        if method.in_protocol:
            return self.record.protocol_ancestry(method.owner)
        return [*self.record.ancestry(method.owner), *self.record.ancestry("NSObject")]

    def _method(self, method: Method) -> None:
        self.checked += 1
        title = f"{method.name[0]}[{method.owner} {method.name[1:]}]"
        signatures: list[Signature] = []
        for interface in self._interfaces(method):
            signatures += interface.methods.get(method.name, [])
        if not signatures:
            self._unknown(title, "method")
            return
        owner = None if method.in_protocol else method.owner
        self._types(title, method.types, signatures, owner)

    def _function(self, name: str, types: Callable) -> None:
        self.checked += 1
        signatures = self.record.functions.get(name)
        if not signatures:
            self._unknown(name, "function")
            return
        self._types(name, types, signatures, None)

    def _types(self, title: str, types: Callable, signatures: list[Signature], owner: str | None) -> None:
        differences = [self._difference(types, signature, owner) for signature in signatures]
        if all(differences):
            self._complain(title, str(differences[0]))

    def _difference(self, types: Callable, signature: Signature, owner: str | None) -> str | None:
        if len(types.parameters) != len(signature.parameters):
            return f"takes {len(types.parameters)} parameters, recorded are {len(signature.parameters)}"
        if types.variadic != signature.variadic:
            return "only one of declaration and record takes further arguments (...)"
        pairs = [("returns", types.result, signature.result, False)]
        for number, (written, parameter) in enumerate(zip(types.parameters, signature.parameters), 1):
            pairs.append((f"parameter {number} is", written, parameter.type, parameter.by_reference))
        for what, written, recorded, by_reference in pairs:
            forms = forms_of_recorded(recorded, self.record, by_reference)
            if not same(written, forms, self.ours, owner):
                return f"{what} {written}, recorded is {' or '.join(sorted(forms))}"
        return None

    def _variable(self, name: str, written: str) -> None:
        self.checked += 1
        recorded = self.record.variables.get(name)
        if not recorded:
            self._unknown(name, "variable")
            return
        forms = set().union(*(forms_of_recorded(kind, self.record) for kind in recorded))
        if not same(written, forms, self.ours):
            self._complain(name, f"is {written}, recorded is {' or '.join(sorted(forms))}")

    def _constant(self, name: str, value: int) -> None:
        self.checked += 1
        recorded = self.record.constant(name)
        if not recorded:
            self._unknown(name, "constant")
        elif value not in recorded and value - 2**64 not in recorded and value - 2**32 not in recorded:
            self._complain(name, f"is {value}, recorded is {' or '.join(map(str, sorted(recorded)))}")

    def _typedef(self, name: str) -> None:
        self.checked += 1
        forms = forms_of_recorded(name, self.record)
        lower = name.lower()
        if lower not in self.record.aliases and lower not in self.record.structures:
            # A name that the record lacks is only another word for what it stands for, which is compared.
            return
        if not same(name, forms, self.ours):
            stands_for = form_of_ours(name, self.ours)
            self._complain(name, f"stands for {stands_for}, recorded is {' or '.join(sorted(forms))}")

    def _structure(self, name: str, fields: tuple[tuple[str, str], ...]) -> None:
        layouts = [
            layout
            for alias in (name.lower(), "_" + name.lower(), name.lower().lstrip("_"))
            for layout in self.record.structures.get(alias, [])
        ]
        if not layouts or not name:
            return
        self.checked += 1
        if not any(self._same_layout(fields, layout) for layout in layouts):
            written = ", ".join(f"{kind} {field}" for field, kind in fields)
            recorded = ", ".join(f"{kind} {field}" for field, kind in layouts[0])
            self._complain(name, f"holds {written}; recorded is {recorded}")

    def _same_layout(self, fields: tuple[tuple[str, str], ...], layout: tuple[tuple[str, str], ...]) -> bool:
        if len(fields) != len(layout):
            return False
        for (_, written), (_, recorded) in zip(fields, layout):
            array = _recorded_array(recorded)
            if array is not None:
                length, element = array
                base, _, size = written.partition("[")
                forms = forms_of_recorded(element, self.record)
                if size.rstrip("]") != str(length) or not same(base, forms, self.ours):
                    return False
            elif not same(written, forms_of_recorded(recorded, self.record), self.ours):
                return False
        return True


def _recorded_array(kind: str) -> tuple[int, str] | None:
    """Length and element of "array [0..79] of UInt8"; None for any other type."""
    words = kind.replace("packed", "").split()
    if len(words) < 3 or not words[0].startswith("array") or words[-2] != "of":
        return None
    bounds = kind[kind.index("[") + 1 : kind.index("]")].split("..")
    if len(bounds) != 2 or not all(bound.strip().isdigit() for bound in bounds):
        return None
    return int(bounds[1]) - int(bounds[0]) + 1, words[-1]


def unknown_in_stubs(stubs: list[Stub], record: Record, exceptions: Exceptions) -> list[str]:
    """The symbols that our stubs list and the record does not know."""
    problems = []
    for stub in stubs:
        names = {symbol.removeprefix("_") for symbol in stub.symbols}
        unknown = names - record.functions.keys() - record.variables.keys()
        unknown |= stub.classes - record.classes.keys() - {"id"}
        problems += [
            f"{stub.path.name}: lists {name}, which the record does not know"
            for name in sorted(unknown)
            if not exceptions.covers(name)
        ]
    return problems
