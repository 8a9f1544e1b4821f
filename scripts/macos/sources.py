"""What the libraries' sources may not say: no condition on the platform, and each weak constant only where its
address is tested first."""

from __future__ import annotations

import re
from pathlib import Path

from macos.problems import CannotCheck
from macos.source_text import code_of, directives

FOLDERS = ("plugin", "speech", "bridge", "siblings")
SUFFIXES = {".h", ".hpp", ".c", ".cpp", ".m", ".mm", ".def"}

# Names that only a condition on platform or compiler has a use for.
RESERVED = re.compile(
    r"\b(__APPLE__|__APPLE_CC__|__MACH__|__linux__|__linux|__gnu_linux__|__unix__|__unix|GNUSTEP\w*"
    r"|__GNUSTEP\w*|GNU_RUNTIME|__GNU_RUNTIME__|__NEXT_RUNTIME__|__OBJC2__|__OBJC_GNU_RUNTIME__"
    r"|OBJC_API_VERSION|_WIN32|_WIN64|__MINGW\w*|_MSC_VER|TARGET_OS_\w+|TARGET_CPU_\w+|MAC_OS_X_VERSION\w*"
    r"|__MAC_\w+|__ENVIRONMENT_MAC_OS_X_VERSION_MIN_REQUIRED__|__clang__|__clang_\w+__|__GNUC__"
    r"|__GNUC_\w+__|__GLIBC__|__GLIBCXX__|_LIBCPP_VERSION|__x86_64__|__aarch64__|__has_include|__has_include_next|__has_feature"
    r"|__has_extension|__has_builtin)\b"
)
# Words that mean a platform only in a condition.
IN_CONDITION = re.compile(r"\b(linux|unix)\b")
CONDITION = re.compile(r"#\s*(?:if|ifdef|ifndef|elif|elifdef|elifndef)\b")
# The folders that macOS's build knows nothing of.
FOREIGN_INCLUDE = re.compile(
    r'^#\s*(?:include|import)\s*[<"]((?:platform|engine|host|cli|examples|tests)/[^">]*)'
)
EXCEPTION_BLOCK = re.compile(r"@\s*(try|catch|finally)\b")


def portable_sources(root: Path) -> list[Path]:
    """The sources that are the same on all platforms."""
    if not (root / FOLDERS[0]).is_dir():
        raise CannotCheck(f"{root} holds no folder {FOLDERS[0]}")
    files = [file for folder in FOLDERS for file in (root / folder).rglob("*") if file.is_file()]
    return sorted(file for file in files if file.suffix in SUFFIXES)


def problems_of(file: Path, title: str, weak: set[str]) -> list[str]:
    """What this source breaks of the rules; weak are the names of the constants that are linked weakly."""
    try:
        text = file.read_text(encoding="utf-8")
    except (OSError, UnicodeDecodeError) as error:
        raise CannotCheck(f"{file} can't be read: {error}") from error
    code = code_of(text)
    problems = []
    for number, line in enumerate(code.split("\n"), 1):
        for name in RESERVED.findall(line):
            problems.append(f"{title}:{number}: asks for the platform: {name}")
        if file.suffix == ".mm":
            for word in EXCEPTION_BLOCK.findall(line):
                problems.append(f"{title}:{number}: @{word} stands in a .mm")
    for number, line in directives(code):
        if CONDITION.match(line):
            for name in IN_CONDITION.findall(line):
                problems.append(f"{title}:{number}: asks for the platform: {name}")
    for number, line in directives(code_of(text, literals=True)):
        if match := FOREIGN_INCLUDE.match(line):
            problems.append(f"{title}:{number}: includes {match[1]}")
    if not file.name.endswith("_constants.def"):
        problems += _unchecked_constants(code, title, weak)
    return problems


def _unchecked_constants(code: str, title: str, weak: set[str]) -> list[str]:
    problems = []
    for match in re.finditer(r"\b(?:NSVoice|NSSpeech)\w+", code):
        if match[0] in weak and not re.search(r"\bplatformConstant\s*\(\s*&\s*$", code[: match.start()]):
            number = code.count("\n", 0, match.start()) + 1
            problems.append(f"{title}:{number}: {match[0]} is named without platformConstant(&{match[0]})")
    return problems
