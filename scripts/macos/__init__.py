"""Holds the plugin's macOS build, its declarations of macOS and its sources against what macOS has."""
