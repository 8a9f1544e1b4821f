"""Takes comments and literals out of C, C++ and Objective-C sources."""

from __future__ import annotations

import re

PIECE = re.compile(
    r"(?P<comment>//(?:\\\n|[^\n])*|/\*.*?(?:\*/|\Z))"
    r'|(?P<raw>(?:u8|[uUL])?R"(?P<mark>[^()\\\s]{0,16})\(.*?(?:\)(?P=mark)"|\Z))'
    r'|(?P<text>"(?:\\.|[^"\\\n])*")'
    r"|(?P<letter>(?<![0-9A-Za-z_])(?:u8|[uUL])?'(?:\\.|[^'\\\n])+')",
    re.DOTALL,
)


def code_of(text: str, literals: bool = False) -> str:
    """The source with each comment made a blank and each literal emptied, or kept; line breaks stay."""

    def emptied(match: re.Match[str]) -> str:
        breaks = "\n" * match.group().count("\n")
        if match["comment"] is not None:
            return " " + breaks
        if literals:
            return match.group()
        return ("''" if match["letter"] is not None else '""') + breaks

    return PIECE.sub(emptied, text)


def directives(code: str) -> list[tuple[int, str]]:
    """The preprocessor's directives, continued lines joined, with the number of their first line."""
    found: list[tuple[int, str]] = []
    lines = code.split("\n")
    number = 0
    while number < len(lines):
        first = number
        line = lines[number]
        while line.endswith("\\") and number + 1 < len(lines):
            number += 1
            line = line[:-1] + " " + lines[number]
        if line.lstrip().startswith("#"):
            found.append((first + 1, line.strip()))
        number += 1
    return found
