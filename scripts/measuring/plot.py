"""Draws how times grow with sizes, by gnuplot, as SVG."""

from __future__ import annotations

from pathlib import Path

from common import gnuplot
from common.gnuplot import quoted
from measuring.curves import Curve, Plot
from measuring.figures import SECOND
from measuring.times import Times

WIDTH_OF_PANEL, HEIGHT_OF_PANEL = 440, 300
LEAST_WIDTH = 640


def script_of(plot: Plot, times: Times, file: Path) -> str:
    """For gnuplot, the values in it. Points that weren't measured are left out."""
    blocks: list[str] = []
    panels: list[str] = []

    def curve_of(curve: Curve) -> str:
        name = f"$values{len(blocks)}"
        measured = {size: times[benchmark] for size, benchmark in curve.points.items() if benchmark in times}
        rows = (f"{size} {point.nanoseconds / SECOND:.4g}" for size, point in measured.items())
        blocks.append("\n".join((f"{name} << EOD", *rows, "EOD")))
        return f"{name} using 1:2 with linespoints pointtype 7 pointsize 0.4 title {quoted(curve.title)}"

    for panel in plot.panels:
        panels += [f"set title {quoted(panel.title)}", "plot " + ", ".join(map(curve_of, panel.curves))]
    rows = -(-len(plot.panels) // plot.columns)
    width, height = max(WIDTH_OF_PANEL * plot.columns, LEAST_WIDTH), HEIGHT_OF_PANEL * rows
    return "\n".join(
        [
            "set encoding utf8",
            f"set terminal svg size {width},{height} dynamic background 'white'",
            f"set output {quoted(str(file))}",
            *blocks,
            f"set multiplot layout {rows},{plot.columns}",
            "set key top left reverse Left samplen 2 noenhanced",
            "set logscale xy",
            "set format x '%.0s%c'",
            "set format y '%.0s %cs'",
            f"set xlabel {quoted(plot.sizes)}",
            "set grid",
            *panels,
            "unset multiplot",
            "",
        ]
    )


def draw(plot: Plot, times: Times, file: Path) -> None:
    gnuplot.run(script_of(plot, times, file))
