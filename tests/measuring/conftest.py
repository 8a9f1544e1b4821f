"""What the tests share: results as Google Benchmark writes them, and programs that write such."""

from __future__ import annotations

import json
import pathlib
import subprocess
import sys

import pytest

from measuring.rows import TABLES
from measuring.runs import RUNS, run_of

SCRIPTS = pathlib.Path(__file__).parents[2] / "scripts"
PROSE = "What people wrote about it: | no | table |"

# Does as a benchmark does: writes those of its entries whose names the filter has.
PROGRAM = """#!/usr/bin/python3
import json, pathlib, re, sys
options = dict(option.split("=", 1) for option in sys.argv[1:])
wanted = options["--benchmark_filter"]
entries = json.loads(pathlib.Path(__file__ + ".entries").read_text())
chosen = [entry for entry in entries
          if (re.search(wanted[1:], entry["name"]) is None if wanted[0] == "-" else re.search(wanted, entry["name"]))]
pathlib.Path(options["--benchmark_out"]).write_text(json.dumps({"context": {}, "benchmarks": chosen}))
with open(__file__ + ".calls", "a") as calls:
    print(*sys.argv[1:], file=calls)
"""


def entry(name, time=100.0, **others):
    """A repetition."""
    return {
        "name": name,
        "run_name": name,
        "run_type": "iteration",
        "repetitions": 5,
        "repetition_index": 0,
        "threads": 1,
        "iterations": 10,
        "real_time": time,
        "cpu_time": time,
        "time_unit": "ns",
    } | others


def written(file, entries):
    file.parent.mkdir(parents=True, exist_ok=True)
    file.write_text(json.dumps({"context": {}, "benchmarks": entries}))
    return file


def all_entries(program):
    names = {name for table in TABLES if table.program == program for row in table.rows for name in row.needs}
    counters = {"lost": 0.0, "events": 1e6, "host_memory": 2048.0, "engine_memory": 1.5 * 2**20, "text_memory": 100.0}
    return [entry(name, **counters) for name in sorted(names)]


class Project:
    """A page, programs and a folder of results."""

    def __init__(self, folder):
        self.programs = folder / "programs"
        self.output = folder / "output"
        self.page = folder / "performance.md"
        self.programs.mkdir()
        self.write_page([table.name for table in TABLES])
        for program in {run.program for run in RUNS}:
            self.play(program, all_entries(program))

    def write_page(self, names):
        names = ["machine", "targets", *names]
        places = (f"{PROSE}\n\n<!-- {name} -->\nold\n<!-- end of {name} -->\n" for name in names)
        self.page.write_text("# Page\n\n" + "\n".join(places) + "\nThe end.\n")

    def play(self, program, entries):
        self.play_commands(program, PROGRAM)
        (self.programs / f"{program}_benchmark.entries").write_text(json.dumps(entries))

    def play_commands(self, program, commands):
        file = self.programs / f"{program}_benchmark"
        file.write_text(commands)
        file.chmod(0o700)

    def calls(self, program):
        file = self.programs / f"{program}_benchmark.calls"
        return file.read_text().splitlines() if file.exists() else []

    def measured(self):
        """As if all had been."""
        for run in RUNS:
            entries = [each for each in all_entries(run.program) if run_of(run.program, each["name"]) == run]
            self.write_results(run.name, entries)
        (self.output / "machine.txt").write_text("Measured on a machine.\n")

    def write_results(self, name, entries):
        written(self.output / f"{name}.json", entries)

    def run(self, *options):
        return subprocess.run(
            [sys.executable, "-B", "-m", "measuring", self.programs, self.output, self.page, *options],
            cwd=SCRIPTS,
            capture_output=True,
            text=True,
            timeout=100,
        )

    def write_anew(self):
        done = self.run("--page")
        assert done.returncode == 0, done.stderr
        return done


@pytest.fixture
def project(tmp_path):
    return Project(tmp_path)
