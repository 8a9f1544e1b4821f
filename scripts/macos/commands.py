"""The build's own commands, so that a check compiles and links as the build does."""

from __future__ import annotations

import json
import shlex
from dataclasses import dataclass
from pathlib import Path

from macos.problems import CannotCheck
from macos.tools import run, tool

# The libraries that the build makes, and the folders of their Objective-C++ sources.
SOURCES = {"ZQMNSSpeech": "speech", "ZQMFoundation": "siblings/foundation"}
PLUGIN = "ZQMNSSpeech"


@dataclass(frozen=True)
class LibraryBuild:
    """How the build compiles an Objective-C++ source of a library, and how it links the library, with its list
    of exports and without."""

    folder: Path
    compiler: tuple[str, ...]
    listed: Path
    unlisted: Path
    links: dict[Path, tuple[str, ...]]

    def compile(self, source: Path, output: Path, options: list[str]) -> list[str]:
        """Compiles this source as if it were one of the library's."""
        return [*self.compiler, *options, "-c", str(source), "-o", str(output)]

    def linking(self, library: Path, objects: list[Path], output: Path, options: list[str]) -> list[str]:
        """Links the listed or the unlisted library with these objects added."""
        command = list(self.links[library])
        command[command.index("-o") + 1] = str(output)
        return [*command, *map(str, objects), *options]


@dataclass(frozen=True)
class BuildCommands:
    """How the build makes each of its libraries, by their names."""

    folder: Path
    libraries: dict[str, LibraryBuild]

    def any_compiler(self) -> tuple[str, ...]:
        """The compiler, with what all libraries are compiled with."""
        return self.libraries[PLUGIN].compiler

    def declarations_compiler(self) -> list[str]:
        """The compiler for headers alone: without libc++, whose own headers would come first."""
        kept: list[str] = []
        words = iter(self.any_compiler())
        for word in words:
            if word in ("-isystem", "-I"):
                folder = next(words, "")
                if "c++" not in folder:
                    kept += [word, folder]
            else:
                kept.append(word)
        return kept

    def sdk(self) -> Path:
        """The folder that stands for macOS's headers and libraries."""
        words = list(self.any_compiler())
        if "-isysroot" not in words:
            raise CannotCheck(f"{self.folder}/compile_commands.json names no -isysroot")
        return Path(words[words.index("-isysroot") + 1])


def read_commands(folder: Path) -> BuildCommands:
    """The commands of the build in this folder."""
    path = folder / "compile_commands.json"
    try:
        entries = json.loads(path.read_text(encoding="utf-8"))
    except (OSError, ValueError) as error:
        raise CannotCheck(f"{path} can't be read; has the macOS build been configured?") from error
    return BuildCommands(
        folder, {name: _library(folder, name, entries, sources) for name, sources in SOURCES.items()}
    )


def _library(folder: Path, name: str, entries: list[dict[str, str]], sources: str) -> LibraryBuild:
    listed = folder / f"lib{name}.dylib"
    unlisted = folder / "unlisted" / listed.name
    links = {library: _link(folder, library) for library in (listed, unlisted)}
    return LibraryBuild(folder, _compiler(folder, entries, sources), listed, unlisted, links)


def _compiler(folder: Path, entries: list[dict[str, str]], sources: str) -> tuple[str, ...]:
    """The command for the first Objective-C++ source in this folder, without the source, its output and the
    files for the build's bookkeeping."""
    entry = next(
        (one for one in entries if one["file"].endswith(".mm") and f"/{sources}/" in one["file"]), None
    )
    if entry is None:
        raise CannotCheck(f"{folder} compiles no Objective-C++ source of {sources}/")
    kept: list[str] = []
    words = iter(shlex.split(entry["command"]))
    for word in words:
        if word in ("-o", "-MF", "-MT", "-MQ"):
            next(words, None)
        elif word not in ("-c", "-MD", "-MMD", entry["file"]):
            kept.append(word)
    return tuple(word for word in kept if not word.endswith("ccache"))


def _link(folder: Path, library: Path) -> tuple[str, ...]:
    target = str(library.relative_to(folder))
    done = run([tool("ninja"), "-C", str(folder), "-t", "commands", "-s", target])
    for part in done.stdout.split("&&"):
        words = shlex.split(part)
        if "-dynamiclib" in words and "-o" in words:
            return tuple(words)
    raise CannotCheck(f"the build in {folder} does not tell how it links {target}")
