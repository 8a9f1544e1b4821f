"""Reads the stubs (.tbd) that stand for macOS's libraries when we link."""

from __future__ import annotations

import re
from dataclasses import dataclass
from pathlib import Path

from macos.problems import CannotCheck


@dataclass(frozen=True)
class Stub:
    path: Path
    install_name: str
    symbols: frozenset[str]
    classes: frozenset[str]


def read_stub(path: Path) -> Stub:
    """What the stub lists. Classes are those of `objc-classes` and `objc-eh-types`."""
    try:
        text = re.sub(r"(^|\s)#[^\n]*", r"\1", path.read_text(encoding="utf-8"))
    except OSError as error:
        raise CannotCheck(f"{path} can't be read: {error.strerror}") from error
    install_name = re.search(r"^install-name:\s*'?([^'\n]+)'?", text, re.MULTILINE)
    if install_name is None:
        raise CannotCheck(f"{path} names no library (install-name)")
    return Stub(
        path,
        install_name[1].strip(),
        frozenset(_names(text, "symbols") | _names(text, "weak-symbols")),
        frozenset(name for key in ("objc-classes", "objc-eh-types") for name in _names(text, key)),
    )


def _names(text: str, key: str) -> set[str]:
    found: set[str] = set()
    for match in re.finditer(rf"^\s*{key}:\s*\[([^\]]*)\]", text, re.MULTILINE):
        found |= {name.strip().strip("'\"") for name in match[1].split(",") if name.strip()}
    return found
