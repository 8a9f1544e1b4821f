"""The build's own commands, so that a check compiles and links as the build does."""

from __future__ import annotations

import json
import shlex
from dataclasses import dataclass
from pathlib import Path

from macos.problems import CannotCheck
from macos.tools import run, tool

LIBRARY = "libZQMNSSpeech.dylib"
UNLISTED = f"unlisted/{LIBRARY}"


@dataclass(frozen=True)
class BuildCommands:
    """How the build compiles an Objective-C++ source of the plugin, and how it links the library, with its
    list of exports and without."""

    folder: Path
    compiler: tuple[str, ...]
    links: dict[str, tuple[str, ...]]

    def compile(self, source: Path, output: Path, options: list[str]) -> list[str]:
        """Compiles this source as if it were one of the plugin's."""
        return [*self.compiler, *options, "-c", str(source), "-o", str(output)]

    def linking(self, library: str, objects: list[Path], output: Path, options: list[str]) -> list[str]:
        """Links this library with these objects added."""
        command = list(self.links[library])
        command[command.index("-o") + 1] = str(output)
        return [*command, *map(str, objects), *options]

    def declarations_compiler(self) -> list[str]:
        """The compiler for headers alone: without libc++, whose own headers would come first."""
        kept: list[str] = []
        words = iter(self.compiler)
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
        words = list(self.compiler)
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
    links = {library: tuple(_link(folder, library)) for library in (LIBRARY, UNLISTED)}
    for entry in entries:
        if entry["file"].endswith(".mm") and "/speech/" in entry["file"]:
            return BuildCommands(folder, tuple(_compiler(entry)), links)
    raise CannotCheck(f"{path} compiles no Objective-C++ source of speech/")


def _compiler(entry: dict[str, str]) -> list[str]:
    """The command without its source, its output and the files for the build's bookkeeping."""
    kept: list[str] = []
    words = iter(shlex.split(entry["command"]))
    for word in words:
        if word in ("-o", "-MF", "-MT", "-MQ"):
            next(words, None)
        elif word not in ("-c", "-MD", "-MMD", entry["file"]):
            kept.append(word)
    return [word for word in kept if not word.endswith("ccache")]


def _link(folder: Path, library: str) -> list[str]:
    done = run([tool("ninja"), "-C", str(folder), "-t", "commands", "-s", library])
    for part in done.stdout.split("&&"):
        words = shlex.split(part)
        if "-dynamiclib" in words and "-o" in words:
            return words
    raise CannotCheck(f"the build in {folder} does not tell how it links {library}")
