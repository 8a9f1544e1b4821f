"""What the library consists of, item by item, held against files that a change must update knowingly."""

from __future__ import annotations

from dataclasses import dataclass
from pathlib import Path

from macos.library import Library, ObjectiveCClass
from macos.problems import CannotCheck

UPDATE = "scripts/check-macos --update-golden"


@dataclass(frozen=True)
class Golden:
    """One file: what it is, in its first lines, and the items that belong there."""

    name: str
    title: str
    items: tuple[str, ...]


def golden_of(library: Library, leaks: frozenset[str]) -> list[Golden]:
    """What the files should hold for this library; leaks is what it exports without its list of exports."""
    methods = [*library.category_methods]
    methods += [f"{method.name} {method.encoding}" for entry in library.classes for method in entry.methods]
    strong = [f"{entry.library} {entry.symbol}" for entry in library.imports if not entry.weak]
    return [
        Golden(
            "identity",
            "What the library says that it is.",
            (
                f"deployment target {library.deployment_target}",
                f"install name {library.install_name}",
                f"platform {library.platform}",
                f"processor {library.processor}",
            ),
        ),
        Golden(
            "libraries",
            "The libraries that the library needs, in the order in which the loader looks for them.",
            tuple(f"{number} {entry.path}" for number, entry in enumerate(library.dependencies, 1)),
        ),
        Golden(
            "imports",
            "The symbols that the library takes from others and can't do without, by library.",
            tuple(sorted(strong)),
        ),
        Golden(
            "classes",
            "The Objective-C classes that the library brings along, with superclass and protocols.",
            tuple(sorted(_declared(entry) for entry in library.classes)),
        ),
        Golden(
            "methods",
            "The methods that the library implements, with their types.",
            tuple(sorted(methods)),
        ),
        Golden(
            "selectors_sent",
            "The messages that the library sends.",
            tuple(sorted(library.selectors_sent)),
        ),
        Golden(
            "leaks_without_export_list",
            "What the library would export without its list of exports: what hidden visibility leaves.",
            tuple(sorted(leaks)),
        ),
    ]


def _declared(entry: ObjectiveCClass) -> str:
    protocols = f" <{', '.join(sorted(entry.protocols))}>" if entry.protocols else ""
    return f"{entry.name} : {entry.superclass}{protocols}"


def read_items(path: Path) -> list[str]:
    """The items of a golden file."""
    try:
        lines = path.read_text(encoding="utf-8").splitlines()
    except OSError as error:
        raise CannotCheck(f"{path} can't be read: {error.strerror}") from error
    return [line for line in lines if line and not line.startswith("#")]


def differences(golden: Golden, folder: Path) -> list[str]:
    """How the items differ from those in the file."""
    path = folder / f"{golden.name}.txt"
    if not path.is_file():
        return [f"{path.name} is missing: run {UPDATE}"]
    kept, found = read_items(path), list(golden.items)
    if kept == found:
        return []
    problems = [f"{path.name} does not list: {item}" for item in found if item not in kept]
    problems += [f"{path.name} lists, but the library lacks: {item}" for item in kept if item not in found]
    return problems or [f"{path.name} lists the same in another order"]


def update(golden: Golden, folder: Path) -> bool:
    """Writes the file; whether that changed it."""
    path = folder / f"{golden.name}.txt"
    text = f"# {golden.title}\n# Written by {UPDATE}.\n" + "".join(f"{item}\n" for item in golden.items)
    if path.is_file() and path.read_text(encoding="utf-8") == text:
        return False
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_text(text, encoding="utf-8")
    return True
