"""The checks, stage by stage, for the plugin itself and for a planted fault beside it."""

from __future__ import annotations

import tempfile
from dataclasses import dataclass
from pathlib import Path

from macos import declarations, golden, sources
from macos.commands import LIBRARY, UNLISTED, BuildCommands, read_commands
from macos.exceptions import Exceptions
from macos.interfaces import Record, read_record
from macos.library import Library, exported_symbols, read_library
from macos.library_rules import LibraryRules
from macos.stubs import read_stub
from macos.tools import run

WEAK_IMPORTS = "weak_imports"


@dataclass(frozen=True)
class Project:
    """What all checks of one run share."""

    root: Path
    record: Record
    commands: BuildCommands
    weak: frozenset[str]

    @property
    def folder(self) -> Path:
        return self.root / "tests/macos"

    @property
    def golden_folder(self) -> Path:
        return self.folder / "golden"

    def beyond_the_record(self, *added: Path) -> Exceptions:
        return Exceptions(self.folder / "beyond_the_record.txt", *added)

    def own_selectors(self) -> Exceptions:
        return Exceptions(self.folder / "own_selectors.txt")


def read_project(root: Path, build: Path) -> Project:
    """Reads the record and the build's commands."""
    weak = frozenset(golden.read_items(root / f"tests/macos/golden/{WEAK_IMPORTS}.txt"))
    return Project(root, read_record(), read_commands(build), weak)


def check_sources(project: Project) -> list[str]:
    """The rules for the sources of the plugin."""
    files = sources.plugin_sources(project.root)
    return [problem for file in files for problem in check_source(project, file)]


def check_source(project: Project, file: Path) -> list[str]:
    """The rules for one source."""
    names = {symbol.removeprefix("_") for symbol in project.weak}
    title = str(file.relative_to(project.root)) if file.is_relative_to(project.root) else file.name
    return sources.problems_of(file, title, names)


def check_declarations(project: Project, beyond: Exceptions, added: Path | None = None) -> list[str]:
    """Our headers and stubs, and this further one, against the record."""
    sdk, compiler = project.commands.sdk(), project.commands.declarations_compiler()
    headers = [added] if added and added.suffix == ".h" else []
    ours = declarations.read_ours(compiler, sdk, headers, project.record)
    problems = declarations.Comparison(ours, project.record, beyond).run()
    frameworks = sdk / "System/Library/Frameworks"
    stubs = [frameworks / f"{name}.framework/{name}.tbd" for name in declarations.FRAMEWORKS]
    stubs.append(sdk / "usr/lib/libobjc.tbd")
    stubs += [added] if added and added.suffix == ".tbd" else []
    listed = [read_stub(stub) for stub in stubs]
    return problems + declarations.unknown_in_stubs(listed, project.record, beyond)


def check_library(
    project: Project, library: Library, beyond: Exceptions, own: Exceptions
) -> dict[str, list[str]]:
    """The problems of the library by stage: what the record knows, and the rules."""
    rules = LibraryRules(library, project.record, beyond, own)
    return {"audit": rules.audit(), "rules": rules.rules(set(project.weak))}


def check_exceptions(project: Project, added: Path) -> list[str]:
    """The lines of this file, as if they stood in ours, that neither declarations nor library need."""
    beyond = project.beyond_the_record(added)
    check_declarations(project, beyond)
    check_library(project, read_library(project.commands.folder / LIBRARY), beyond, project.own_selectors())
    return beyond.unneeded()


def check_golden(project: Project, library: Library, leaks: frozenset[str]) -> list[str]:
    """How the library differs from the golden files."""
    return [
        problem
        for entry in golden.golden_of(library, leaks)
        for problem in golden.differences(entry, project.golden_folder)
    ]


def update_golden(project: Project) -> list[str]:
    """Writes the golden files anew; the names of those that changed."""
    build = project.commands.folder
    entries = golden.golden_of(read_library(build / LIBRARY), exported_symbols(build / UNLISTED))
    return [entry.name for entry in entries if golden.update(entry, project.golden_folder)]


@dataclass(frozen=True)
class Planted:
    """A source that joins the plugin for a moment, and options for its compilation and the link."""

    source: Path
    compiling: list[str]
    linking: list[str]


def check_planted(project: Project, planted: Planted) -> dict[str, list[str]]:
    """Runs all stages as for the plugin with this source added, up to the first that finds something."""
    problems = check_source(project, planted.source)
    if problems:
        return {"sources": problems}
    with tempfile.TemporaryDirectory() as folder:
        compiled = Path(folder) / "planted.o"
        linked, unlisted = Path(folder) / "listed.dylib", Path(folder) / "unlisted.dylib"
        build = project.commands.folder
        done = run(project.commands.compile(planted.source, compiled, planted.compiling), build)
        if done.returncode != 0:
            return {"compiler": done.stderr.splitlines()}
        for name, output in ((LIBRARY, linked), (UNLISTED, unlisted)):
            done = run(project.commands.linking(name, [compiled], output, planted.linking), build)
            if done.returncode != 0:
                return {"linker": done.stderr.splitlines()}
        library, leaks = read_library(linked), exported_symbols(unlisted)
    found = check_library(project, library, project.beyond_the_record(), project.own_selectors())
    found["golden"] = check_golden(project, library, leaks)
    return next(({stage: problems} for stage, problems in found.items() if problems), {})
