"""Makes Pascal sources ready for reading: takes the branches that macOS on x86-64 takes, drops comments."""

from __future__ import annotations

import re

from macos.problems import CannotCheck

# What the units' own preludes define for this platform, and the parts that the include files consist of.
DEFINED = {
    name.lower(): True
    for name in (
        "CPU64", "CPUX86_64", "FPC_LITTLE_ENDIAN", "FPC_HAS_FEATURE_OBJECTIVEC1", "__LP64__", "__x86_64__",
        "TARGET_OS_MAC", "TARGET_CPU_64", "TARGET_CPU_X86_64", "TARGET_RT_64_BIT",
        "TARGET_RT_LITTLE_ENDIAN", "TARGET_API_MAC_OSX", "TARGET_API_MAC_CARBON", "TARGET_CARBON",
        "TYPE_LONGLONG", "ACCESSOR_CALLS_ARE_FUNCTIONS", "OPAQUE_TOOLBOX_STRUCTS", "OPAQUE_UPP_TYPES",
        "TYPED_FUNCTION_POINTERS", "TYPES", "CLASSES", "PROTOCOLS", "FUNCTIONS", "EXTERNAL_SYMBOLS",
        "INTERFACE", "instancetype",
    )
}  # fmt: skip

PIECE = re.compile(
    r"\{\$(?P<directive>\w+)(?P<rest>[^}]*)\}|\{[^}]*\}|\(\*.*?\*\)|//[^\n]*|'(?:[^'\n]|'')*'", re.DOTALL
)
WORD = re.compile(r"\s*(<=|>=|<>|[()=<>]|[$]?\w+)")


def active_text(text: str) -> str:
    """The text without comments, directives, and the branches that are not taken."""
    # In C the parameter is a pointer to a constant; only this comment tells it from a value.
    text = re.sub(r"\bconst\s*\(\*\s*var\s*\*\)", "var", text)
    defined: dict[str, bool | int] = dict(DEFINED)
    # One entry for each open condition: whether its branch is taken, whether one of its branches was.
    branches: list[tuple[bool, bool]] = []
    kept: list[str] = []
    position = 0

    def active() -> bool:
        return all(taken for taken, _ in branches)

    for piece in PIECE.finditer(text):
        if active():
            kept.append(text[position : piece.start()])
            if piece.group().startswith("'"):
                kept.append(piece.group())
            else:
                kept.append(" ")
        position = piece.end()
        directive = (piece.group("directive") or "").lower()
        rest = (piece.group("rest") or "").strip()
        if directive in ("ifdef", "ifndef"):
            holds = (rest.lower() in defined) == (directive == "ifdef")
            branches.append((holds, holds))
        elif directive in ("if", "ifc"):
            holds = active() and _holds(rest, defined)
            branches.append((holds, holds))
        elif directive in ("elseif", "elifc", "else", "elsec"):
            if not branches:
                raise CannotCheck(f"a Pascal source has {{${directive}}} outside of any condition")
            _, done = branches.pop()
            last = directive in ("else", "elsec")
            holds = not done and (last or (active() and _holds(rest, defined)))
            branches.append((holds, done or holds))
        elif directive in ("endif", "endc"):
            if not branches:
                raise CannotCheck(f"a Pascal source has {{${directive}}} outside of any condition")
            branches.pop()
        elif directive in ("define", "setc") and active():
            _define(rest, defined)
        elif directive == "undef" and active():
            defined.pop(rest.lower(), None)
    if active():
        kept.append(text[position:])
    return "".join(kept)


def _define(rest: str, defined: dict[str, bool | int]) -> None:
    name, _, value = (part.strip().lower() for part in rest.partition(":="))
    if not re.fullmatch(r"\w+", name):
        return
    if value in ("", "true", "false"):
        defined[name] = value != "false"
    elif re.fullmatch(r"\d+", value):
        defined[name] = int(value)


def _holds(condition: str, defined: dict[str, bool | int]) -> bool:
    """Evaluates a condition of words, numbers, and, or, not, defined, comparisons and brackets."""
    words = WORD.findall(condition.lower())
    place = 0

    def next_word() -> str:
        nonlocal place
        place += 1
        return words[place - 1] if place <= len(words) else ""

    def peek() -> str:
        return words[place] if place < len(words) else ""

    def value() -> bool | int:
        word = next_word()
        if word == "not":
            return not value()
        if word == "(":
            inner = disjunction()
            next_word()
            return inner
        if word == "defined":
            bracketed = peek() == "("
            if bracketed:
                next_word()
            known = next_word() in defined
            if bracketed:
                next_word()
            return known
        if word.isdigit():
            return int(word)
        if word in ("true", "false"):
            return word == "true"
        return defined.get(word, False)

    def comparison() -> bool | int:
        left = value()
        while peek() in ("=", "<>", "<", ">", "<=", ">="):
            operator, right = next_word(), value()
            left = {
                "=": left == right,
                "<>": left != right,
                "<": left < right,
                ">": left > right,
                "<=": left <= right,
                ">=": left >= right,
            }[operator]
        return left

    def conjunction() -> bool:
        result = bool(comparison())
        while peek() == "and":
            next_word()
            result = bool(comparison()) and result
        return result

    def disjunction() -> bool:
        result = conjunction()
        while peek() == "or":
            next_word()
            result = conjunction() or result
        return result

    return disjunction()
