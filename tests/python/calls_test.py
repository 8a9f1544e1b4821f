"""Methods, properties and constants of host classes."""

import copy
import inspect
import pickle

import pytest

import zqm


def test_an_object_is_made_by_the_constructor_that_fits(widgets):
    assert widgets.Widget().Count == 1
    assert widgets.Widget("a title").Title == "a title"


def test_a_constructor_that_does_not_fit_is_told(widgets):
    with pytest.raises(zqm.CallError, match=r"Widget\.Constructor\(Double\) fits no declaration"):
        widgets.Widget(1.5)


def test_a_class_without_constructor_takes_no_arguments(echoes):
    with pytest.raises(TypeError, match=r"Echo\(\) takes no arguments"):
        echoes.Echo(1)


def test_a_class_that_host_code_can_not_make_says_so(speech):
    with pytest.raises(zqm.CallError, match="NSVoiceZQM.Constructor can't be called by host code"):
        speech.NSVoiceZQM()


def test_the_base_class_can_not_be_made():
    with pytest.raises(zqm.CallError, match="objects of Object are not made by its name"):
        zqm.Object()


def test_an_object_is_made_once(widgets):
    widget = widgets.Widget()
    with pytest.raises(zqm.CallError, match="has been made already"):
        widget.__init__()


def test_a_subclass_that_forgot_to_make_the_object_is_told(widgets):
    class Forgetful(widgets.Widget):
        def __init__(self):
            pass

    told = r"this Forgetful has not been made: __init__ has to call super\(\).__init__\(\)"
    with pytest.raises(zqm.CallError, match=told):
        Forgetful().Add(1)
    with pytest.raises(zqm.CallError, match=told):
        Forgetful().on("pinged", print)
    with pytest.raises(zqm.CallError, match=r"an argument that has not been made: .* super\(\).__init__\(\)"):
        widgets.Widget().Describe(Forgetful())


def test_overloads_are_chosen_as_the_host_does(widgets):
    widget = widgets.Widget()
    assert widget.Describe("a") == "string a"
    assert widget.Describe(3) == "integer 3"
    assert widget.Describe(widget) == "widget"
    with pytest.raises(zqm.CallError, match="fits more than one declaration alike"):
        widget.Describe(None)
    with pytest.raises(zqm.CallError, match=r"Describe\(Boolean\) fits no declaration"):
        widget.Describe(True)


def test_a_subclass_inherits_overloads(widgets):
    gadget = widgets.Gadget()
    assert isinstance(gadget, widgets.Widget)
    assert gadget.Describe("a") == "gadget a"
    assert gadget.Describe(3) == "integer 3"
    assert gadget.Add(1, 2) == 3


def test_arguments_can_be_left_out(widgets):
    assert widgets.Widget().Add(1) == 11
    assert widgets.Widget().Narrow(1, 2, 3.5) == 1006


def test_integers_out_of_range_are_told(widgets):
    with pytest.raises(zqm.CallError, match="out of the range"):
        widgets.Widget().Narrow(2**31, 2, 3.5)
    with pytest.raises(OverflowError):
        widgets.Widget().Add(2**63)
    assert widgets.Widget().Add(2**63 - 1, 0) == 2**63 - 1


def test_references_are_read_and_replaced(widgets):
    widget, other = widgets.Widget(), widgets.Widget()
    text = zqm.ByRef("so")
    widget.Exclaim(text)
    assert text.value == "so!"
    number = zqm.ByRef(4)
    widget.Increase(number)
    assert number.value == 5
    reference = zqm.ByRef(other)
    assert widget.Replace(reference) is True
    assert reference.value is widget
    assert repr(text) == "ByRef('so!')"


def test_none_is_a_reference_that_nobody_reads(widgets):
    assert widgets.Widget().Replace(None) is False


def test_a_value_is_no_reference(widgets):
    with pytest.raises(zqm.CallError, match="fits no declaration"):
        widgets.Widget().Increase(4)
    with pytest.raises(zqm.CallError, match="fits no declaration"):
        widgets.Widget().Describe(zqm.ByRef("a"))


def test_references_to_variants_hold_any_value(echo):
    reference = zqm.ByRef("before")
    echo.MakeSeven(reference)
    assert reference.value == 7


def test_references_hold_what_a_call_that_raised_left_in_them(echo, echoes):
    reference = zqm.ByRef("before")
    with pytest.raises(echoes.EchoException):
        echo.MakeSevenAndRaise(reference)
    assert reference.value == 7


def test_properties_are_attributes(widgets):
    widget = widgets.Widget()
    widget.Count, widget.Scale, widget.Enabled, widget.Factor = 7, 1.25, True, 0.5
    widget.Title = "Grüße 🎈"
    values = (widget.Count, widget.Scale, widget.Enabled, widget.Factor, widget.Title)
    assert values == (7, 1.25, True, 0.5, "Grüße 🎈")
    assert widget.Enabled is True
    assert widget.Fixed == 42


def test_properties_that_can_not_be_read_or_set_say_so(widgets):
    widget = widgets.Widget()
    with pytest.raises(AttributeError):
        widget.Fixed = 1
    widget.Sink = 5
    assert widget.Count == 5
    with pytest.raises(AttributeError):
        widget.Sink
    with pytest.raises(zqm.CallError, match="Double given for property Widget.Count, which is Integer"):
        widget.Count = 1.5
    with pytest.raises(AttributeError):
        widget.NoSuchProperty


def test_a_property_in_another_case_is_not_set_in_vain(widgets):
    widget = widgets.Widget()
    with pytest.raises(AttributeError, match="Widget.count: the property is called Count"):
        widget.count = 7
    with pytest.raises(AttributeError, match="Gadget.SCALE: the property is called Scale"):
        widgets.Gadget().SCALE = 7
    assert widget.Count == 1


def test_objects_have_what_else_a_program_gives_them(widgets):
    class Counter(widgets.Widget):
        count = 0  # its own

    counter = Counter()
    counter.count += 1
    counter.other = 2
    assert (counter.count, counter.other) == (1, 2)


def test_shared_methods_belong_to_the_class(widgets):
    made = widgets.Widget.Make("by the class")
    assert type(made) is widgets.Widget
    assert made.Title == "by the class"
    assert made.Make("by an object").Title == "by an object"


def test_constants_are_attributes_of_the_class(widgets, echoes):
    assert widgets.Widget.Answer == 42
    assert widgets.Gadget.Motto == "a=b"
    constants = [getattr(echoes.Echo, name) for name in ("Whole", "Real", "Flag", "Quoted", "Plain")]
    assert constants == [3, 2.5, True, "a b", "a=b"]
    assert constants[2] is True


def test_what_only_the_host_calls_is_no_member(widgets):
    for name in ("Constructor", "Destructor", "Hidden"):
        assert not hasattr(widgets.Widget, name)


def test_names_that_are_words_of_python_can_be_reached(echo):
    assert getattr(echo, "from")() == -5
    assert str(inspect.signature(getattr(type(echo), "from"))) == "(self, import_=5, /)"


def test_arguments_have_no_names(widgets):
    with pytest.raises(TypeError):
        widgets.Widget().Add(one=1)


def test_an_object_stays_the_same_object(echoes):
    one, other = echoes.Echo(), echoes.Echo()
    one.mark = "mine"
    other.Keep(one)
    assert other.Kept() is one
    assert other.Back([one])[0] is one
    del one
    kept = other.Kept()
    assert type(kept) is echoes.Echo
    assert kept is other.Kept()


def test_objects_come_back_as_what_python_made_them(echoes):
    class Marked(echoes.Echo):
        pass

    keeper, marked = echoes.Echo(), Marked()
    keeper.Keep(marked)
    assert keeper.Kept() is marked


def test_an_object_ends_with_its_last_reference(widgets):
    ended = widgets.Widget.Destroyed()
    widget = widgets.Widget()
    assert widgets.Widget.Destroyed() == ended
    del widget
    assert widgets.Widget.Destroyed() == ended + 1


def test_objects_of_a_failed_constructor_end(widgets):
    ended = widgets.Widget.Destroyed()
    with pytest.raises(zqm.CallError):
        widgets.Widget(1.5)
    assert widgets.Widget.Destroyed() == ended + 1


def test_many_calls_leave_nothing_behind(echo, widgets):
    def round_of_calls():
        for _ in range(100):
            widget = widgets.Widget("title")
            widget.on("pinged", print)
            widget.Replace(zqm.ByRef(widgets.Widget()))
            echo.Back({"a": [1, "b", widget]})

    round_of_calls()
    before = zqm._zqm.object_count()
    round_of_calls()
    assert zqm._zqm.object_count() == before


def test_objects_can_not_be_copied(widgets):
    with pytest.raises(TypeError, match="a Widget can't be copied or pickled"):
        copy.copy(widgets.Widget())
    with pytest.raises(TypeError, match="a Widget can't be copied or pickled"):
        pickle.dumps(widgets.Widget())
