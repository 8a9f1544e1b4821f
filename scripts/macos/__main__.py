"""The command of scripts/check-macos: python3 -m macos ROOT BUILD [--update-golden]"""

from __future__ import annotations

import sys
from collections.abc import Callable
from pathlib import Path

from macos import check, refused
from macos.problems import CannotCheck


class Report:
    """Prints a line for each check that passed, and every problem of those that failed."""

    def __init__(self) -> None:
        self.failed = False

    def run(self, title: str, body: Callable[[], list[str]]) -> None:
        try:
            problems = body()
        except CannotCheck as error:
            problems = [str(error)]
        if not problems:
            print(f"ok: {title}", file=sys.stderr)
            return
        self.failed = True
        print(f"FAILED: {title}", file=sys.stderr)
        for problem in problems:
            print(f"  {problem}", file=sys.stderr)


def run_checks(project: check.Project) -> bool:
    """Runs every check; whether all passed."""
    report = Report()
    libraries = check.read_linked(project)
    beyond, own = project.beyond_the_record(), project.own_selectors()
    stages = {linked.name: check.check_library(project, linked, beyond, own) for linked in libraries}
    report.run("the sources ask for no platform", lambda: check.check_sources(project))
    report.run("our declarations are those of macOS", lambda: check.check_declarations(project, beyond))
    report.run("every exception is needed", lambda: [*beyond.unneeded(), *own.unneeded()])
    for linked in libraries:
        name, found = linked.name, stages[linked.name]
        report.run(f"{name} uses only what macOS has", lambda: found["audit"])
        report.run(f"{name} is what it must be", lambda: found["rules"])
        report.run(
            f"{name} is as tests/macos/golden/{name} has it", lambda: check.check_golden(project, linked)
        )
    faults = 0

    def refusals() -> list[str]:
        nonlocal faults
        problems, faults = refused.check_refusals(project)
        return problems

    report.run("every planted fault is refused", refusals)
    if faults:
        print(f"{faults} planted faults were tried.", file=sys.stderr)
    return not report.failed


def main(arguments: list[str]) -> int:
    options = [argument for argument in arguments if argument.startswith("-")]
    folders = [argument for argument in arguments if not argument.startswith("-")]
    if len(folders) != 2 or options not in ([], ["--update-golden"]):
        print("usage: python3 -m macos ROOT BUILD [--update-golden]", file=sys.stderr)
        return 2
    try:
        project = check.read_project(Path(folders[0]).resolve(), Path(folders[1]).resolve())
        if options:
            changed = check.update_golden(project)
            message = f"Changed: {', '.join(changed)}." if changed else "The golden files are up to date."
            print(message, file=sys.stderr)
            return 0
        return 0 if run_checks(project) else 1
    except CannotCheck as error:
        print(error, file=sys.stderr)
        return 1


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
