"""What the plots show: how times grow with sizes."""

from __future__ import annotations

from dataclasses import dataclass

from measuring.rows import COLLECTION_SIZES, DIRECTIONS, FILE_SIZES, SCRIPTS, STRING_SIZES


@dataclass(frozen=True)
class Curve:
    title: str
    points: dict[int, str]  # benchmarks by size


@dataclass(frozen=True)
class Panel:
    title: str
    curves: tuple[Curve, ...]


@dataclass(frozen=True)
class Plot:
    name: str
    sizes: str  # what they are of
    columns: int
    panels: tuple[Panel, ...]


def curve(title: str, stem: str, sizes: tuple[int, ...]) -> Curve:
    return Curve(title, {size: f"{stem}/{size}" for size in sizes})


WAYS_OF_STRINGS = {"ours": "ours", "gnustep": "GNUstep", "icu": "ICU", "memcpy": "memcpy"}
WAYS_OF_FILES = {"warm": "engine that runs", "cold": "new process", "command": "espeak-ng -w", "loop": "loop"}

PLOTS = (
    Plot(
        "strings",
        "bytes",
        len(SCRIPTS),
        tuple(
            Panel(
                f"{script_words}, {direction_words}",
                tuple(
                    curve(words, f"string/{direction}/{way}/{script}", STRING_SIZES)
                    for way, words in WAYS_OF_STRINGS.items()
                ),
            )
            for direction, direction_words in DIRECTIONS.items()
            for script, script_words in SCRIPTS.items()
        ),
    ),
    Plot(
        "collections",
        "elements",
        len(DIRECTIONS),
        tuple(
            Panel(
                f"{kind} {words}",
                tuple(curve(way, f"{kind}/{direction}/{way}", COLLECTION_SIZES) for way in ("ours", "floor")),
            )
            for kind in ("array", "dictionary")
            for direction, words in DIRECTIONS.items()
        ),
    ),
    Plot(
        "files",
        "words",
        1,
        (
            Panel(
                "text into a sound file",
                tuple(
                    curve(words, f"file/{way}", FILE_SIZES) for way, words in WAYS_OF_FILES.items()
                ),
            ),
        ),
    ),
)
