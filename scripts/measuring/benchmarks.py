"""Runs the programs, one after the other: what runs beside is measured, too."""

from __future__ import annotations

import sys
from dataclasses import dataclass
from pathlib import Path

from common.programs import Patience, Program, interruptions, run
from measuring.results import file_of
from measuring.runs import Run, filter_of

REPETITIONS = 5
QUICK_SECONDS = 0.01  # of each
SECONDS_UNTIL_TOLD = 120
MOST_SECONDS = 3600  # more than ten times what one takes by itself


@dataclass(frozen=True)
class Benchmarks:
    programs: Path
    output: Path
    is_quick: bool

    def measure(self, runs: tuple[Run, ...]) -> list[str]:
        """What went wrong. What was measured before stays where that fails."""
        problems: list[str] = []
        for each in runs:
            fresh = self.output / f"{each.name}.new.json"
            fresh.unlink(missing_ok=True)
            before = len(problems)
            print(f"{each.name} ...", file=sys.stderr, flush=True)
            run(each.name, [self.program_of(each, fresh)], Patience(MOST_SECONDS, SECONDS_UNTIL_TOLD), problems)
            if interruptions:
                return [*problems, "interrupted"]
            if len(problems) == before:
                if fresh.exists():
                    fresh.replace(file_of(self.output, each))
                else:
                    problems.append(f"{each.program}_benchmark wrote nothing")
        return problems

    def program_of(self, each: Run, file: Path) -> Program:
        repetitions = 1 if self.is_quick or each.is_slow else REPETITIONS
        arguments = [
            str(self.programs / f"{each.program}_benchmark"),
            f"--benchmark_filter={filter_of(each)}",
            f"--benchmark_repetitions={repetitions}",
            "--benchmark_enable_random_interleaving=true",
            f"--benchmark_min_time={QUICK_SECONDS if self.is_quick else each.least_seconds}",
            f"--benchmark_out={file}",
            "--benchmark_out_format=json",
        ]
        return Program(f"{each.program}_benchmark", arguments, self.output / f"{each.name}.txt")
