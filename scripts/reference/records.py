"""What `zqmspeech inspect --json` tells of a library's classes."""

from __future__ import annotations

import json
from dataclasses import dataclass
from pathlib import Path
from typing import Any

from reference.problems import Problems


@dataclass(frozen=True)
class Kind:
    """A list of members in a class's record."""

    key: str
    title: str
    is_called: bool


KINDS = (
    Kind("methods", "Method", True),
    Kind("properties", "Property", False),
    Kind("events", "Event", True),
    Kind("sharedMethods", "Shared method", True),
    Kind("constants", "Constant", False),
)


@dataclass(frozen=True)
class Member:
    """One member, known by its name and the types of its parameters: "setVoice(String)", "Rate"."""

    name: str
    signature: str
    title: str  # what it is, for people
    declaration: str
    types: frozenset[str]

    @property
    def key(self) -> str:
        return key(self.signature)


@dataclass(frozen=True)
class HostClass:
    name: str
    members: dict[str, Member]  # by their keys


def key(signature: str) -> str:
    """Names and types are the same whatever the case of their letters."""
    return signature.replace(" ", "").lower()


def read_classes(path: Path) -> list[HostClass]:
    try:
        document = json.loads(path.read_text(encoding="utf-8"))
        return [_class(each) for each in document["classes"]]
    except (OSError, ValueError) as error:
        raise Problems(f"{path}: {error}") from error
    except (KeyError, TypeError) as error:
        raise Problems(f"{path}: this is not what `zqmspeech inspect --json` prints.") from error


def _class(record: dict[str, Any]) -> HostClass:
    members: dict[str, Member] = {}
    for kind in KINDS:
        for each in record[kind.key]:
            member = _member(each, kind)
            if member.key in members:
                raise Problems(f"{record['name']} has two members {member.signature}.")
            members[member.key] = member
    return HostClass(record["name"], members)


def _type(record: dict[str, Any]) -> str:
    return record["type"] + ("()" if record["array"] else "")


def _member(record: dict[str, Any], kind: Kind) -> Member:
    parameters = record.get("parameters", [])
    signature = record["name"]
    if kind.is_called:
        signature += "(" + ", ".join(_type(each) for each in parameters) + ")"
    typed = [*parameters, *(each for each in (record.get("result"),) if each)]
    return Member(
        record["name"],
        signature,
        _title(record, kind),
        record["declaration"],
        frozenset(each["type"] for each in typed),
    )


def _title(record: dict[str, Any], kind: Kind) -> str:
    if not record.get("callable", True):
        return f"{kind.title}; host code can't call it"
    if kind.key != "properties":
        return kind.title
    can = [word for word, given in (("read", record["readable"]), ("set", record["writable"])) if given]
    return f"{kind.title}; can be {' and '.join(can)}"
