"""The counts that the repository has: a JSON object of numbers by path."""

from __future__ import annotations

import json
from pathlib import Path

from common.problems import Problem


def read_record(file: Path) -> dict[str, int]:
    try:
        record = json.loads(file.read_text(encoding="utf-8"))
    except ValueError as error:
        raise Problem(f"{file} is no JSON: {error}") from None
    if not isinstance(record, dict):
        raise Problem(f"{file} is no record: it has to be an object of counts by path")
    for path, count in record.items():
        if type(count) is not int or count < 1:  # a bool is no count
            raise Problem(f"{file}: the count of {path} is no whole number of at least 1")
    return record


def write_record(file: Path, counts: dict[str, int]) -> None:
    file.write_text(json.dumps(counts, indent=4) + "\n", encoding="utf-8")
