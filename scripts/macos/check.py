"""The checks, stage by stage, for the libraries themselves and for a planted fault beside one."""

from __future__ import annotations

import tempfile
from dataclasses import dataclass
from pathlib import Path

from macos import declarations, golden, sources
from macos.commands import BuildCommands, read_commands
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
    # The constants that each library links weakly.
    weak: dict[str, frozenset[str]]

    @property
    def folder(self) -> Path:
        return self.root / "tests/macos"

    def golden_folder(self, name: str) -> Path:
        return golden_folder(self.root, name)

    def beyond_the_record(self, *added: Path) -> Exceptions:
        return Exceptions(self.folder / "beyond_the_record.txt", *added)

    def own_selectors(self) -> Exceptions:
        return Exceptions(self.folder / "own_selectors.txt")


@dataclass(frozen=True)
class Linked:
    """A library, and what it exports without its list of exports."""

    name: str
    library: Library
    leaks: frozenset[str]


def golden_folder(root: Path, name: str) -> Path:
    """Where the golden files of this library are."""
    return root / "tests/macos/golden" / name


def read_project(root: Path, build: Path) -> Project:
    """Reads the record and the build's commands."""
    commands = read_commands(build)
    weak = {
        name: frozenset(golden.read_items(golden_folder(root, name) / f"{WEAK_IMPORTS}.txt"))
        for name in commands.libraries
    }
    return Project(root, read_record(), commands, weak)


def read_linked(project: Project) -> list[Linked]:
    """The libraries as the build made them."""
    return [
        Linked(name, read_library(build.listed), exported_symbols(build.unlisted))
        for name, build in project.commands.libraries.items()
    ]


def check_sources(project: Project) -> list[str]:
    """The rules for the sources that are the same on all platforms."""
    files = sources.portable_sources(project.root)
    return [problem for file in files for problem in check_source(project, file)]


def check_source(project: Project, file: Path) -> list[str]:
    """The rules for one source."""
    names = {symbol.removeprefix("_") for weak in project.weak.values() for symbol in weak}
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
    project: Project, linked: Linked, beyond: Exceptions, own: Exceptions
) -> dict[str, list[str]]:
    """The problems of the library by stage: what the record knows, and the rules."""
    rules = LibraryRules(linked.library, project.record, beyond, own)
    return {"audit": rules.audit(), "rules": rules.rules(set(project.weak[linked.name]))}


def check_exceptions(project: Project, added: Path) -> list[str]:
    """The lines of this file, as if they stood in ours, that neither declarations nor libraries need."""
    beyond = project.beyond_the_record(added)
    check_declarations(project, beyond)
    for linked in read_linked(project):
        check_library(project, linked, beyond, project.own_selectors())
    return beyond.unneeded()


def check_golden(project: Project, linked: Linked) -> list[str]:
    """How the library differs from its golden files."""
    return [
        problem
        for entry in golden.golden_of(linked.library, linked.leaks)
        for problem in golden.differences(entry, project.golden_folder(linked.name))
    ]


def update_golden(project: Project) -> list[str]:
    """Writes the golden files anew; the names of those that changed."""
    return [
        f"{linked.name}/{entry.name}"
        for linked in read_linked(project)
        for entry in golden.golden_of(linked.library, linked.leaks)
        if golden.update(entry, project.golden_folder(linked.name))
    ]


@dataclass(frozen=True)
class Planted:
    """A source that joins a library for a moment, and options for its compilation and the link."""

    library: str
    source: Path
    compiling: list[str]
    linking: list[str]


def check_planted(project: Project, planted: Planted) -> dict[str, list[str]]:
    """Runs all stages as for the library with this source added, up to the first that finds something."""
    problems = check_source(project, planted.source)
    if problems:
        return {"sources": problems}
    with tempfile.TemporaryDirectory() as folder:
        compiled = Path(folder) / "planted.o"
        listed, unlisted = Path(folder) / "listed.dylib", Path(folder) / "unlisted.dylib"
        build = project.commands.libraries[planted.library]
        done = run(build.compile(planted.source, compiled, planted.compiling), build.folder)
        if done.returncode != 0:
            return {"compiler": done.stderr.splitlines()}
        for library, output in ((build.listed, listed), (build.unlisted, unlisted)):
            done = run(build.linking(library, [compiled], output, planted.linking), build.folder)
            if done.returncode != 0:
                return {"linker": done.stderr.splitlines()}
        linked = Linked(planted.library, read_library(listed), exported_symbols(unlisted))
    found = check_library(project, linked, project.beyond_the_record(), project.own_selectors())
    found["golden"] = check_golden(project, linked)
    return next(({stage: problems} for stage, problems in found.items() if problems), {})
