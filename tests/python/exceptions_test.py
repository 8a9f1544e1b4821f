"""Exceptions of the host in Python, and Python's own on their way through the host."""

import sys

import pytest

import zqm


def test_an_exception_of_the_host_arrives_as_its_class(widgets):
    with pytest.raises(zqm.OutOfBoundsException) as raised:
        widgets.Widget().Raise("OutOfBoundsException", "too far", 12)
    assert (raised.value.message, raised.value.number, str(raised.value)) == ("too far", 12, "too far")
    assert isinstance(raised.value, zqm.HostException)
    assert isinstance(raised.value, zqm.RuntimeException)
    assert isinstance(raised.value, zqm.Error)
    assert raised.value.others == ()


def test_every_builtin_class_of_exceptions_has_its_own(widgets):
    classes = zqm.RuntimeException.__subclasses__()
    for one in classes:
        if one.__module__.startswith("zqm."):
            with pytest.raises(one, match="why"):
                widgets.Widget().Raise(one.__name__, "why")
    assert len(classes) > 5


def test_a_plugins_class_of_exceptions_has_its_members(echoes):
    with pytest.raises(echoes.EchoException) as raised:
        echoes.Echo.Raise("EchoException", "from the plugin", 3)
    error = raised.value
    assert (error.message, error.number, str(error)) == ("from the plugin", 3, "from the plugin")
    assert error.Code() == 77
    assert error.object is error
    assert isinstance(error, zqm.RuntimeException)
    assert isinstance(error, zqm.Object)


def test_all_that_one_call_raised_is_there(widgets):
    with pytest.raises(zqm.OutOfBoundsException, match="from OutOfBoundsException") as raised:
        widgets.Widget().RaiseTwice()
    (other,) = raised.value.others
    assert type(other) is zqm.RuntimeException
    assert other.message == "from RuntimeException"


def test_what_a_handler_raises_leaves_the_call_as_itself(echo):
    error = KeyError("mine")

    def fail(what):
        raise error

    echo.on("Heard", fail)
    with pytest.raises(KeyError) as raised:
        echo.Tell(1)
    assert raised.value is error
    assert "fail" in [entry.name for entry in raised.traceback]
    echo.off("Heard")
    assert echo.Back(1) == 1


@pytest.mark.parametrize("kind", [KeyboardInterrupt, SystemExit, GeneratorExit])
def test_so_do_exceptions_that_are_no_errors(echo, kind):
    def leave(what):
        raise kind("now")

    echo.on("Heard", leave)
    with pytest.raises(kind):
        echo.Tell(1)


def test_a_host_exception_passes_through_a_handler(echo):
    echo.on("Heard", lambda what: echo.Raise("KeyNotFoundException", "inner", 4))
    with pytest.raises(zqm.KeyNotFoundException, match="inner"):
        echo.Tell(1)


def test_exceptions_leave_nothing_behind(echo, widgets):
    def fail(what):
        raise KeyError(what)

    def round_of_failures():
        for _ in range(100):
            with pytest.raises(KeyError):
                echo.Tell(1)
            with pytest.raises(zqm.OutOfBoundsException):
                widgets.Widget().RaiseTwice()

    echo.on("Heard", fail)
    round_of_failures()
    before = zqm._zqm.object_count()
    round_of_failures()
    assert zqm._zqm.object_count() == before


def test_exceptions_can_be_made_in_python():
    error = zqm.OutOfBoundsException("mine", 3)
    assert (error.message, error.number, str(error), error.object) == ("mine", 3, "mine", None)
