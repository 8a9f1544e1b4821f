"""What Google Benchmark writes is read as it is meant."""

import json

import pytest
from conftest import entry, written

from common.problems import Problem
from measuring.times import read_times


def times(folder, *entries):
    return read_times(written(folder / "times.json", entries))


def test_the_median_of_the_repetitions_counts(tmp_path):
    read = times(tmp_path, entry("a", 5), entry("a", 1), entry("b", 7), entry("a", 90))
    assert read["a"].nanoseconds == 5
    assert read["b"].nanoseconds == 7
    assert times(tmp_path, entry("a", 5), entry("a", 1))["a"].nanoseconds == 3


def test_what_google_benchmark_makes_of_them_does_not(tmp_path):
    read = times(tmp_path, entry("a", 5), entry("a", 9, run_type="aggregate", aggregate_name="mean"))
    assert read["a"].nanoseconds == 5


@pytest.mark.parametrize(("unit", "nanoseconds"), [("ns", 3), ("us", 3e3), ("ms", 3e6), ("s", 3e9)])
def test_units_are_heeded(tmp_path, unit, nanoseconds):
    assert times(tmp_path, entry("a", 3, time_unit=unit))["a"].nanoseconds == nanoseconds


def test_repetitions_may_have_other_units(tmp_path):
    read = times(tmp_path, entry("a", 900), entry("a", 1, time_unit="us"), entry("a", 1.2, time_unit="us"))
    assert read["a"].nanoseconds == 1000


@pytest.mark.parametrize(
    ("name", "clock"),
    [
        ("a/b", "cpu_time"),
        ("a/real_time/b", "cpu_time"),
        ("a/real_time", "real_time"),
        ("a/manual_time", "real_time"),
        ("a/iterations:1/real_time", "real_time"),
        ("a/manual_time/threads:2", "real_time"),
    ],
)
def test_the_name_tells_the_clock(tmp_path, name, clock):
    (read,) = times(tmp_path, entry(name, real_time=2, cpu_time=3)).values()
    assert read.nanoseconds == {"real_time": 2, "cpu_time": 3}[clock]


def test_how_it_ran_is_no_part_of_a_name(tmp_path):
    read = times(tmp_path, entry("a/10/min_time:0.100/iterations:1/repeats:5/real_time", 2))
    assert list(read) == ["a/10"]


def test_one_benchmark_is_there_in_one_way(tmp_path):
    with pytest.raises(Problem, match="a is there in more than one way$"):
        times(tmp_path, entry("a"), entry("a/real_time"))


def test_counters_are_medians_too(tmp_path):
    read = times(tmp_path, *(entry("a", lost=lost, events=10, label="x") for lost in (0, 4, 1)))
    assert read["a"].counters == {"lost": 1, "events": 10}


def test_counters_of_some_repetitions_alone_are_a_failure(tmp_path):
    with pytest.raises(Problem, match="a has other counters in one repetition than in another$"):
        times(tmp_path, entry("a", lost=1), entry("a"))


def test_one_that_failed_is_a_failure(tmp_path):
    failed = entry("a", error_occurred=True, error_message="there is no sound server")
    with pytest.raises(Problem, match=r"times.json: a failed: there is no sound server$"):
        times(tmp_path, entry("a"), failed)


@pytest.mark.parametrize("time", [0, -1, float("nan"), float("inf")])
def test_no_time_at_all_is_a_failure(tmp_path, time):
    with pytest.raises(Problem, match="a took no time that can be compared"):
        times(tmp_path, entry("a", time))


@pytest.mark.parametrize(
    "text",
    [
        "",
        '{"benchmarks": [',
        "[]",
        "{}",
        '{"benchmarks": 1}',
        '{"benchmarks": [1]}',
        '{"benchmarks": [{"run_type": "iteration"}]}',
        json.dumps({"benchmarks": [entry("a", time_unit="min")]}),
        json.dumps({"benchmarks": [entry("a", time="much")]}),
    ],
)
def test_anything_else_is_a_failure(tmp_path, text):
    file = tmp_path / "times.json"
    file.write_text(text)
    with pytest.raises(Problem, match=r"times.json: this is not what Google Benchmark writes$"):
        read_times(file)
