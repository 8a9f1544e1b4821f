"""What it was measured on."""

from __future__ import annotations

import os
import re
import subprocess
from pathlib import Path

from common.problems import Problem

LIBRARIES = {
    "GNUstep base": "libgnustep-base-dev",
    "espeak-ng": "libespeak-ng-dev",
    "PocketSphinx": "libpocketsphinx-dev",
}


def version_of(package: str) -> str:
    try:
        result = subprocess.run(
            ["dpkg-query", "--show", "--showformat=${Version}", package],
            stdin=subprocess.DEVNULL,
            capture_output=True,
            text=True,
            check=True,
        )
    except (OSError, subprocess.CalledProcessError):
        raise Problem(f"dpkg-query doesn't tell the version of {package}") from None
    return result.stdout.strip()


def words_of_machine() -> str:
    model = re.search(r"^model name\s*: (.*)$", Path("/proc/cpuinfo").read_text(encoding="utf-8"), re.MULTILINE)
    processor = model[1] if model is not None else "a processor that doesn't tell its name"
    libraries = ", ".join(f"{name} {version_of(package)}" for name, package in LIBRARIES.items())
    return f"Measured on {processor}, {len(os.sched_getaffinity(0))} processors, with {libraries}."
