"""The hand-written part: a Markdown file for each class.

`# Class`, then what the class is; `## Topic`, then what its members have in common; `### member(Types)`, then what the
member means, its errors unless its topic tells them, and an example: a block between lines of ```.
"""

from __future__ import annotations

import re
from collections.abc import Iterator
from dataclasses import dataclass, field
from pathlib import Path

from reference.problems import Problems

FENCE = "```"
ERRORS = "**Errors:**"
_HEADING = re.compile(r"(#{1,3}) (.+)")


@dataclass
class Entry:
    """What stands under a heading."""

    heading: str
    body: str


@dataclass
class Topic(Entry):
    members: list[Entry] = field(default_factory=list)


@dataclass
class Prose(Entry):
    topics: list[Topic] = field(default_factory=list)

    def members(self) -> Iterator[Entry]:
        return (each for topic in self.topics for each in topic.members)


def sections(text: str) -> Iterator[tuple[int, str, str]]:
    """Depth, heading and text of each section; lines within a fence are no headings."""
    depth, heading, lines, fenced = 0, "", list[str](), False
    for line in text.splitlines():
        fenced ^= line.startswith(FENCE)
        found = None if fenced else _HEADING.fullmatch(line)
        if found is None:
            lines.append(line)
            continue
        yield depth, heading, "\n".join(lines).strip()
        depth, heading, lines = len(found[1]), found[2], []
    yield depth, heading, "\n".join(lines).strip()


def read_prose(path: Path) -> Prose:
    prose: Prose | None = None
    for depth, heading, body in sections(path.read_text(encoding="utf-8")):
        if depth == 0 and not body:
            continue
        if depth == 1 and prose is None:
            prose = Prose(heading, body)
        elif depth == 2 and prose is not None:
            prose.topics.append(Topic(heading, body))
        elif depth == 3 and prose is not None and prose.topics:
            prose.topics[-1].members.append(Entry(heading, body))
        else:
            raise Problems(f"{path}: \"{heading or body.splitlines()[0]}\" is not where it belongs.")
    if prose is None:
        raise Problems(f"{path} is empty.")
    return prose


def anchor(heading: str) -> str:
    """What links to a heading are made of."""
    return re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-")


def examples(body: str) -> list[str]:
    return [part for index, part in enumerate(_parts(body)) if index % 2 == 1]


def meaning(body: str) -> str:
    """What is said before anything else."""
    first = next(_parts(body)).strip().split("\n\n")[0]
    return "" if first.startswith(ERRORS) else first


def _parts(body: str) -> Iterator[str]:
    """Text and examples by turns."""
    return iter(re.split(rf"^{FENCE}.*$\n?", body, flags=re.MULTILINE))
