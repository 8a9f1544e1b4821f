"""The command of scripts/manual."""

from __future__ import annotations

import argparse
import sys
from pathlib import Path

from reference.pages import class_page, index_page
from reference.problems import Problems
from reference.prose import read_prose
from reference.records import read_classes
from reference.rules import broken_rules, names_of

INDEX = "README.md"


def make_pages(records: Path, prose_folder: Path) -> dict[str, str]:
    """The text of each page, by the name of its file."""
    classes = read_classes(records)
    names = {f"{each.name}.md" for each in classes}
    found = {each.name for each in prose_folder.glob("*.md")}
    problems = [f"{prose_folder / name} is missing." for name in sorted(names | {INDEX}) if name not in found]
    problems += [f"{prose_folder / name} is of no class." for name in sorted(found - names - {INDEX})]
    if problems:
        raise Problems(*problems)

    pairs = [(each, read_prose(prose_folder / f"{each.name}.md")) for each in classes]
    known_names = names_of(classes)
    problems = [line for each, prose in pairs for line in broken_rules(each, prose, known_names)]
    if problems:
        raise Problems(*problems)

    pages = {f"{each.name}.md": class_page(each, prose) for each, prose in pairs}
    pages[INDEX] = index_page((prose_folder / INDEX).read_text(encoding="utf-8"), pairs)
    return pages


def present_pages(folder: Path) -> dict[str, str]:
    return {each.name: each.read_text(encoding="utf-8") for each in folder.glob("*")}


def write(pages: dict[str, str], folder: Path) -> None:
    folder.mkdir(parents=True, exist_ok=True)
    for name in present_pages(folder).keys() - pages.keys():
        (folder / name).unlink()
    for name, text in pages.items():
        (folder / name).write_text(text, encoding="utf-8")


def check(pages: dict[str, str], folder: Path) -> None:
    present = present_pages(folder)
    stale = sorted(name for name in pages.keys() | present.keys() if pages.get(name) != present.get(name))
    if stale:
        raise Problems(*(f"{folder / name} is not current: run scripts/manual." for name in stale))


def main() -> int:
    parser = argparse.ArgumentParser(prog="scripts/manual", description="Writes the reference manual.")
    parser.add_argument("--check", action="store_true", help="only say what isn't current")
    parser.add_argument("--records", metavar="FILE", type=Path, help="what `zqmspeech inspect --json` printed")
    parser.add_argument("--prose", metavar="FOLDER", type=Path, help="instead of docs/reference-prose")
    parser.add_argument("--reference", metavar="FOLDER", type=Path, help="instead of docs/reference")
    parser.add_argument("--root", type=Path, help=argparse.SUPPRESS)
    options = parser.parse_args()
    folder = options.reference or options.root / "docs/reference"
    try:
        pages = make_pages(options.records, options.prose or options.root / "docs/reference-prose")
        (check if options.check else write)(pages, folder)
    except Problems as problems:
        print(*problems.lines, sep="\n", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
