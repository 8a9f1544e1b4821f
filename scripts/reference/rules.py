"""What the prose owes to the class records: a section for each member, with all that belongs into it."""

from __future__ import annotations

import re
from collections import Counter
from collections.abc import Iterator

from reference.prose import ERRORS, Entry, Prose, Topic, anchor, examples, meaning
from reference.records import HostClass, Member, key

_LINK = re.compile(r"\]\(#([^)]*)\)")
_PLATFORM_NAME = re.compile(r"`(NS\w+)`")


def broken_rules(host_class: HostClass, prose: Prose, known_names: set[str]) -> list[str]:
    return [f"{host_class.name}: {line}" for line in _broken_rules(host_class, prose, known_names)]


def names_of(classes: list[HostClass]) -> set[str]:
    """Of classes and members, and of the classes of others that these name."""
    names = {each.name for each in classes}
    for each in classes:
        for member in each.members.values():
            names |= {member.name} | member.types
    return names


def _broken_rules(host_class: HostClass, prose: Prose, known_names: set[str]) -> Iterator[str]:
    if prose.heading != host_class.name:
        yield f'its prose is headed "{prose.heading}".'
    if not prose.body:
        yield "nothing says what the class is."
    seen: set[str] = set()
    for topic in prose.topics:
        if not topic.members:
            yield f'there is no member under "{topic.heading}".'
        for entry in topic.members:
            member = host_class.members.get(key(entry.heading))
            if member is None:
                yield f"there is no member {entry.heading}, of which the prose tells."
            elif member.key in seen:
                yield f"the prose tells twice of {member.signature}."
            else:
                seen.add(member.key)
                yield from _broken_by(member, entry, topic)
    for member in host_class.members.values():
        if member.key not in seen:
            yield f"{member.signature} has no prose."
    yield from _broken_names(prose, known_names)


def _broken_names(prose: Prose, known_names: set[str]) -> Iterator[str]:
    anchors = Counter(anchor(each.heading) for each in _entries(prose))
    for same in (name for name, times in anchors.items() if times > 1):
        yield f"several headings are linked to as #{same}."
    for entry in _entries(prose):
        for name in _PLATFORM_NAME.findall(entry.body):
            if name not in known_names:
                yield f"under {entry.heading} the prose names {name}, which does not exist."
        for name in _LINK.findall(entry.body):
            if name not in anchors:
                yield f"under {entry.heading} the prose links to #{name}, which does not exist."


def _broken_by(member: Member, entry: Entry, topic: Topic) -> Iterator[str]:
    if not entry.heading.startswith(member.name):
        yield f"{member.signature} is headed {entry.heading}."
    if not meaning(entry.body):
        yield f"nothing says what {member.signature} means."
    if ERRORS not in entry.body and ERRORS not in topic.body:
        yield f"nothing says how {member.signature} fails."
    shown = examples(entry.body)
    if not shown:
        yield f"{member.signature} has no example."
    elif not any(re.search(rf"\b{re.escape(member.name)}\b", each, re.IGNORECASE) for each in shown):
        yield f"the example of {member.signature} doesn't show it."


def _entries(prose: Prose) -> list[Entry]:
    return [prose, *prose.topics, *prose.members()]
