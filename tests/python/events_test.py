"""Events: methods of subclasses, and callbacks."""

import gc
import weakref

import pytest

import zqm

PINGS = [(-3, 2.25, 0.5, False, -7, "hello"), (4, -1.0, 3.0, True, 8, "")]


def test_a_method_of_a_subclass_is_called_with_the_arguments(widgets):
    class Listener(widgets.Widget):
        def pinged(self, *arguments):
            heard.append(arguments)

    heard = []
    listener = Listener()
    assert listener.Ping("hello") is True
    assert [one[:-1] for one in heard] == PINGS
    assert heard[0][-1] is listener
    assert heard[1][-1] is None


def test_nobody_is_called_where_nobody_listens(widgets):
    assert widgets.Widget().Ping("hello") is False


def test_the_classes_own_method_does_nothing(widgets):
    assert widgets.Widget().pinged(1, 2, 3, 4, 5, 6, 7) is None


def test_a_method_can_be_inherited_from_a_python_class(widgets):
    class Loud:
        def pinged(self, *arguments):
            self.heard = True

    class Listener(Loud, widgets.Gadget):
        heard = False

    listener = Listener()
    listener.Ping("hello")
    assert listener.heard


def test_callbacks_come_and_go(echo):
    heard = []
    echo.on("Heard", heard.append)
    assert echo.Tell(1) is True
    echo.on("heard", lambda what: heard.append(-what))  # the host's names have no case
    echo.Tell(2)
    echo.off("Heard")
    assert echo.Tell(3) is False
    assert heard == [1, -2]


def test_what_cannot_be_called_is_refused(echo):
    with pytest.raises(TypeError, match="3 can't be called"):
        echo.on("Heard", 3)


def test_on_decorates(echo):
    heard = []

    @echo.on("Heard")
    def remember(what):
        heard.append(what)

    echo.Tell(1)
    assert heard == [1]
    assert callable(remember)


def test_the_method_comes_before_the_callback(echoes):
    class Listener(echoes.Echo):
        def Heard(self, what):
            heard.append(("method", what))

    heard = []
    listener = Listener()
    listener.on("Heard", lambda what: heard.append(("callback", what)))
    listener.Tell(1)
    listener.off("Heard")
    listener.Tell(2)
    assert heard == [("method", 1), ("callback", 1), ("method", 2)]


def test_unknown_events_are_told(echo):
    with pytest.raises(zqm.CallError, match="Echo has no event Herd"):
        echo.on("Herd", print)
    with pytest.raises(zqm.CallError, match="Echo has no event Herd"):
        echo.off("Herd")


def test_a_method_whose_case_differs_is_told(echoes):
    with pytest.raises(TypeError, match="Wrong.heard: the event is called Heard"):

        class Wrong(echoes.Echo):
            def heard(self, what):
                pass


def test_a_handler_may_drop_its_object(echoes):
    holder = [echoes.Echo()]
    holder[0].on("Heard", lambda what: holder.clear())
    assert holder[0].Tell(1) is True
    assert holder == []


def test_a_handler_may_replace_itself(echo):
    heard = []
    echo.on("Heard", lambda what: echo.on("Heard", lambda other: heard.append((what, other))))
    echo.Tell(1)
    echo.Tell(2)
    assert heard == [(1, 2)]


def test_a_handler_may_call_its_object(echo):
    echo.on("Heard", lambda depth: depth and echo.Tell(depth - 1) and heard.append(depth))
    heard = []
    echo.Tell(3)
    assert heard == [1, 2, 3]


def test_a_callback_that_holds_its_object_keeps_no_object_for_ever(echoes):
    echo = echoes.Echo()
    echo.on("Heard", lambda what: echo.Number)
    gc.collect()
    before = zqm._zqm.object_count()
    gone = weakref.ref(echo)
    del echo
    gc.collect()
    assert gone() is None
    assert zqm._zqm.object_count() == before - 1


def test_what_an_object_raises_as_it_ends_reaches_nobody(widgets):
    widget = widgets.Widget()
    heard = []
    widget.on("Ending", lambda: heard.append("end"))
    del widget
    assert heard == []
