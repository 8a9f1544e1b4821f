"""Values on their way to the host and back."""

import datetime
import pathlib

import pytest

import zqm

# Codes of Variants.
INTEGER, DOUBLE, DATE, STRING, OBJECT, BOOLEAN = 2, 5, 7, 8, 9, 11
ARRAY = 4096


@pytest.mark.parametrize(
    ("value", "kind"),
    [
        (None, 0),
        (True, BOOLEAN),
        (False, BOOLEAN),
        (-(2**63), INTEGER),
        (2**63 - 1, INTEGER),
        (0.1, DOUBLE),
        (float("inf"), DOUBLE),
        ("", STRING),
        ("Grüße 🎈\0and more", STRING),
        (b"", OBJECT),
        (b"\x00\xff", OBJECT),
        (datetime.datetime(2024, 2, 29, 23, 59, 58), DATE),
        (pathlib.Path("/a folder/Grüße"), OBJECT),
        ({}, OBJECT),
        ({"a": 1, 2: [True, None], None: {"b": b"c"}}, OBJECT),
        ([], ARRAY + OBJECT),
        (["a", "b"], ARRAY + STRING),
        ([1, 2], ARRAY + INTEGER),
        ([1.5, 2.5], ARRAY + DOUBLE),
        ([True, False], ARRAY + BOOLEAN),
        ([datetime.datetime(1900, 1, 1)], ARRAY + DATE),
        ([1, "a", None, [2, [3]]], ARRAY + OBJECT),
    ],
)
def test_values_come_back_the_same(echo, value, kind):
    back = echo.Back(value)
    assert back == value
    assert type(back) is type(value)
    assert echo.Kind(value) == kind


@pytest.mark.parametrize(
    ("value", "back"),
    [
        ((1, 2), [1, 2]),
        ([1, 2.5], [1.0, 2.5]),
        ([True, 2], [True, 2]),
        (bytearray(b"ab"), b"ab"),
        (datetime.date(2024, 2, 29), datetime.datetime(2024, 2, 29)),
        (datetime.datetime(2024, 2, 29, 1, 2, 3, 999999), datetime.datetime(2024, 2, 29, 1, 2, 3)),
        (pathlib.Path("relative"), pathlib.Path.cwd() / "relative"),
    ],
)
def test_values_that_the_host_has_not_come_back_as_what_it_has(echo, value, back):
    assert echo.Back(value) == back


def test_times_of_a_zone_are_told_in_local_time(echo):
    time = datetime.datetime(2024, 6, 1, 12, tzinfo=datetime.timezone.utc)
    assert echo.Back(time).astimezone() == time


def test_arguments_and_results_of_each_type(echo):
    assert echo.Strings(["a", ""]) == ["a", ""]
    assert echo.Numbers([1, 2]) == [1.0, 2.0]
    assert echo.Variants([1, "a"]) == [1, "a"]
    assert echo.Block(b"ab") == b"ab"
    assert echo.Item(pathlib.Path("/tmp")) == pathlib.Path("/tmp")
    assert echo.Day(datetime.date(2024, 1, 2)) == datetime.datetime(2024, 1, 2)
    assert echo.Table({"a": 1}) == {"a": 1}
    assert echo.Words("Grüße") == "Grüße"
    assert echo.Address(4096) == 4096
    assert echo.Nothing() == ""


def test_an_empty_list_is_of_the_declared_type(echo):
    assert echo.Count([]) == 0
    assert echo.Strings([]) == []
    assert echo.Numbers(()) == []


def test_lists_choose_between_overloads(echo):
    assert echo.Measure(["a", "b"]) == 2
    assert echo.Measure([1, 2]) == 1002
    with pytest.raises(zqm.CallError, match="fits no declaration"):
        echo.Measure([])


def test_none_is_nil_of_any_object(echo):
    results = [echo.Strings(None), echo.Block(None), echo.Item(None), echo.Table(None), echo.Text8(None)]
    assert results == [None, None, None, None, ""]


def test_bytes_are_text_without_encoding_where_text_is_declared(echo):
    no_encoding = 0xFFFF
    assert echo.Encoding(b"ab") == no_encoding
    assert echo.Encoding("ab") == 0x08000100
    assert echo.Text8(b"ab") == "ab"
    assert echo.Text8(b"\xff") == b"\xff"


def test_values_of_other_kinds_are_told(echo):
    for value in ({1}, object(), 1j, range(3)):
        with pytest.raises(TypeError, match="the host has no values of the kind " + type(value).__name__):
            echo.Back(value)
    with pytest.raises(OverflowError):
        echo.Back([2**63])


def test_text_that_is_no_unicode_is_told(echo):
    with pytest.raises(UnicodeEncodeError):
        echo.Back("\ud800")


def test_containers_that_hold_themselves_are_told(echo):
    endless = []
    endless.append(endless)
    with pytest.raises(RecursionError, match="host value"):
        echo.Back(endless)
    endless = {}
    endless["a"] = endless
    with pytest.raises(RecursionError, match="host value"):
        echo.Back(endless)


def test_keys_that_can_not_stand_side_by_side_are_told(echo):
    # The host has one key for a number, and others for true and false; Python the other way round.
    assert echo.Back({1: "a", "1": "b"}) == {1: "a", "1": "b"}
    assert echo.Back({True: "a"}) == {True: "a"}
    time = datetime.datetime(2024, 1, 1)
    with pytest.raises(zqm.CallError, match="the same for the host"):
        echo.Back({time: 1, datetime.date(2024, 1, 1): 2})


def test_paths_that_are_no_unicode_stay_the_same(echo):
    path = pathlib.Path("/tmp/\udcff")
    assert echo.Back(path) == path


def test_parts_of_text_are_counted_as_the_host_counts():
    assert zqm.utf16_slice("one two", 4, 3) == "two"
    assert zqm.utf16_slice("🎈🎈 two", 5, 3) == "two"
    assert zqm.utf16_slice("", 0, 0) == ""
