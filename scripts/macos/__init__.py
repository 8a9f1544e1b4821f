"""Holds the macOS build of the libraries, our declarations of macOS and the sources against what macOS has."""
