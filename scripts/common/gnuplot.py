"""Has gnuplot draw."""

from __future__ import annotations

import subprocess

from common.problems import Problem


def quoted(text: str) -> str:
    return "'" + text.replace("'", "''") + "'"


def run(script: str) -> None:
    try:
        result = subprocess.run(["gnuplot"], input=script, text=True, capture_output=True, check=False)
    except FileNotFoundError:
        raise Problem("gnuplot is missing: install the package gnuplot-nox") from None
    if result.returncode != 0:
        raise Problem(f"gnuplot: {result.stderr.strip()}")
