"""What is measured stands in its places, and what people wrote stays."""

import pytest

from common.problems import Problem
from measuring.document import filled

PAGE = "A\n<!-- one -->\nold\n<!-- end of one -->\nB <!-- two --><!-- end of two --> C\n\n\nD"


def test_places_are_filled_and_the_rest_stays():
    assert filled(PAGE, {"two": "2", "one": "1\n2"}) == (
        "A\n<!-- one -->\n\n1\n2\n\n<!-- end of one -->\nB <!-- two -->\n\n2\n\n<!-- end of two --> C\n\n\nD"
    )


def test_filling_again_changes_nothing():
    page = filled(PAGE, {"one": "1", "two": "2"})
    assert filled(page, {"one": "1", "two": "2"}) == page


@pytest.mark.parametrize(
    ("page", "told"),
    [
        ("<!-- end of x -->", "<!-- x --> is missing"),
        ("<!-- x -->", "<!-- end of x --> is missing"),
        ("<!-- end of x --> <!-- x -->", "<!-- end of x --> stands before <!-- x -->"),
        ("<!-- x --><!-- x --><!-- end of x -->", "<!-- x --> is there 2 times, not once"),
        ("<!-- x --><!-- end of x --><!-- end of x -->", "<!-- end of x --> is there 2 times, not once"),
    ],
)
def test_places_have_both_markers_once(page, told):
    with pytest.raises(Problem) as problem:
        filled(page, {"x": "1"})
    assert str(problem.value) == told
