"""The command of scripts/soak, which builds first."""

from __future__ import annotations

import argparse
import sys
from pathlib import Path

from soaking import kills, plot, verdicts
from soaking.problems import Problem
from soaking.programs import Program, run
from soaking.samples import Samples, read_samples

MOST_SAMPLES = 720  # of one program: one every five seconds of an hour
LEAST_INTERVAL = 0.2  # seconds
# glibc's malloc counts what its threads keep for their next call as in use: some 100 KiB, which fill slowly.
KEEPS_NOTHING_FREED = {"GLIBC_TUNABLES": "glibc.malloc.tcache_count=0"}
SECONDS_BEYOND = 900  # what an episode may take on a busy machine


def soak(options: argparse.Namespace) -> list[str]:
    """What failed or grew."""
    interval = max(LEAST_INTERVAL, options.seconds / MOST_SAMPLES)
    programs = []
    for lane in range(options.lanes):
        seed = options.seed + lane
        arguments = [str(options.programs / "soak_host"), str(options.seconds), str(seed), str(interval)]
        if options.leak:
            arguments += ["--leak", options.leak]
        name = f"host program {lane + 1}"
        output = options.output / f"{name}.csv"
        programs.append(Program(f"{name} (seed {seed})", arguments, output, KEEPS_NOTHING_FREED))
    problems = run(programs, options.seconds + SECONDS_BEYOND)
    all_samples = []
    for program in programs:
        try:
            samples = read_samples(program.output)
            problems += report(samples)
            all_samples.append(samples)
        except Problem as problem:
            problems.append(str(problem))
    if all_samples:
        picture = options.output / "soak.svg"
        try:
            plot.draw(all_samples, picture)
            print(f"{picture} shows it.\n")
        except Problem as problem:
            problems.append(str(problem))
    return problems


def report(samples: Samples) -> list[str]:
    found = verdicts.verdicts_of(samples)
    episodes, minutes = samples.columns["episodes"][-1], samples.seconds[-1] / 60
    print(f"{samples.name}: {len(samples.seconds)} samples, {episodes:.0f} episodes in {minutes:.1f} minutes")
    print(verdicts.table_of(found))
    if samples.done:
        print("done: " + ", ".join(f"{count} {name}" for name, count in samples.done.items()))
    print()
    return [f"{samples.name}: {each.measure.name} grows" for each in found if each.grows]


def shares(whole: int, lanes: int) -> list[int]:
    return [(whole + lane) // lanes for lane in range(lanes) if (whole + lane) // lanes > 0]


def kill_engines(options: argparse.Namespace) -> list[str]:
    programs = []
    for lane, share in enumerate(shares(options.kills, options.lanes)):
        seed = options.seed + lane
        arguments = [str(options.programs / "engine_kills"), str(share), str(seed)]
        output = options.output / f"kills {lane + 1}.tsv"
        programs.append(Program(f"killing engines {lane + 1} (seed {seed})", arguments, output))
    problems = run(programs)
    print(kills.table_of(kills.sum_of([program.output for program in programs])))
    print()
    return problems


def do_faults(options: argparse.Namespace) -> list[str]:
    programs = []
    for lane in range(options.lanes):
        share = {"GTEST_TOTAL_SHARDS": str(options.lanes), "GTEST_SHARD_INDEX": str(lane), "ZQM_ALL_FAULTS": "1"}
        output = options.output / f"faults {lane + 1}.txt"
        programs.append(
            Program(f"faults of engines {lane + 1}", [str(options.programs / "engine_faults_test")], output, share)
        )
    problems = run(programs)
    told = "".join(program.output.read_text(encoding="utf-8", errors="replace") for program in programs)
    lines = told.splitlines()
    print(f"{sum(line.startswith('[       OK ]') for line in lines)} faults of engines and their messages: as expected")
    return problems + sorted({line.split(",")[0] for line in lines if line.startswith("[  FAILED  ]") and "/" in line})


def fuzz(options: argparse.Namespace) -> list[str]:
    programs = []
    for lane, share in enumerate(shares(options.fuzz_calls, options.lanes)):
        seed = options.seed + lane
        output = options.output / f"calls {lane + 1}.txt"
        arguments = [str(options.fuzz_program), "--calls", str(share), "--seed", str(seed)]
        arguments += ["--keep", str(output.with_suffix(".input"))]
        programs.append(Program(f"random host calls {lane + 1} (seed {seed})", arguments, output))
    problems = run(programs)
    for program in programs:
        print(f"{program.name}: {program.output.read_text(encoding='utf-8').strip()}")
    return problems


def main() -> int:
    parser = argparse.ArgumentParser(prog="soaking")
    parser.add_argument("programs", type=Path)
    parser.add_argument("output", type=Path)
    parser.add_argument("--seconds", type=float, required=True)
    parser.add_argument("--seed", type=int, required=True)
    parser.add_argument("--lanes", type=int, required=True)
    parser.add_argument("--kills", type=int, default=0)
    parser.add_argument("--faults", action="store_true")
    parser.add_argument("--fuzz-calls", type=int, default=0)
    parser.add_argument("--fuzz-program", type=Path)
    parser.add_argument("--leak", choices=("memory", "descriptors", "handles"))
    options = parser.parse_args()
    options.output.mkdir(parents=True, exist_ok=True)
    problems: list[str] = []
    try:
        if options.seconds > 0:
            problems += soak(options)
        if options.kills > 0:
            problems += kill_engines(options)
        if options.faults:
            problems += do_faults(options)
        if options.fuzz_calls > 0:
            problems += fuzz(options)
    except Problem as problem:
        problems.append(str(problem))
    except KeyboardInterrupt:
        problems.append("interrupted")
    for each in problems:
        print(f"FAILED: {each}", file=sys.stderr)
    if not problems:
        print("Nothing failed, and nothing grows." if options.seconds > 0 else "Nothing failed.")
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
