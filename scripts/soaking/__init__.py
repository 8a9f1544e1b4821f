"""What scripts/soak does once all is built: runs the programs, and finds out whether what they hold grows."""
