"""Holds the type encoding of an implemented method against the recorded types of the method."""

from __future__ import annotations

import re

from macos.interfaces import Record, Signature
from macos.type_names import forms_of_recorded

LETTERS = {
    "void": "v", "bool": "B", "char": "c", "signed char": "c", "unsigned char": "C", "short": "s",
    "unsigned short": "S", "int": "i", "unsigned int": "I", "long": "q", "unsigned long": "Q",
    "long long": "q", "unsigned long long": "Q", "float": "f", "double": "d", "id": "@", "instancetype": "@",
    "SEL": ":", "Class": "#", "char *": "*", "block": "@?",
}  # fmt: skip
ONE_TYPE = re.compile(r"[rnNoORV]*(\^*(?:\{[^{}]*(?:\{[^{}]*\}[^{}]*)*\}|\[[^\]]*\]|@\?|[a-zA-Z@#:*?]))-?\d*")


def types_of(encoding: str) -> list[str]:
    """The types of "v28@0:8@16c24": of the result, the object, the selector, and the parameters."""
    return ONE_TYPE.findall(encoding)


def agrees(encoding: str, signature: Signature, record: Record) -> bool:
    """Whether a method of this encoding can be called as recorded."""
    types = types_of(encoding)
    recorded = [(signature.result, False)]
    recorded += [(parameter.type, parameter.by_reference) for parameter in signature.parameters]
    if len(types) != len(recorded) + 2:
        return False
    return all(
        any(_fits(written, form, record) for form in forms_of_recorded(name, record, by_reference))
        for written, (name, by_reference) in zip([types[0], *types[3:]], recorded)
    )


def _fits(written: str, form: str, record: Record) -> bool:
    if form in LETTERS:
        return written == LETTERS[form]
    if form.startswith("id<"):
        return written == "@"
    if form.endswith(" *") and form.removesuffix(" *") in record.classes:
        return written == "@"
    if "*" in form or form.endswith("Ref"):
        return written.startswith("^")
    return written.startswith("{" + form) or written.startswith("{_" + form) or written.startswith("^")
