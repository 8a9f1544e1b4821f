"""The whole of it, with programs that only write what they are to."""

import os
import pathlib
import re
import signal
import subprocess
import sys
import time

import pytest
from conftest import PROSE, SCRIPTS, all_entries, entry

from measuring.rows import TABLES
from measuring.runs import RUNS

OWN_PAGE = SCRIPTS.parent / "docs/performance.md"


def without_contents(page):
    return re.sub(r"(<!-- ([\w-]+) -->).*?(<!-- end of \2 -->)", r"\1\3", page, flags=re.DOTALL)


def slow(name, factor):
    """The calls, of which one takes longer."""
    return [
        each | {"cpu_time": each["cpu_time"] * (factor if each["name"] == name else 1)} for each in all_entries("calls")
    ]


def test_a_whole_run_writes_the_page(project):
    before = project.page.read_text()
    done = project.run()
    assert done.returncode == 0, done.stderr
    assert done.stdout == ""
    page = project.page.read_text()
    assert without_contents(page) == without_contents(before)
    assert page.count(PROSE) == len(TABLES) + 2
    assert "\nold\n" not in page
    assert "| ASCII, 10,000,000 bytes | 1.00 | 1.00 | 1.00 | 1.00 | ≤ 1.20 | met |" in page
    assert "| engine that runs, 100,000 words | 1.00 | 1.00 | ≤ 1.05 | met |" in page
    assert "| one after the other | 0 | 1,000,000 | 10,000,000,000,000 a second | ≤ 0 | met | all 100 ns |" in page
    assert "| 10 words | 2.00 KiB | 1.50 MiB | 100 bytes |" in page
    machine = r"Measured on .+, \d+ processors, with GNUstep base 1\S+, espeak-ng 1\S+, PocketSphinx 0\S+\.\n"
    assert re.search(machine, page)
    assert "missed" not in done.stderr
    for name in ("strings", "collections", "files"):
        assert project.page.with_name(f"performance-{name}.svg").read_text().rstrip().endswith("</svg>")


def test_programs_are_run_as_they_are_to(project):
    project.run()
    (call,) = project.calls("calls")
    assert "--benchmark_repetitions=5" in call
    assert "--benchmark_enable_random_interleaving=true" in call
    assert "--benchmark_out_format=json" in call
    assert re.search(r"--benchmark_min_time=[0-9.]+ ", call)
    calls = project.calls("speech_files")
    assert [re.search(r"repetitions=(\d)", each)[1] for each in calls] == ["5", "1"]


def test_the_page_is_written_from_what_was_measured_last(project):
    project.measured()
    project.write_anew()
    page, picture = project.page.read_text(), project.page.with_name("performance-files.svg").read_text()
    assert "Measured on a machine.\n" in page
    assert [project.calls(run.program) for run in RUNS] == [[]] * len(RUNS)
    project.write_anew()
    assert project.page.read_text() == page
    assert project.page.with_name("performance-files.svg").read_text() == picture
    project.write_results("calls", slow("call/wrapper", 2))
    project.write_anew()
    assert "| 2.00 |  | ≤ 1.10 | **missed** |" in project.page.read_text()


def test_a_missed_target_is_told_and_no_failure(project):
    project.measured()
    project.write_results("calls", slow("call/wrapper", 1.5))
    done = project.write_anew()
    told = "Calls: service of the host, beside a call by its pointer: 1.50 × floor, aimed at ≤ 1.10\n"
    assert f"missed: {told}" in done.stderr
    assert f"- {told}" in project.page.read_text()


def test_a_quick_run_prints(project):
    page = project.page.read_text()
    project.play("calls", slow("call/wrapper", 1.5))
    done = project.run("--quick")
    assert done.returncode == 0, done.stderr
    assert done.stdout.startswith("## Calls\n\n|  | × floor |")
    assert "| engine that runs, 10,000 words |" in done.stdout
    assert "100,000 words" not in done.stdout
    assert "missed: Calls" in done.stderr
    assert "--benchmark_repetitions=1" in project.calls("calls")[0]
    assert len(project.calls("speech_files")) == 1
    assert project.page.read_text() == page
    assert project.run("--page").stderr.endswith("calls.json is missing: calls_benchmark was not measured yet\n")


def test_only_some_are_run_and_printed(project):
    page = project.page.read_text()
    project.play("values", [entry("value/date_to_host/ours", 300), entry("value/date_to_host/floor", 200)])
    done = project.run("--only", "values_benchmark", "calls")
    assert done.returncode == 0, done.stderr
    assert re.findall("^## (.*)$", done.stdout, re.MULTILINE) == ["Calls", "Values"]
    assert "| date, to the host | 1.50 | ours 300 ns, floor 200 ns |" in done.stdout
    assert "number" not in done.stdout
    assert project.calls("strings") == []
    assert project.page.read_text() == page


def test_there_are_programs_of_these_names_alone(project):
    done = project.run("--only", "calls", "nothing")
    assert done.returncode == 1
    assert done.stderr.startswith('FAILED: There is no program "nothing". There are: calls, loading, ')
    assert project.calls("calls") == []


@pytest.mark.parametrize("options", [(), ("--quick",)])
def test_missing_rows_are_a_failure(project, options):
    page = project.page.read_text()
    project.play("calls", [each for each in all_entries("calls") if each["name"] != "chain/last"])
    done = project.run(*options)
    assert done.returncode == 1
    assert done.stderr.endswith("FAILED: these were not measured: chain/last\n")
    assert project.page.read_text() == page
    assert done.stdout == ""


def test_many_missing_rows_are_counted(project):
    project.measured()
    project.write_results("values", [])
    done = project.run("--page")
    assert done.returncode == 1
    assert done.stderr.endswith(" and 11 more\n")


def test_a_missing_counter_is_a_failure(project):
    project.measured()
    project.write_results("events", [entry(each["name"]) for each in all_entries("events")])
    done = project.run("--page")
    assert done.returncode == 1
    assert done.stderr == "FAILED: events/million has no counter lost\n"


def test_a_benchmark_that_fails_is_a_failure(project):
    page = project.page.read_text()
    failed = entry("call/wrapper", error_occurred=True, error_message="it can't be")
    project.play("calls", [*all_entries("calls"), failed])
    done = project.run("--only", "calls")
    assert done.returncode == 1
    assert re.search(r"FAILED: \S+/calls.json: call/wrapper failed: it can't be\n$", done.stderr)
    assert project.page.read_text() == page


def test_a_program_that_fails_is_a_failure_and_the_others_run(project):
    page = project.page.read_text()
    project.measured()
    before = (project.output / "calls.json").read_text()
    project.play_commands("calls", "#!/bin/sh\necho 'it is broken' >&2; exit 3\n")
    project.play_commands("loading", "#!/bin/sh\n")
    (project.programs / "strings_benchmark").unlink()
    done = project.run()
    assert done.returncode == 1
    assert "FAILED: calls_benchmark failed (3):\nit is broken\nFAILED: loading_benchmark wrote nothing\n" in done.stderr
    assert re.search("FAILED: strings_benchmark can't be started: .*: No such file or directory\n$", done.stderr)
    assert len(project.calls("listening")) == 1
    assert (project.output / "calls.json").read_text() == before
    assert project.page.read_text() == page


def test_an_interruption_ends_it(project):
    project.play_commands("calls", "#!/bin/sh\necho $$ >\"$0.pid\"; exec sleep 1000\n")
    pid = project.programs / "calls_benchmark.pid"
    measuring = subprocess.Popen(
        [sys.executable, "-B", "-m", "measuring", project.programs, project.output, project.page],
        cwd=SCRIPTS,
        stderr=subprocess.PIPE,
        text=True,
    )
    while measuring.poll() is None and not (pid.exists() and pid.read_text().endswith("\n")):
        time.sleep(0.01)
    measuring.send_signal(signal.SIGTERM)
    assert measuring.communicate(timeout=100)[1].endswith("FAILED: interrupted\n")
    assert measuring.returncode == 1
    assert project.calls("loading") == []
    with pytest.raises(ProcessLookupError):
        os.kill(int(pid.read_text()), 0)


def test_a_missing_place_is_told_and_nothing_is_written(project):
    project.measured()
    project.write_page([table.name for table in TABLES if table.name != "growth"])
    page = project.page.read_text()
    done = project.run("--page")
    assert done.returncode == 1
    assert done.stderr == f"FAILED: {project.page}: <!-- growth --> is missing\n"
    assert project.page.read_text() == page
    assert not project.page.with_name("performance-files.svg").exists()


def test_our_own_page_has_all_places_and_pictures(project):
    project.measured()
    project.page.write_text(OWN_PAGE.read_text())
    project.write_anew()
    page = project.page.read_text()
    assert without_contents(page) == without_contents(OWN_PAGE.read_text())
    assert "Not measured yet" not in page
    for picture in re.findall(r"!\[.*\]\((.*)\)", page):
        assert pathlib.Path(project.page.parent, picture).exists()


def rises_of(curve, picture):
    """How much higher the end of each such curve is than its beginning."""
    in_key = r"M[^M]* "
    ends = r"M[0-9.]+,([0-9.]+) [^M']*,([0-9.]+)\s*'"
    paths = re.findall(rf"<title>{curve}</title>.*?<path [^>]* d='{in_key}{ends}", picture, re.DOTALL)
    return [float(begin) - float(end) for begin, end in paths]


def test_plots_show_growth(project):
    project.measured()
    sizes = ((each, int(each["name"].rsplit("/", 1)[1])) for each in all_entries("collections"))
    grown = [each | {"cpu_time": size if "/ours/" in each["name"] else 10} for each, size in sizes]
    project.write_results("collections", grown)
    project.write_anew()
    strings, collections, files = (
        project.page.with_name(f"performance-{name}.svg").read_text()
        for name in ("strings", "collections", "files")
    )
    for curve in ("ours", "GNUstep", "ICU", "memcpy"):
        assert rises_of(curve, strings) == [0] * 8
    for curve in ("engine that runs", "new process", "espeak-ng -w", "loop"):
        assert rises_of(curve, files) == [0]
    assert rises_of("floor", collections) == [0] * 4
    rises = rises_of("ours", collections)
    assert len(rises) == 4
    assert min(rises) > 100
