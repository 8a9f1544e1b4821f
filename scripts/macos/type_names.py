"""Brings the types of our headers and those of the record to one form, so that they can be compared."""

from __future__ import annotations

import re

from macos.headers import Declarations, spelled
from macos.interfaces import Record

# What Pascal's own types, and those that the record made for C's, are in C.
C_TYPES: dict[str, tuple[str, ...]] = {
    "void": ("void",),
    "cint": ("int",),
    "cint32": ("int",),
    "cuint": ("unsigned int",),
    "cuint32": ("unsigned int",),
    "cshort": ("short",),
    "cint16": ("short",),
    "cushort": ("unsigned short",),
    "cuint16": ("unsigned short",),
    "cchar": ("char",),
    "cschar": ("signed char",),
    "cuchar": ("unsigned char",),
    "cint8": ("signed char",),
    "cuint8": ("unsigned char",),
    "clong": ("long",),
    "culong": ("unsigned long",),
    "clonglong": ("long long",),
    "culonglong": ("unsigned long long",),
    "cfloat": ("float",),
    "cdouble": ("double",),
    "cbool": ("bool",),
    "single": ("float",),
    "double": ("double",),
    "float32": ("float",),
    "float64": ("double",),
    "shortint": ("signed char",),
    "byte": ("unsigned char",),
    "smallint": ("short",),
    "word": ("unsigned short",),
    "integer": ("short", "int"),
    "longint": ("int",),
    "longword": ("unsigned int",),
    "dword": ("unsigned int",),
    "int64": ("long long",),
    "qword": ("unsigned long long",),
    "signedlong": ("long",),
    "unsignedlong": ("unsigned long",),
    "size_t": ("unsigned long",),
    "ptrdiff_t": ("long",),
    "unichar": ("unsigned short",),
    "boolean": ("unsigned char",),
    "bool": ("signed char",),
    "objcbool": ("signed char",),
    "pobjcbool": ("signed char *",),
    "byteparameter": ("unsigned char",),
    "fourcharcode": ("unsigned int",),
    "char": ("char",),
    "pchar": ("char *", "unsigned char *"),
    "cstringptr": ("char *", "unsigned char *"),
    "constcstringptr": ("char *", "unsigned char *"),
    "pointer": ("void *",),
    "univptr": ("void *",),
    "pdword": ("unsigned int *",),
    "id": ("id", "instancetype"),
    "instancetype": ("instancetype", "id"),
    "sel": ("SEL",),
    "imp": ("IMP",),
    "pobjc_class": ("Class",),
    "_class": ("Class",),
    "method": ("Method",),
    "ivar": ("Ivar",),
    "objc_property_t": ("objc_property_t",),
    "protocol": ("Protocol *",),
    "pprotocol": ("Protocol *",),
    "va_list": ("va_list",),
    "opaquecblock": ("block",),
}

SCALARS = {
    "void", "bool", "char", "signed char", "unsigned char", "short", "unsigned short", "int", "unsigned int",
    "long", "unsigned long", "long long", "unsigned long long", "float", "double", "long double",
}  # fmt: skip
BUILT_IN = {"id", "SEL", "IMP", "Class", "Method", "Ivar", "objc_property_t", "instancetype", "va_list"}


def form_of_ours(type_name: str, ours: Declarations) -> str:
    """The form of a type of our headers."""
    text = spelled(type_name)
    if "(^" in text:
        return "block"
    if "(*" in text or "(" in text:
        return "function"
    base, stars = _parted(text)
    if base in BUILT_IN or base in SCALARS or base.startswith("id<"):
        return base + stars
    if base in ours.enumerations:
        return form_of_ours(ours.enumerations[base] + stars, ours)
    target = ours.types.get(base)
    if target is None or spelled(target) == base:
        return base.lstrip("_") + stars
    pointed, pointers = _parted(spelled(target))
    if pointers == " *" and pointed in ours.opaque:
        return base + stars
    if re.search(r"\(\^", target):
        return "block" + stars
    return form_of_ours(spelled(target) + stars.strip(), ours) if "(" not in target else base + stars


def forms_of_recorded(type_name: str, record: Record, by_reference: bool = False) -> set[str]:
    """The forms that a recorded type can have in C."""
    forms = _recorded(type_name.strip(), record, 0)
    return {_joined(form, 1) for form in forms} if by_reference else forms


def same(ours: str, recorded: set[str], declarations: Declarations, owner: str | None = None) -> bool:
    """Whether our type is one of the recorded; owner is the class that `instancetype` may stand for."""
    form = form_of_ours(ours, declarations)
    if form in recorded:
        return True
    if form == "instancetype" and owner is not None:
        line: str | None = owner
        while line is not None:
            if f"{line} *" in recorded:
                return True
            line = declarations.superclasses.get(line)
    return False


def _parted(text: str) -> tuple[str, str]:
    base = text.rstrip("* ")
    stars = text.count("*", len(base))
    return base.strip(), " " + "*" * stars if stars else ""


def _joined(form: str, stars: int) -> str:
    base, present = _parted(form)
    return base + " " + "*" * (present.count("*") + stars)


def _recorded(name: str, record: Record, depth: int) -> set[str]:
    if depth > 12:
        return {name}
    if name.startswith("^"):
        return {_joined(form, 1) for form in _recorded(name[1:].strip(), record, depth + 1)}
    lower = name.lower()
    if lower in C_TYPES:
        return set(C_TYPES[lower])
    known_class = record.class_named(name)
    if known_class is not None:
        return {f"{known_class} *"}
    if lower in record.protocol_names:
        return {f"id<{record.protocol_names[lower]}>"}
    forms: set[str] = set()
    for target in record.aliases.get(lower, []):
        pointed = target.removeprefix("^").lower()
        if target.startswith("^") and _opaque(lower, pointed, record):
            forms.add(name)
        elif pointed != lower:
            stands_for = _recorded(target, record, depth + 1)
            forms |= stands_for
            # Pascal has one pointer for what C tells apart as mutable or not.
            if any(form.lower().endswith("ref") for form in stands_for):
                forms.add(name)
    if lower in record.structures or not forms:
        forms.add(name.lstrip("_"))
    return forms


def _opaque(alias: str, pointed: str, record: Record) -> bool:
    """Whether the record says with a pointer to this that nothing is known of what it points to."""
    if pointed == "sint32":
        return alias.endswith("ref")
    return pointed.startswith("__") or record.structures.get(pointed) == [()] and alias.endswith("ref")
