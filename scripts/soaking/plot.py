"""Draws samples over time, by gnuplot, as SVG."""

from __future__ import annotations

import subprocess
from pathlib import Path

from soaking.measures import MEASURES, MIB
from soaking.problems import Problem
from soaking.samples import Samples

WIDTH, HEIGHT_OF_PANEL = 900, 260


def quoted(text: str) -> str:
    return "'" + text.replace("'", "''") + "'"


def script_of(all_samples: list[Samples], file: Path) -> str:
    """For gnuplot, the values in it."""
    blocks: list[str] = []
    panels: dict[str, list[str]] = {}
    for samples in all_samples:
        for measure in MEASURES:
            values = samples.columns.get(measure.name)
            if values is None:
                continue
            scale = MIB if measure.unit == "MiB" else 1
            name = f"$values{len(blocks)}"
            rows = (f"{second / 60:.4f} {value / scale:.4f}" for second, value in zip(samples.seconds, values))
            blocks.append("\n".join((f"{name} << EOD", *rows, "EOD")))
            title = f"{measure.name}, {samples.name}"
            panels.setdefault(measure.panel + (", MiB" if scale != 1 else ""), []).append(
                f"{name} using 1:2 with lines title {quoted(title)}"
            )
    lines = [
        f"set terminal svg size {WIDTH},{HEIGHT_OF_PANEL * len(panels)} dynamic background 'white'",
        f"set output {quoted(str(file))}",
        *blocks,
        f"set multiplot layout {len(panels)},1",
        "set key outside right noenhanced",
        "set lmargin 10",
        "set rmargin 46",
        "set xlabel 'minutes'",
        "set yrange [0:*]",
        "set grid",
    ]
    for title, curves in panels.items():
        lines += [f"set title {quoted(title)}", "plot " + ", ".join(curves)]
    return "\n".join([*lines, "unset multiplot", ""])


def draw(all_samples: list[Samples], file: Path) -> None:
    try:
        result = subprocess.run(
            ["gnuplot"], input=script_of(all_samples, file), text=True, capture_output=True, check=False
        )
    except FileNotFoundError:
        raise Problem("gnuplot is missing: install the package gnuplot-nox") from None
    if result.returncode != 0:
        raise Problem(f"gnuplot: {result.stderr.strip()}")
