"""What is compared with what: the tables of docs/performance.md, row by row."""

from __future__ import annotations

from dataclasses import dataclass

from measuring.figures import (
    MILLISECOND,
    Count,
    Difference,
    Duration,
    Figure,
    Growth,
    Rate,
    Ratio,
    Size,
)

STRING_SIZES = (10, 100, 1_000, 10_000, 100_000, 1_000_000, 10_000_000)
SCRIPTS = {"ascii": "ASCII", "latin": "Latin", "cjk": "CJK", "emoji": "emoji"}
COLLECTION_SIZES = (10, 100, 1_000, 10_000, 100_000, 1_000_000)
FILE_SIZES = (10, 100, 1_000, 10_000, 100_000)
LEAST_JUDGED_WORDS = 1_000  # below, what starting a process takes is most of it
DIRECTIONS = {"to_platform": "from the host to the platform", "to_host": "from the platform to the host"}
VALUES = {
    "number_to_platform": "number, from the host",
    "number_to_host": "number, to the host",
    "date_to_platform": "date, from the host",
    "date_to_host": "date, to the host",
    "data_to_platform": "memory block, from the host",
    "data_to_host": "data, to the host",
    "url_to_platform": "file's URL, from the host",
    "url_to_host": "file's URL, to the host",
    "error_to_host": "error, to the host",
    "wrapper_to_host": "object, to the host",
    "wrapper_to_platform": "object's wrapper, from the host",
}


@dataclass(frozen=True)
class Row:
    what: str
    figures: tuple[Figure, ...]  # in the order of the table's columns
    most: float | None = None  # what the first of them may be
    times: tuple[tuple[str, str], ...] = ()  # what is told of absolute times: words, and the benchmark

    @property
    def needs(self) -> tuple[str, ...]:
        """The benchmarks that it is made of, each once."""
        names = [name for figure in self.figures for name in figure.needs]
        return tuple(dict.fromkeys([*names, *(name for _, name in self.times)]))


@dataclass(frozen=True)
class Table:
    name: str  # of its place in the page
    program: str
    subject: str  # of its rows, as a title
    columns: tuple[str, ...]
    rows: tuple[Row, ...]


def compared(what: str, ours: str, others: tuple[tuple[str, str], ...], most: float | None = None) -> Row:
    """How many times as long ours takes as each of the others; the first of them is what it is held against."""
    return Row(what, tuple(Ratio(ours, other) for _, other in others), most, (("ours", ours), *others))


def strings(direction: str) -> Table:
    def row(script: str, size: int) -> Row:
        def name(what: str) -> str:
            return f"string/{direction}/{what}/{script}/{size}"

        others = (
            ("GNUstep", name("gnustep")),
            ("host alone", name("host")),
            ("ICU", name("icu")),
            ("memcpy", name("memcpy")),
        )
        return compared(f"{SCRIPTS[script]}, {size:,} bytes", name("ours"), others, 1.2)

    return Table(
        f"strings-{direction.replace('_', '-')}",
        "strings",
        f"Strings {DIRECTIONS[direction]}",
        ("× GNUstep", "× host alone", "× ICU", "× memcpy"),
        tuple(row(script, size) for script in SCRIPTS for size in STRING_SIZES),
    )


def collections(direction: str) -> Table:
    """Of what a host's collection holds, the host has to be asked; what that costs alone stands beside the floor."""
    ways = {"floor": "floor"} | ({"read": "reading alone"} if direction == "to_platform" else {})

    def row(kind: str, size: int) -> Row:
        stem = f"{kind}/{direction}"
        others = tuple((words, f"{stem}/{way}/{size}") for way, words in ways.items())
        return compared(f"{kind}, {size:,}", f"{stem}/ours/{size}", others, 1.5)

    return Table(
        f"collections-{direction.replace('_', '-')}",
        "collections",
        f"Collections {DIRECTIONS[direction]}",
        tuple(f"× {words}" for words in ways.values()),
        tuple(row(kind, size) for kind in ("array", "dictionary") for size in COLLECTION_SIZES),
    )


def growth_rows() -> tuple[Row, ...]:
    return tuple(
        Row(
            f"{kind} {words}",
            tuple(Growth(f"{kind}/{direction}/{way}", 1_000, 1_000_000) for way in ("ours", "floor")),
        )
        for kind in ("array", "dictionary")
        for direction, words in DIRECTIONS.items()
    )


def value_rows() -> tuple[Row, ...]:
    rows = [
        compared(words, f"value/{name}/ours", (("floor", f"value/{name}/floor"),)) for name, words in VALUES.items()
    ]
    return (*rows, Row("the same wrapper for the same object again", (Duration("value/identity/ours"),), 100))


def file_row(way: str, words: str, size: int) -> Row:
    others = (
        ("espeak-ng -w", f"file/command/{size}"),
        ("loop", f"file/loop/{size}"),
    )
    most = 1.05 if way == "warm" and size >= LEAST_JUDGED_WORDS else None
    return compared(f"{words}, {size:,} words", f"file/{way}/{size}", others, most)


def several_row(count: int) -> Row:
    one = (("one", "file/warm/1000"),)
    return compared(f"{count} at once, 1,000 words each", f"file/several/{count}", one)


def memory_row(size: int) -> Row:
    name = f"file/warm/{size}"
    counters = ("host_memory", "engine_memory", "text_memory")
    return Row(f"{size:,} words", tuple(Size(name, counter) for counter in counters))


def first_row(what: str, way: str, words: str, most: float | None = None) -> Row:
    name, loop = f"{what}/{way}", "first/loop"
    return Row(words, (Difference(name, loop),), most, (("ours", name), ("loop", loop)))


def heard_row(way: str, words: str, most: float | None) -> Row:
    return compared(words, f"heard/{way}", (("spd-say", "heard/spd_say"),), most)


def command_row(words: str, ours: str, command: str) -> Row:
    return compared(words, ours, (("espeak-ng", command),), 1.0)


OURS_OF_SYNTHESIZERS = {
    "warm": "a synthesizer whose engine runs",
    "new": "a new synthesizer, whose engine is yet to start",
}

TABLES = (
    Table(
        "calls",
        "calls",
        "Calls",
        ("× floor", "× empty call"),
        (
            compared(
                "service of the host, beside a call by its pointer",
                "call/wrapper",
                (("floor", "call/pointer"),),
                1.1,
            ),
            compared(
                "guarded function, beside its autorelease pool",
                "guard/guarded",
                (("floor", "guard/pool"), ("empty call", "guard/empty")),
                1.3,
            ),
            compared(
                "object of the class that is looked for last, beside the first",
                "chain/last",
                (("floor", "chain/first"),),
                1.2,
            ),
        ),
    ),
    Table(
        "loading",
        "loading",
        "Loading",
        ("× empty library on Foundation", "× the same on the platform library, too"),
        (
            compared(
                "loading, to the last class registered",
                "loading/ours",
                (
                    ("on Foundation", "loading/floor"),
                    ("on both", "loading/foundation_and_platform"),
                ),
                1.1,
            ),
        ),
    ),
    strings("to_platform"),
    strings("to_host"),
    collections("to_platform"),
    collections("to_host"),
    Table("growth", "collections", "An element of 1,000,000 beside one of 1,000", ("ours", "floor"), growth_rows()),
    Table("values", "values", "Values", ("× floor",), value_rows()),
    Table(
        "files",
        "speech_files",
        "Speech into files",
        ("× espeak-ng -w", "× loop"),
        tuple(
            file_row(way, words, size)
            for way, words in (("warm", "engine that runs"), ("cold", "new process"))
            for size in FILE_SIZES
        ),
    ),
    Table("several-files", "speech_files", "Several files", ("× one file",), (several_row(2), several_row(4))),
    Table(
        "file-memory",
        "speech_files",
        "Memory of speech into files",
        ("host program", "engine", "the text itself"),
        tuple(map(memory_row, FILE_SIZES)),
    ),
    Table(
        "first-samples",
        "first_samples",
        "First samples",
        ("later than the loop's",),
        (
            first_row("first", "warm", OURS_OF_SYNTHESIZERS["warm"], 2 * MILLISECOND),
            first_row("first", "new", OURS_OF_SYNTHESIZERS["new"]),
            *(
                first_row("handed", way, f"to the sound server: {words}")
                for way, words in OURS_OF_SYNTHESIZERS.items()
            ),
        ),
    ),
    Table(
        "heard-samples",
        "first_samples",
        "First samples heard",
        ("× spd-say",),
        tuple(heard_row(way, words, 1.0 if way == "warm" else None) for way, words in OURS_OF_SYNTHESIZERS.items()),
    ),
    Table(
        "events",
        "events",
        "Events",
        ("× bare socket",),
        (
            compared(
                "from the engine to the host's handler",
                "event/ours",
                (("socket", "event/socket"),),
                2.0,
            ),
        ),
    ),
    Table(
        "many-events",
        "events",
        "A million events",
        ("lost", "events", "rate"),
        (
            Row(
                "one after the other",
                (
                    Count("events/million", "lost"),
                    Count("events/million", "events"),
                    Rate("events/million", "events"),
                ),
                0,
                (("all", "events/million"),),
            ),
        ),
    ),
    Table(
        "voices",
        "voices",
        "Voices and phonemes",
        ("× espeak-ng",),
        (
            command_row("phonemes of a text", "phonemes/ours", "phonemes/command"),
            command_row("list of voices, the first time", "voices/ours_first", "voices/command"),
            command_row("list of voices, again", "voices/ours_again", "voices/command"),
            command_row("attributes of a voice", "attributes/ours", "attributes/command"),
        ),
    ),
    Table(
        "listening",
        "listening",
        "Listening",
        ("× loop",),
        (compared("to a sound file", "listening/ours", (("loop", "listening/loop"),), 1.05),),
    ),
)
