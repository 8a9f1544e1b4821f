"""The command of scripts/count-instructions, which builds first."""

from __future__ import annotations

import argparse
import sys
from pathlib import Path

from common.problems import Problem, words_of
from counting.comparison import problems_of, table_of
from counting.counts import count_of, paths_of
from counting.record import read_record, write_record


def run(program: Path, file: Path, write: bool) -> list[str]:
    """Prints a table; answers what is wrong."""
    record = {} if write else read_record(file)
    counts = {path: count_of(program, path) for path in paths_of(program)}
    print(table_of(record, counts))
    if write:
        write_record(file, counts)
        return []
    problems = problems_of(record, counts)
    if problems:
        problems.append("If that is meant, record it: scripts/count-instructions --write")
    return problems


def main() -> int:
    parser = argparse.ArgumentParser(prog="counting")
    parser.add_argument("program", type=Path)
    parser.add_argument("record", type=Path)
    parser.add_argument("--write", action="store_true")
    options = parser.parse_args()
    try:
        problems = run(options.program, options.record, options.write)
    except (Problem, OSError) as problem:
        problems = [words_of(problem)]
    for each in problems:
        print(each, file=sys.stderr)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
