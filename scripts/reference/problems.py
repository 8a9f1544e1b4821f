"""What keeps the manual from being made."""

from __future__ import annotations


class Problems(Exception):
    """One line each, for people."""

    def __init__(self, *lines: str) -> None:
        super().__init__(*lines)
        self.lines = lines
