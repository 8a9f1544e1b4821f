"""Counts the instructions of the library's hot paths and holds them against the record: scripts/count-instructions."""
