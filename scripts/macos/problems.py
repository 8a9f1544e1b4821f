"""What a check reports: a problem it found, or that it can't run at all."""

from __future__ import annotations


class CannotCheck(Exception):
    """Something that a check needs is missing or unreadable; the message is one line that says what to do."""


def listed(names: list[str] | set[str], limit: int = 12) -> str:
    """The names, sorted, for a message; a long list is cut and says so."""
    ordered = sorted(names)
    text = ", ".join(ordered[:limit])
    return text if len(ordered) <= limit else f"{text} and {len(ordered) - limit} more"
