"""Draws samples over time, by gnuplot, as SVG."""

from __future__ import annotations

from dataclasses import dataclass, field
from pathlib import Path

from common import gnuplot
from common.gnuplot import quoted
from soaking.measures import MEASURES, MIB
from soaking.samples import Samples

WIDTH, HEIGHT_OF_PANEL = 900, 260


@dataclass
class Panel:
    curves: list[str] = field(default_factory=list)
    tolerance: float = 0.0  # of its measures, the most


def script_of(all_samples: list[Samples], file: Path) -> str:
    """For gnuplot, the values in it: what each has changed since the first sample, in which alone growth is seen."""
    blocks: list[str] = []
    panels: dict[str, Panel] = {}
    for samples in all_samples:
        for measure in MEASURES:
            values = samples.columns.get(measure.name)
            if values is None:
                continue
            scale = MIB if measure.unit == "MiB" else 1
            name = f"$values{len(blocks)}"
            changes = ((value - values[0]) / scale for value in values)
            rows = (f"{second / 60:.4f} {change:.4f}" for second, change in zip(samples.seconds, changes))
            blocks.append("\n".join((f"{name} << EOD", *rows, "EOD")))
            title = f"{measure.name}, {samples.name}"
            panel = panels.setdefault(measure.panel + (", MiB" if scale != 1 else ""), Panel())
            panel.curves.append(f"{name} using 1:2 with lines title {quoted(title)}")
            panel.tolerance = max(panel.tolerance, measure.tolerance / scale)
    lines = [
        f"set terminal svg size {WIDTH},{HEIGHT_OF_PANEL * len(panels)} dynamic background 'white'",
        f"set output {quoted(str(file))}",
        *blocks,
        f"set multiplot layout {len(panels)},1",
        "set key outside right noenhanced",
        "set lmargin 10",
        "set rmargin 46",
        "set xlabel 'minutes'",
        "set grid",
    ]
    for title, panel in panels.items():
        shown = f"{panel.tolerance:.2f}"  # at least: noise is not to look like growth
        lines += [f"set title {quoted('change of ' + title)}", f"set yrange [*<-{shown}:{shown}<*]"]
        lines += ["plot " + ", ".join(panel.curves)]
    return "\n".join([*lines, "unset multiplot", ""])


def draw(all_samples: list[Samples], file: Path) -> None:
    gnuplot.run(script_of(all_samples, file))
