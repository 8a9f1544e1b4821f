"""The pages of the manual, in Markdown."""

from __future__ import annotations

import re
from collections.abc import Callable, Iterator

from reference.prose import FENCE, Prose, anchor
from reference.records import HostClass, Member, key

_NOTE = "<!-- Made by scripts/manual from the class records and docs/reference-prose: change those. -->"
_CODE = re.compile(r"`(\w+)`")


def class_page(host_class: HostClass, prose: Prose) -> str:
    return _page(_class_blocks(host_class, prose))


def index_page(prose: str, classes: list[tuple[HostClass, Prose]]) -> str:
    return _page(_index_blocks(prose, classes))


def _page(blocks: Iterator[str]) -> str:
    return "\n\n".join(blocks) + "\n"


def _class_blocks(host_class: HostClass, prose: Prose) -> Iterator[str]:
    linked = _linker(host_class, prose)
    yield _NOTE
    yield f"# {host_class.name}"
    yield linked(prose.body, None)
    yield "\n".join(_contents(prose))
    for topic in prose.topics:
        yield f"## {topic.heading}"
        if topic.body:
            yield linked(topic.body, None)
        for entry in topic.members:
            member = host_class.members[key(entry.heading)]
            yield f"### {entry.heading}"
            yield f"*{member.title}*\n\n    {member.declaration}"
            yield linked(entry.body, member)


def _contents(prose: Prose) -> Iterator[str]:
    for topic in prose.topics:
        links = ", ".join(f"[{each.heading}](#{anchor(each.heading)})" for each in topic.members)
        yield f"- **[{topic.heading}](#{anchor(topic.heading)})**: {links}"


def _index_blocks(prose: str, classes: list[tuple[HostClass, Prose]]) -> Iterator[str]:
    yield _NOTE
    yield prose.strip()
    yield "## Classes"
    yield "\n".join(_classes(classes))
    yield "## All members"
    yield "\n".join(_members(classes))


def _classes(classes: list[tuple[HostClass, Prose]]) -> Iterator[str]:
    yield "| class | what it does |"
    yield "|---|---|"
    for host_class, prose in classes:
        first_sentence = re.split(r"(?<=\.)\s", prose.body.replace("\n", " "), maxsplit=1)[0]
        yield f"| [{host_class.name}]({host_class.name}.md) | {first_sentence} |"


def _members(classes: list[tuple[HostClass, Prose]]) -> Iterator[str]:
    yield "| member | of | is |"
    yield "|---|---|---|"
    rows = [(entry.heading, each) for each, prose in classes for entry in prose.members()]
    for heading, host_class in sorted(rows, key=lambda row: (key(row[0]), row[1].name)):
        link = f"[{heading}]({host_class.name}.md#{anchor(heading)})"
        yield f"| {link} | {host_class.name} | {host_class.members[key(heading)].title.lower()} |"


def _linker(host_class: HostClass, prose: Prose) -> Callable[[str, Member | None], str]:
    """Makes a link of each member of the class that is named in a text, but of the one that the text is about."""
    first: dict[str, str] = {}
    for entry in prose.members():
        first.setdefault(host_class.members[key(entry.heading)].name, entry.heading)

    def linked(text: str, about: Member | None) -> str:
        def link(found: re.Match[str]) -> str:
            name = found[1]
            if name not in first or (about is not None and name == about.name):
                return found[0]
            return f"[{found[0]}](#{anchor(first[name])})"

        parts = re.split(rf"(^{FENCE}.*?^{FENCE}$)", text, flags=re.MULTILINE | re.DOTALL)
        return "".join(part if part.startswith(FENCE) else _CODE.sub(link, part) for part in parts)

    return linked
