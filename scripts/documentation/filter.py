"""Doxygen's input filter: gives it the comments of a header in its own form.

A block of `//` lines at the top of the header is the file's. One before a declaration is of that, and of those that
follow without an empty line between and have none of their own. One behind a declaration is of that alone. Any other,
before an empty line, heads a part of the header and is of no declaration. A header without a block at the top is given
an empty one: Doxygen passes over the functions of files that have none.
"""

from __future__ import annotations

import itertools
import re
import sys
from collections.abc import Iterator
from pathlib import Path

_COMMENT = re.compile(r"\s*// ?(.*)")
_BEHIND = re.compile(r"(\s*\S.*?)\s+// (.*)")
_ASIDE = re.compile(r"NOLINT|----")  # for tools, and lines that part a header
_NO_DECLARATION = re.compile(
    r"\s*([#}]|(public|private|protected):|@(public|private|end)|static_assert|[A-Z_]+$)"
)
# What Doxygen takes for more than it is.
_LEFT_OUT = re.compile(r"@protocol \w+;|@optional")
_QUOTED = re.compile(r'"(\\.|[^"\\])*"')


def _escaped(text: str) -> str:
    return re.sub(r"([\\@<>#%])", r"\\\1", text)


def _before(text: str, declaration: str) -> str:
    bare = declaration.lstrip()
    return f"{declaration[: -len(bare)]}/** {_escaped(text)} */ {bare}"


class _Filter:
    def __init__(self, text: str) -> None:
        self.input = text.splitlines()
        self.shared = [""]  # at each depth, the comment of the declarations up to the next empty line
        self.is_inside = False  # a declaration that goes on from the line before
        self.parentheses = 0

    def lines(self) -> Iterator[str]:
        at = 0
        while at < len(self.input):
            block = self._block(at)
            if block:
                yield from self._block_lines(block, at)
                at += len(block)
                # A declaration behind it has it already.
                if at < len(self.input):
                    yield self._line(self.input[at], has_comment=True)
            else:
                line = self._line(self.input[at], has_comment=False)
                yield f"/** @file */ {line}" if at == 0 else line
            at += 1

    def _block(self, at: int) -> list[str]:
        """The lines of the comment that begins there."""
        found = (_COMMENT.fullmatch(line) for line in self.input[at:])
        return [each[1] for each in itertools.takewhile(bool, found) if each is not None]

    def _block_lines(self, block: list[str], at: int) -> list[str]:
        behind = self.input[at + len(block) :][:1]
        is_of_file = at == 0
        is_of_declaration = not is_of_file and behind != [""] and not self.is_inside
        kept = [text for text in block if _ASIDE.search(text) is None]
        if not (is_of_file or is_of_declaration) or not kept:
            return [""] * len(block)
        self.shared[-1] = "" if is_of_file else " ".join(kept)
        lines = ["" if _ASIDE.search(text) else f"/// {_escaped(text)}".rstrip() for text in block]
        return [f"/// @file\n{lines[0]}", *lines[1:]] if is_of_file else lines

    def _line(self, line: str, has_comment: bool) -> str:
        if not line.strip():
            self.shared[-1] = ""
            return ""
        if _LEFT_OUT.fullmatch(line):
            return ""
        is_declaration = _NO_DECLARATION.match(line) is None
        begins = is_declaration and not self.is_inside
        behind = _BEHIND.fullmatch(line)
        code = behind[1] if behind else line
        shared = self.shared[-1]
        if is_declaration or code.lstrip().startswith("}"):
            self._follow(code)
        if behind and is_declaration and not _ASIDE.search(behind[2]):
            return _before(behind[2], code) if begins else f"{code} /**< {_escaped(behind[2])} */"
        return _before(shared, code) if begins and shared and not has_comment else code

    def _follow(self, code: str) -> None:
        bare = _QUOTED.sub('""', code)
        for sign in bare:
            if sign == "{":
                self.shared.append("")
            elif sign == "}" and len(self.shared) > 1:
                self.shared.pop()
            elif sign in "()":
                self.parentheses += 1 if sign == "(" else -1
        is_whole = bare.startswith("@") or bare.rstrip().endswith((";", "}", "{", ":", ","))
        self.is_inside = self.parentheses > 0 or not is_whole


def main() -> None:
    text = Path(sys.argv[1]).read_text(encoding="utf-8")
    print(*_Filter(text).lines(), sep="\n")


if __name__ == "__main__":
    main()
