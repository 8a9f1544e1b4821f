"""Events: methods of subclasses, and callbacks."""

import functools
import gc
import inspect
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


@pytest.mark.parametrize("wrong", [3, "print", None])
def test_what_cannot_be_called_is_refused(echo, wrong):
    with pytest.raises(TypeError) as error:
        echo.on("Heard", wrong)
    assert str(error.value) == (
        f"the callback of Echo.Heard is {wrong!r}, which can't be called for the event Heard(what as Variant)"
    )
    assert echo.Tell(1) is False


def test_a_callback_that_can_not_take_the_arguments_is_refused(echo):
    with pytest.raises(TypeError, match=r"callback of Echo.Heard\(\) can't be called for the event Heard\(what as"):
        echo.on("Heard", lambda: None)
    with pytest.raises(TypeError, match=r"callback of Echo.Heard\(a, b\) can't be called for the event Heard"):
        echo.on("heard", lambda a, b: None)
    assert echo.Tell(1) is False


def test_a_callback_that_would_only_make_a_coroutine_is_refused(echo):
    async def hear(what):
        pass

    def generate(what):
        yield what

    for wrong in (hear, generate):
        with pytest.raises(TypeError, match="callback of Echo.Heard is a coroutine function or a generator"):
            echo.on("Heard", wrong)


@pytest.mark.parametrize(
    "fitting", [print, functools.partial(print, "heard"), lambda what, more=1: None, lambda *all: None, [].append]
)
def test_whatever_takes_the_arguments_is_a_callback(echo, fitting):
    assert echo.on("Heard", fitting) is fitting
    assert echo.Tell(1) is True


def test_a_decorator_that_passes_on_other_arguments_is_believed(echo):
    heard = []

    def without_arguments(function):
        @functools.wraps(function)
        def called(*_):
            function()

        return called

    @echo.on("Heard")
    @without_arguments
    def hear():
        heard.append(True)

    echo.Tell(1)
    assert heard == [True]


@pytest.mark.parametrize("wrong", [5, None, "print", property(lambda self: print)])
def test_a_class_with_something_else_in_place_of_the_method_is_refused(echoes, wrong):
    with pytest.raises(TypeError) as error:
        type("Wrong", (echoes.Echo,), {"Heard": wrong})
    assert str(error.value) == (
        f"Wrong.Heard is {wrong!r}, which can't be called for the event Heard(what as Variant)"
    )


def test_so_is_one_that_inherits_it(echoes):
    class Loud:
        Heard = 5

    with pytest.raises(TypeError, match="Wrong.Heard is 5, which can't be called for the event Heard"):

        class Wrong(Loud, echoes.Echo):
            pass


def test_so_is_one_that_was_given_it_later(echoes):
    class Later(echoes.Echo):
        pass

    Later.Heard = 5
    count = zqm._zqm.object_count()
    with pytest.raises(TypeError, match="Later.Heard is 5, which can't be called for the event Heard"):
        Later()
    assert zqm._zqm.object_count() == count


@pytest.mark.parametrize(
    "wrong, written",
    [
        (lambda self: None, "(self)"),
        (lambda self, one, other: None, "(self, one, other)"),
        (lambda: None, "()"),
        (staticmethod(lambda: None), "()"),
        (staticmethod(lambda self, what: None), "(self, what)"),
        (classmethod(lambda cls: None), "()"),
        (lambda self, *, what: None, "(self, *, what)"),
    ],
)
def test_a_method_that_can_not_take_the_arguments_is_refused(echoes, wrong, written):
    with pytest.raises(TypeError) as error:
        type("Wrong", (echoes.Echo,), {"Heard": wrong})
    message = f"Wrong.Heard{written} can't be called for the event Heard(what as Variant): "
    assert str(error.value).startswith(message)


def test_a_method_that_would_only_make_a_coroutine_is_refused(echoes):
    with pytest.raises(TypeError, match="Wrong.Heard is a coroutine function or a generator, of which the event"):

        class Wrong(echoes.Echo):
            async def Heard(self, what):
                pass


@pytest.mark.parametrize(
    "fitting",
    [
        lambda self, what, more=1: None,
        lambda *all: None,
        staticmethod(lambda what: None),
        classmethod(lambda cls, what: None),
        functools.partialmethod(lambda self, more, what: None, 1),
        functools.lru_cache(lambda self, what: None),
        print,
    ],
)
def test_whatever_takes_the_arguments_is_a_method(echoes, fitting):
    assert type("Right", (echoes.Echo,), {"Heard": fitting})().Tell(1) is True


def test_what_a_signature_does_not_show_is_told_by_the_call(echoes):
    class Hidden:
        __signature__ = inspect.Signature([inspect.Parameter("what", inspect.Parameter.POSITIONAL_ONLY)])

        def __call__(self):
            pass

    listener = type("Listener", (echoes.Echo,), {"Heard": Hidden()})()
    with pytest.raises(TypeError, match="positional argument"):
        listener.Tell(1)


def test_an_object_has_no_handler_by_assignment(echo):
    with pytest.raises(AttributeError, match=r'Heard is an event of Echo: on\("Heard", callback\) sets a callback'):
        echo.Heard = print
    with pytest.raises(AttributeError, match=r'Heard is an event of Echo: on\("Heard", callback\) sets a callback'):
        echo.heard = print


@pytest.mark.parametrize("wrong", [3, None, b"Heard"])
def test_what_is_no_name_of_an_event_is_told(echo, wrong):
    for use in (lambda: echo.on(wrong, print), lambda: echo.on(wrong), lambda: echo.off(wrong)):
        with pytest.raises(TypeError) as error:
            use()
        assert str(error.value) == f"the name of an event is a str, not {wrong!r}"


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
    with pytest.raises(zqm.CallError, match="Echo has no event Herd, but didFinishCounting, Heard, Ending"):
        echo.on("Herd", print)
    with pytest.raises(zqm.CallError, match="Echo has no event Herd"):

        @echo.on("Herd")
        def hear(what):
            pass

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
