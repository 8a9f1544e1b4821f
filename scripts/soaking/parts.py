"""The parts of a soak: which programs each runs, and what is made of what they leave."""

from __future__ import annotations

import argparse
import os
import re
import subprocess
from collections.abc import Callable
from dataclasses import dataclass

from common.problems import Problem, words_of
from common.programs import Patience, Program, run
from soaking import kills, plot, verdicts
from soaking.samples import Samples, read_samples

MOST_SAMPLES = 720  # of one program: one every five seconds of an hour
LEAST_INTERVAL = 0.2  # seconds
# glibc's malloc counts what its threads keep for their next call as in use: some 100 KiB, which fill slowly.
KEEPS_NOTHING_FREED = {"GLIBC_TUNABLES": "glibc.malloc.tcache_count=0"}
# What one may take on a busy machine, more than ten times what it takes by itself.
SECONDS_OF_KILL = 1
SECONDS_OF_FAULTS = 6 * 3600
SECONDS_OF_CALL = 0.05
SECONDS_TO_LIST_TESTS = 60
FAULT_TESTS = (
    "engine_faults_test",
    "engine_deadlines_test",
    "engine_conversation_faults_test",
    "faults_test",
    "host_descriptors_test",
    "mounted_faults_test",
)
SKIPPED_TEST = re.compile(r"\[  SKIPPED \] .* ms\)$")
FAILED_TEST = re.compile(r"\[  FAILED  \] ([^\s,]+\.[^\s,]+)")


@dataclass(frozen=True)
class Part:
    name: str
    programs: list[Program]
    seconds: float  # after which they are ended
    judge: Callable[[list[Program]], list[str]]  # prints what came of it, and answers what is wrong

    def run(self, seconds_until_told: float, problems: list[str]) -> None:
        """Adds to the problems. What there is by an interruption is judged, too."""
        try:
            run(self.name, self.programs, Patience(self.seconds, seconds_until_told), problems)
        except OSError as problem:
            problems.append(words_of(problem))
        finally:
            try:
                problems += self.judge(self.programs)
            except (Problem, OSError) as problem:
                problems.append(words_of(problem))


def parts_of(options: argparse.Namespace) -> list[Part]:
    parts = []
    if options.seconds > 0:
        parts.append(soak(options))
    if options.kills > 0:
        parts.append(kill_engines(options))
    if options.faults:
        parts += [do_faults(options, test) for test in FAULT_TESTS]
    if options.fuzz_calls > 0:
        parts.append(fuzz(options))
    return parts


def soak(options: argparse.Namespace) -> Part:
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

    def judge(programs: list[Program]) -> list[str]:
        problems = []
        all_samples = []
        for program in programs:
            try:
                samples = read_samples(program.output)
                all_samples.append(samples)
                problems += report(samples)
            except (Problem, OSError) as problem:
                problems.append(words_of(problem))
        if all_samples:
            picture = options.output / "soak.svg"
            plot.draw(all_samples, picture)
            print(f"{picture} shows it.\n")
        return problems

    return Part("random host programs", programs, options.seconds + options.seconds_beyond, judge)


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


def kill_engines(options: argparse.Namespace) -> Part:
    programs = []
    for lane, share in enumerate(shares(options.kills, options.lanes)):
        seed = options.seed + lane
        arguments = [str(options.programs / "engine_kills"), str(share), str(seed)]
        output = options.output / f"kills {lane + 1}.tsv"
        programs.append(Program(f"killing engines {lane + 1} (seed {seed})", arguments, output))

    def judge(programs: list[Program]) -> list[str]:
        print(kills.table_of(kills.sum_of([program.output for program in programs])) + "\n")
        return []

    limit = options.kills / options.lanes * SECONDS_OF_KILL + options.seconds_beyond
    return Part("killing engines", programs, limit, judge)


def do_faults(options: argparse.Namespace, test: str) -> Part:
    path, all_faults = str(options.programs / test), {"ZQM_ALL_FAULTS": "1"}
    words = test.removesuffix("_test").replace("_", " ")
    programs = []
    for lane in range(options.lanes):
        share = {"GTEST_TOTAL_SHARDS": str(options.lanes), "GTEST_SHARD_INDEX": str(lane)}
        output = options.output / f"{words} {lane + 1}.txt"
        programs.append(Program(f"{words} {lane + 1}", [path], output, all_faults | share))

    def judge(programs: list[Program]) -> list[str]:
        told = [program.output.read_text(encoding="utf-8", errors="replace") for program in programs]
        lines = "".join(told).splitlines()
        passed = sum(line.startswith("[       OK ]") for line in lines)
        skipped = sum(SKIPPED_TEST.match(line) is not None for line in lines)  # what this machine doesn't allow
        wanted = tests_of(path, all_faults)
        print(f"{words}: {passed} of {wanted} tests as expected" + (f", {skipped} skipped" if skipped else ""))
        is_short = passed + skipped != wanted or wanted == 0
        problems = [f"{words}: {passed} of {wanted} tests passed"] if is_short else []
        return problems + sorted({f"{match[1]} failed" for match in map(FAILED_TEST.match, lines) if match})

    return Part(words, programs, SECONDS_OF_FAULTS + options.seconds_beyond, judge)


def tests_of(program: str, environment: dict[str, str]) -> int:
    try:
        result = subprocess.run(
            [program, "--gtest_list_tests"],
            env=os.environ | environment,
            stdin=subprocess.DEVNULL,
            capture_output=True,
            text=True,
            errors="replace",
            timeout=SECONDS_TO_LIST_TESTS,
            check=True,
        )
    except subprocess.SubprocessError as error:
        raise Problem(f"{program} doesn't tell its tests: {error}") from None
    return sum(line.startswith("  ") for line in result.stdout.splitlines())


def fuzz(options: argparse.Namespace) -> Part:
    programs = []
    for lane, share in enumerate(shares(options.fuzz_calls, options.lanes)):
        seed = options.seed + lane
        output = options.output / f"calls {lane + 1}.txt"
        arguments = [str(options.fuzz_program), "--calls", str(share), "--seed", str(seed)]
        arguments += ["--keep", str(output.with_suffix(".input"))]
        programs.append(Program(f"random host calls {lane + 1} (seed {seed})", arguments, output))

    def judge(programs: list[Program]) -> list[str]:
        for program in programs:
            print(f"{program.name}: {program.output.read_text(encoding='utf-8', errors='replace').strip()}")
        return []

    limit = options.fuzz_calls / options.lanes * SECONDS_OF_CALL + options.seconds_beyond
    return Part("random host calls", programs, limit, judge)
