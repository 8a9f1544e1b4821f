"""What the maintainers' longer scripts share: running programs, drawing, and telling what went wrong."""
