"""What keeps a script from telling anything."""

from __future__ import annotations


class Problem(Exception):
    """In words for people."""


def words_of(error: Problem | OSError) -> str:
    if isinstance(error, OSError) and error.strerror is not None:
        return f"{error.filename}: {error.strerror}" if error.filename is not None else error.strerror
    return str(error)
