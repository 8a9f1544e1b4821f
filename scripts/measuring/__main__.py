"""The command of scripts/measure, which builds first."""

from __future__ import annotations

import argparse
import shutil
import sys
from pathlib import Path

from common.problems import Problem, words_of
from common.programs import heed_interruptions
from measuring import document, plot
from measuring.benchmarks import Benchmarks
from measuring.curves import PLOTS
from measuring.machine import words_of_machine
from measuring.results import check, read_results
from measuring.rows import TABLES
from measuring.runs import PROGRAMS, RUNS, Run
from measuring.tables import is_measured, judged, summary_of, table_of
from measuring.times import Times

MACHINE = "machine.txt"


def options_of_command_line() -> argparse.Namespace:
    parser = argparse.ArgumentParser(prog="measuring")
    parser.add_argument("programs", type=Path)
    parser.add_argument("output", type=Path)
    parser.add_argument("document", type=Path)
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("--page", action="store_true")
    parser.add_argument("--only", nargs="+", metavar="PROGRAM")
    options = parser.parse_args()
    options.only = [name.removesuffix("_benchmark") for name in options.only or []]
    return options


def runs_of(options: argparse.Namespace) -> tuple[Run, ...]:
    for name in options.only:
        if name not in PROGRAMS:
            raise Problem(f"There is no program \"{name}\". There are: {', '.join(PROGRAMS)}")
    return tuple(
        run
        for run in RUNS
        if run.program in (options.only or PROGRAMS)
        if not (options.quick and run.is_slow)
    )


def tell_missed(times: Times) -> None:
    for each in judged(TABLES, times):
        if not each.is_met:
            print(f"missed: {each.words}", file=sys.stderr)


def print_tables(times: Times) -> None:
    for table in TABLES:
        if any(is_measured(row, times) for row in table.rows):
            print(f"## {table.subject}\n\n{table_of(table, times)}\n")
    print(summary_of(judged(TABLES, times)))


def write_page(file: Path, folder: Path, times: Times) -> None:
    """Nothing is written unless all of it can be."""
    contents = {"machine": (folder / MACHINE).read_text(encoding="utf-8").strip()}
    contents["targets"] = summary_of(judged(TABLES, times))
    contents |= {table.name: table_of(table, times) for table in TABLES}
    try:
        page = document.filled(file.read_text(encoding="utf-8"), contents)
    except Problem as problem:
        raise Problem(f"{file}: {problem}") from None
    for each in PLOTS:
        plot.draw(each, times, folder / f"{each.name}.svg")
    for each in PLOTS:
        shutil.copyfile(folder / f"{each.name}.svg", file.with_name(f"{file.stem}-{each.name}.svg"))
    file.write_text(page, encoding="utf-8")
    print(f"{file} is written.", file=sys.stderr)


def measure(options: argparse.Namespace) -> list[str]:
    """What went wrong."""
    folder = options.output / "quick" if options.quick else options.output
    runs = runs_of(options)
    if not options.page:
        folder.mkdir(parents=True, exist_ok=True)
        (folder / MACHINE).write_text(words_of_machine() + "\n", encoding="utf-8")
        problems = Benchmarks(options.programs, folder, options.quick).measure(runs)
        if problems:
            return problems
    if options.quick or options.only:
        times = read_results(folder, runs)
        if not options.only:
            check(times, runs)
        print_tables(times)
    else:
        times = read_results(folder, RUNS)
        check(times, RUNS)
        write_page(options.document, folder, times)
    tell_missed(times)
    return []


def main() -> int:
    heed_interruptions()
    try:
        problems = measure(options_of_command_line())
    except (Problem, OSError) as problem:
        problems = [words_of(problem)]
    for each in problems:
        print(f"FAILED: {each}", file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
