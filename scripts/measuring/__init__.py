"""What scripts/measure does once all is built: runs the benchmarks, and makes tables and plots of what they took."""
