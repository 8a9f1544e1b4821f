"""What keeps a count from telling anything."""

from __future__ import annotations


class Problem(Exception):
    """In words for people."""
