"""Reads what a macOS library is made of: what it needs, sends, implements and shows."""

from __future__ import annotations

import re
from dataclasses import dataclass
from pathlib import Path

from macos.problems import CannotCheck
from macos.tools import output_of


IMPORT = re.compile(r"\s*\(undefined(?: [^)]*)?\) (weak )?(?:private )?external (\S+) \((?:from )?(.+?)\)\s*")
CLASS_LIST = re.compile(
    r"Contents of \(__DATA\w*,__objc_classlist\) section\n(.*?)(?=^Contents of|\Z)", re.DOTALL | re.MULTILINE
)
CLASS = re.compile(r"^[0-9a-f]+ 0x[0-9a-f]+ _OBJC_CLASS_\$_(\w+)$", re.MULTILINE)
SUPERCLASS = re.compile(r"^\s+superclass 0x[0-9a-f]+ _OBJC_CLASS_\$_(\w+)", re.MULTILINE)
METHOD = re.compile(r"name 0x[0-9a-f]+ \S+\n\s*types 0x[0-9a-f]+ (.*)\n\s*imp ([-+]\[.+\])")
PROTOCOL = re.compile(
    r"list\[\d+\] 0x[0-9a-f]+ \(struct protocol_t \*\)\n.*\n\s*name 0x[0-9a-f]+ (\w+)"
)


@dataclass(frozen=True)
class Import:
    symbol: str
    library: str
    weak: bool


@dataclass(frozen=True)
class Dependency:
    path: str
    weak: bool


@dataclass(frozen=True)
class ImplementedMethod:
    name: str
    encoding: str


@dataclass(frozen=True)
class ObjectiveCClass:
    name: str
    superclass: str
    protocols: frozenset[str]
    methods: tuple[ImplementedMethod, ...]


@dataclass(frozen=True)
class Library:
    path: Path
    install_name: str
    processor: str
    platform: str
    deployment_target: str
    dependencies: tuple[Dependency, ...]
    exports: frozenset[str]
    imports: tuple[Import, ...]
    classes: tuple[ObjectiveCClass, ...]
    # Methods of categories, "-[NSString(Ours) selector]".
    category_methods: tuple[str, ...]
    selectors_sent: frozenset[str]
    symbols: frozenset[str]
    strings: tuple[str, ...]


def read_library(path: Path) -> Library:
    """Reads the library with LLVM's tools."""
    if not path.is_file():
        raise CannotCheck(f"{path} is missing: the macOS build has not made it")
    file = str(path)
    commands = output_of("llvm-otool", "-l", file)
    metadata = output_of("llvm-objdump", "--macho", "--objc-meta-data", file)
    header = output_of("llvm-readobj", "--file-headers", file)
    return Library(
        path=path,
        install_name=output_of("llvm-objdump", "--macho", "--dylib-id", file).splitlines()[-1].strip(),
        processor=_first(r"CpuType: (\S+)", header, "processor", path),
        platform=_platform(commands, path),
        deployment_target=_first(
            r"cmd LC_(?:VERSION_MIN_MACOSX|BUILD_VERSION)\n(?:.*\n){0,3}?\s*(?:version|minos) (\S+)",
            commands,
            "deployment target",
            path,
        ),
        dependencies=tuple(
            Dependency(name, kind == "WEAK_")
            for kind, name in re.findall(r"cmd LC_LOAD_(|WEAK_)DYLIB\n.*\n\s*name (.+?) \(offset", commands)
        ),
        exports=exported_symbols(path),
        imports=_imports(file),
        classes=_classes(metadata),
        category_methods=tuple(sorted(set(re.findall(r"imp ([-+]\[\w+\([^)]*\) \S+\])", metadata)))),
        selectors_sent=_selectors_sent(file),
        symbols=frozenset(output_of("llvm-nm", "--format=just-symbols", file).split("\n")) - {""},
        strings=_strings(path, commands),
    )


def exported_symbols(path: Path) -> frozenset[str]:
    """Only the exports of the library."""
    if not path.is_file():
        raise CannotCheck(f"{path} is missing: the macOS build has not made it")
    trie = output_of("llvm-objdump", "--macho", "--exports-trie", str(path))
    return frozenset(re.findall(r"^(?:0x[0-9A-F]+|\[re-export\])\s+(\S+)", trie, re.MULTILINE))


def _first(pattern: str, text: str, what: str, path: Path) -> str:
    match = re.search(pattern, text)
    if match is None:
        raise CannotCheck(f"{path} names no {what}")
    return match[1]


def _platform(commands: str, path: Path) -> str:
    if "cmd LC_VERSION_MIN_MACOSX" in commands:
        return "macos"
    platform = _first(r"cmd LC_BUILD_VERSION\n.*\n\s*platform (\S+)", commands, "platform", path)
    return "macos" if platform in ("1", "macos", "MACOS") else platform


def _strings(path: Path, commands: str) -> tuple[str, ...]:
    # The last segment is for the linker, and holds the paths of the build's own files.
    end = _first(r"segname __LINKEDIT\n(?:.*\n){2}\s*fileoff (\d+)", commands, "end of its contents", path)
    contents = path.read_bytes()[: int(end)]
    return tuple(text.decode("ascii") for text in re.findall(rb"[\x20-\x7e\t]{4,}", contents))


def _imports(file: str) -> tuple[Import, ...]:
    found = []
    for line in output_of("llvm-nm", "-m", "-u", file).splitlines():
        match = IMPORT.fullmatch(line)
        if match is None:
            raise CannotCheck(f"{file}: what llvm-nm says of an import can't be read: {line.strip()}")
        found.append(Import(match[2], match[3], match[1] is not None))
    return tuple(sorted(found, key=lambda entry: (entry.library, entry.symbol)))


def _selectors_sent(file: str) -> frozenset[str]:
    # The linker merges the names of selectors with other strings: only the references tell what is one.
    found: set[str] = set()
    for section in ("__DATA,__objc_selrefs", "__DATA_CONST,__objc_selrefs"):
        text = output_of("llvm-objdump", "--macho", f"--section={section}", file)
        found |= set(re.findall(r"^[0-9a-f]+\s+__TEXT:\w+:(\S+)$", text, re.MULTILINE))
    return frozenset(found)


def _classes(metadata: str) -> tuple[ObjectiveCClass, ...]:
    section = CLASS_LIST.search(metadata)
    if section is None:
        return ()
    found = []
    starts = list(CLASS.finditer(section[1]))
    for start, following in zip(starts, [*starts[1:], None]):
        text = section[1][start.end() : following.start() if following else len(section[1])]
        # The metaclass of a class without a superclass names the class itself.
        superclass = SUPERCLASS.search(text.partition("Meta Class")[0])
        found.append(
            ObjectiveCClass(
                start[1],
                superclass[1] if superclass else "",
                frozenset(PROTOCOL.findall(text)),
                tuple(ImplementedMethod(name, encoding) for encoding, name in METHOD.findall(text)),
            )
        )
    return tuple(sorted(found, key=lambda entry: entry.name))
