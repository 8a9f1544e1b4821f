"""What must hold for the library that we ship, whatever it is made of at the moment."""

from __future__ import annotations

import re

from macos.encodings import agrees
from macos.exceptions import Exceptions
from macos.interfaces import Record, Signature
from macos.library import ImplementedMethod, Library, ObjectiveCClass
from macos.problems import listed

ENTRY_POINT = "_REALPluginMain"
DEPLOYMENT_TARGET = "10.13"
FRAMEWORKS = ("AppKit", "CoreFoundation", "CoreServices", "CoreText", "Foundation")
LIBRARIES = (*FRAMEWORKS, "libSystem", "libc++", "libobjc")
IDENTITY = {"processor": "X86-64", "platform": "macos", "deployment_target": DEPLOYMENT_TARGET}

# What only GNUstep, GCC's runtime, libstdc++, Linux, or our own platform library has.
FOREIGN = (
    "objc_msg_lookup", "objc_msg_sendv", "__objc_exec_class", "__gnu_", "__cxx11", "__gthread", "GLIBC",
    "libgcc", "epoll", "inotify", "eventfd", "/proc/", "libgnustep", "GNUstep", "gnustep", "ZQMPlatform",
    "libzqmplatform", "zqmspeech-engine", "espeak", "pulseaudio", "sndfile",
)  # fmt: skip
FOREIGN_WORD = re.compile(r"(?<![A-Za-z0-9])_?GS[A-Z][a-z]\w+")

# What the compiler adds to a class by itself.
COMPILER_METHODS = (".cxx_construct", ".cxx_destruct")


class _Line:
    """A class of ours with its superclasses and their protocols."""

    def __init__(self, entry: ObjectiveCClass, own: dict[str, ObjectiveCClass], record: Record) -> None:
        self.record = record
        self.implemented = {method.name[0] + _selector(method.name) for method in entry.methods}
        protocols = set(entry.protocols)
        superclass = entry.superclass
        while superclass in own:
            protocols |= own[superclass].protocols
            self.implemented |= {
                method.name[0] + _selector(method.name) for method in own[superclass].methods
            }
            superclass = own[superclass].superclass
        self.protocols = sorted(protocols)
        self.inherited = record.ancestry(superclass)

    def signatures(self, key: str) -> list[Signature]:
        """What the record knows of a method of the class."""
        interfaces = [one for name in self.protocols for one in self.record.protocol_ancestry(name)]
        return [found for one in (*interfaces, *self.inherited) for found in one.methods.get(key, [])]

    def missing(self) -> list[tuple[str, str]]:
        """The methods that the protocols require and the class does not have: protocol and method."""
        present = self.implemented.union(*(interface.methods for interface in self.inherited))
        return [
            (name, key)
            for name in self.protocols
            for interface in self.record.protocol_ancestry(name)
            for key in sorted(interface.methods.keys() - interface.optional - present)
        ]


class LibraryRules:
    """Finds what the library breaks of the rules, part by part."""

    def __init__(
        self, library: Library, record: Record, beyond: Exceptions, own_selectors: Exceptions
    ) -> None:
        self.library = library
        self.record = record
        self.beyond = beyond
        self.own_selectors = own_selectors

    def audit(self) -> list[str]:
        """What the record does not know, or knows otherwise."""
        return [*self._unknown_imports(), *self._unknown_selectors(), *self._methods()]

    def rules(self, weak: set[str]) -> list[str]:
        """What the library may not be or show; weak are the constants that it must link weakly."""
        return [*self._identity(), *self._exports(), *self._origins(), *self._weak(weak), *self._foreign()]

    def _identity(self) -> list[str]:
        problems = []
        for what, wanted in IDENTITY.items():
            found = getattr(self.library, what)
            if found != wanted:
                problems.append(f"the library's {what.replace('_', ' ')} is {found}, not {wanted}")
        return problems

    def _exports(self) -> list[str]:
        problems = []
        surplus = self.library.exports - {ENTRY_POINT}
        if surplus:
            problems.append(f"the library exports more than {ENTRY_POINT}: {listed(set(surplus))}")
        if ENTRY_POINT not in self.library.exports:
            problems.append(f"the library does not export {ENTRY_POINT}")
        return problems

    def _origins(self) -> list[str]:
        problems = [
            f"{entry.symbol} comes from {entry.library}, which is none of our libraries"
            for entry in self.library.imports
            if entry.library not in LIBRARIES
        ]
        for dependency in self.library.dependencies:
            name = dependency.path.rpartition("/")[2].partition(".")[0]
            if name not in LIBRARIES:
                problems.append(f"the library needs {dependency.path}, which is none of our libraries")
            if dependency.weak:
                problems.append(f"the library needs {dependency.path} only weakly")
        return problems

    def _weak(self, weak: set[str]) -> list[str]:
        problems = []
        found = {entry.symbol for entry in self.library.imports if entry.weak}
        surplus = found - weak
        if surplus:
            problems.append(f"these are imported weakly, but must be there: {listed(surplus)}")
        missing = weak - found
        strong = missing & {entry.symbol for entry in self.library.imports}
        if strong:
            problems.append(f"these must be imported weakly, but are imported strongly: {listed(strong)}")
        absent = missing - strong
        if absent:
            problems.append(f"these must be imported weakly, but are not imported: {listed(absent)}")
        return problems

    def _foreign(self) -> list[str]:
        problems = []
        for what, texts in (("symbol", sorted(self.library.symbols)), ("string", self.library.strings)):
            for text in texts:
                if any(name in text for name in FOREIGN) or FOREIGN_WORD.search(text):
                    problems.append(f'the library holds the {what} "{text}", which is none of macOS')
        return problems

    def _unknown_imports(self) -> list[str]:
        problems = []
        for entry in self.library.imports:
            if entry.library not in (*FRAMEWORKS, "libobjc"):
                continue
            name = entry.symbol.removeprefix("_")
            part = re.fullmatch(r"OBJC_(?:CLASS|METACLASS|EHTYPE|IVAR)_\$_(\w+)(?:\.\w+)?", name)
            known = (
                part[1] in self.record.classes
                if part
                else name in self.record.functions or name in self.record.variables
            )
            if not known and not self.beyond.covers(name):
                problems.append(f"{name} comes from {entry.library}, but the record does not know it")
        return problems

    def _implemented(self) -> set[str]:
        names = {method.name for entry in self.library.classes for method in entry.methods}
        return {_selector(name) for name in (*names, *self.library.category_methods)} - set(COMPILER_METHODS)

    def _unknown_selectors(self) -> list[str]:
        implemented = self._implemented()
        problems = []
        for selector in sorted(implemented | self.library.selectors_sent):
            if selector not in self.record.selectors and not self.own_selectors.covers(selector):
                done = "implements" if selector in implemented else "sends"
                problems.append(f"the library {done} {selector}, which the record does not know")
        return problems

    def _methods(self) -> list[str]:
        own = {entry.name: entry for entry in self.library.classes}
        problems = []
        for entry in self.library.classes:
            line = _Line(entry, own, self.record)
            for method in entry.methods:
                problems += self._method(method, line)
            problems += [f"{entry.name} lacks {key}, which {name} requires" for name, key in line.missing()]
        return problems

    def _method(self, method: ImplementedMethod, line: _Line) -> list[str]:
        selector = _selector(method.name)
        signatures = line.signatures(method.name[0] + selector)
        if any(agrees(method.encoding, signature, self.record) for signature in signatures):
            return []
        if signatures:
            return [f"{method.name} has the types {method.encoding}, which are not the recorded ones"]
        return [
            f"{method.name} is none of the methods of {name}, but begins like them"
            for name in line.protocols
            if ":" in selector and self._begins_like(selector, name)
        ]

    def _begins_like(self, selector: str, protocol: str) -> bool:
        first = selector.partition(":")[0]
        interface = self.record.protocols.get(protocol)
        methods = interface.methods if interface is not None else {}
        return any(method[1:].partition(":")[0] == first for method in methods)


def _selector(method: str) -> str:
    return method.rpartition(" ")[2].removesuffix("]")
