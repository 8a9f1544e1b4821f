"""The command of scripts/soak, which builds first."""

from __future__ import annotations

import argparse
import io
import sys
from pathlib import Path

from common.problems import words_of
from common.programs import heed_interruptions, interruptions
from soaking.parts import parts_of

KILLS_OF_ALL = 100_000
CALLS_OF_ALL = 1_000_000


def options_of_command_line() -> argparse.Namespace:
    parser = argparse.ArgumentParser(prog="soaking")
    parser.add_argument("programs", type=Path)
    parser.add_argument("output", type=Path)
    parser.add_argument("--seconds", type=float, required=True)
    parser.add_argument("--seed", type=int, required=True)
    parser.add_argument("--lanes", type=int, required=True)
    parser.add_argument("--all", action="store_true")
    parser.add_argument("--kills", type=int)
    parser.add_argument("--faults", action="store_true")
    parser.add_argument("--fuzz-calls", type=int)
    parser.add_argument("--fuzz-program", type=Path)
    parser.add_argument("--leak", choices=("memory", "descriptors", "handles"))
    parser.add_argument("--seconds-until-told", type=float, default=300)
    # What a part may take beyond its own time on a busy machine.
    parser.add_argument("--seconds-beyond", type=float, default=900)
    options = parser.parse_args()
    if options.kills is None:
        options.kills = KILLS_OF_ALL if options.all else 0
    if options.fuzz_calls is None:
        options.fuzz_calls = CALLS_OF_ALL if options.all else 0
    options.faults = options.faults or options.all
    return options


def main() -> int:
    options = options_of_command_line()
    heed_interruptions()
    if isinstance(sys.stdout, io.TextIOWrapper):
        sys.stdout.reconfigure(line_buffering=True)  # a part may take an hour
    problems: list[str] = []
    try:
        options.output.mkdir(parents=True, exist_ok=True)
        for part in parts_of(options):
            part.run(options.seconds_until_told, problems)
            if interruptions:
                problems.append("interrupted")
                break
    except OSError as problem:
        problems.append(words_of(problem))
    for each in problems:
        print(f"FAILED: {each}", file=sys.stderr)
    if not problems:
        print("Nothing failed, and nothing grows." if options.seconds > 0 else "Nothing failed.")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
