"""Figures, verdicts and tables."""

import pytest

from measuring.figures import Count, Difference, Duration, Growth, Rate, Ratio, Size, shown_duration, shown_number
from measuring.rows import TABLES, Row, Table, compared
from measuring.runs import RUNS, filter_of, run_of
from measuring.tables import judged, summary_of, table_of
from measuring.times import Measured


def table(*rows, columns=("× floor",)):
    return Table("some", "some", "Some", columns, rows)


def lines(made, times):
    return table_of(made, times).splitlines()


TIMES = {"ours": Measured(120.0), "floor": Measured(100.0), "other": Measured(60.0)}


def test_a_row_has_ratios_first_and_times_last():
    row = compared("all", "ours", (("floor", "floor"), ("another", "other")), 1.5)
    assert lines(table(row, columns=("× floor", "× another")), TIMES) == [
        "|  | × floor | × another | target |  | times |",
        "| --- | --- | --- | --- | --- | --- |",
        "| all | 1.20 | 2.00 | ≤ 1.50 | met | ours 120 ns, floor 100 ns, another 60.0 ns |",
    ]


def test_what_no_row_has_is_no_column():
    row = compared("all", "ours", (("floor", "floor"),))
    assert lines(table(row), TIMES)[0] == "|  | × floor | times |"
    bare = Row("all", (Ratio("ours", "floor"),))
    assert lines(table(bare), TIMES) == ["|  | × floor |", "| --- | --- |", "| all | 1.20 |"]
    some = lines(table(row, compared("more", "ours", (("floor", "other"),), 3)), TIMES)
    assert some[0] == "|  | × floor | target |  | times |"
    assert some[2] == "| all | 1.20 |  |  | ours 120 ns, floor 100 ns |"


@pytest.mark.parametrize(
    ("time", "reached", "verdict"),
    [
        (119.0, "1.19", "met"),
        (120.0, "1.20", "met"),
        (120.004, "1.20004", "**missed**"),
        (120.4, "1.204", "**missed**"),
        (121.0, "1.21", "**missed**"),
    ],
)
def test_a_target_is_met_up_to_its_border(time, reached, verdict):
    row = compared("all", "ours", (("floor", "floor"),), 1.2)
    times = TIMES | {"ours": Measured(time)}
    cells = lines(table(row), times)[2].split(" | ")
    assert cells[1] == reached
    assert cells[2].startswith("≤ 1.2")
    assert cells[3] == verdict
    assert judged((table(row),), times)[0].is_met == (verdict == "met")


@pytest.mark.parametrize(("ours", "verdict"), [(2_000_099, "met"), (2_000_100, "met"), (2_000_101, "missed")])
def test_a_difference_is_met_up_to_its_border(ours, verdict):
    row = Row("all", (Difference("ours", "floor"),), 2e6)
    text = lines(table(row), TIMES | {"ours": Measured(float(ours))})[2]
    assert verdict in text
    assert "≤ 2.00 ms" in text


def test_what_must_not_be_at_all():
    row = Row("all", (Count("ours", "lost"),), 0)
    for lost, shown in ((0, "0 | ≤ 0 | met"), (1, "1 | ≤ 0 | **missed**"), (0.5, "0.50 | ≤ 0 | **missed**")):
        assert lines(table(row), {"ours": Measured(1.0, {"lost": lost})})[2] == f"| all | {shown} |"


def test_targets_are_summed_up():
    met, missed = (compared(what, "ours", (("floor", "floor"),), most) for what, most in (("a", 1.2), ("b", 1.1)))
    assert summary_of(judged((table(met),), TIMES)) == "1 of 1 targets are met."
    assert summary_of(judged((table(met, missed),), TIMES)).splitlines() == [
        "1 of 2 targets are met. Missed are:",
        "",
        "- Some: b: 1.20 × floor, aimed at ≤ 1.10",
    ]


def test_rows_that_were_not_measured_are_left_out():
    there = compared("all", "ours", (("floor", "floor"),), 1.2)
    gone = compared("more", "absent", (("floor", "floor"),), 1.2)
    assert lines(table(there, gone), TIMES)[3:] == []
    assert len(judged((table(there, gone),), TIMES)) == 1


def test_kinds_of_figures():
    times = {
        "a/10": Measured(50.0),
        "a/1000": Measured(10_000.0),
        "b": Measured(2e9, {"events": 1e6, "bytes": 3 * 2**20}),
    }
    growth, size, rate = Growth("a", 10, 1000), Size("b", "bytes"), Rate("b", "events")
    assert growth.needs == ("a/10", "a/1000")
    assert growth.value(times) == 2
    assert size.shown(size.value(times)) == "3.00 MiB"
    assert size.shown(100) == "100 bytes"
    assert rate.shown(rate.value(times)) == "500,000 a second"
    assert Duration("b").shown(Duration("b").value(times)) == "2.00 s"
    assert Difference("a/10", "a/1000").shown(-9950) == "-9.95 µs"


@pytest.mark.parametrize(
    ("nanoseconds", "shown"),
    [
        (0.291, "0.29 ns"),
        (999, "999 ns"),
        (1000, "1.00 µs"),
        (12_345, "12.3 µs"),
        (5e6, "5.00 ms"),
        (3.6e12, "3,600 s"),
    ],
)
def test_durations(nanoseconds, shown):
    assert shown_duration(nanoseconds) == shown


def test_small_ratios_are_told_apart():
    assert [shown_number(value) for value in (0.0123, 0.000456, 0.1, 0)] == ["0.012", "0.00046", "0.10", "0.00"]


def test_tables_are_well_formed():
    assert len({each.name for each in TABLES}) == len(TABLES)
    for each in TABLES:
        assert each.rows
        assert len({row.what for row in each.rows}) == len(each.rows)
        for row in each.rows:
            assert len(row.figures) <= len(each.columns)


def test_each_benchmark_is_of_one_run():
    assert run_of("calls", "call/wrapper").name == "calls"
    runs = [run_of("speech_files", f"file/warm/{size}").name for size in (10, 10**5, 10**6)]
    assert runs == ["speech_files", "speech_files-slow", "speech_files"]
    assert run_of("speech_files", "file/several/2").name == "speech_files"
    filters = {run.name: filter_of(run) for run in RUNS}
    assert filters["calls"] == "."
    assert filters["speech_files"] == "-^file/.*/100000(/|$)"
    assert filters["speech_files-slow"] == "^file/.*/100000(/|$)"
