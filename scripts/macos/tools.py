"""Runs the tools of LLVM and the build, and says what to install where one is missing."""

from __future__ import annotations

import os
import shutil
import subprocess
from pathlib import Path

from macos.problems import CannotCheck

VERSION = 14
PACKAGES = {"ninja": "ninja-build"}
SEARCH_PATHS = (
    "CPATH", "C_INCLUDE_PATH", "CPLUS_INCLUDE_PATH", "OBJC_INCLUDE_PATH", "OBJCPLUS_INCLUDE_PATH",
    "LIBRARY_PATH",
)  # fmt: skip
# Seconds that no tool needs.
TIMEOUT = 120


def tool(name: str) -> str:
    """The full path of an LLVM tool of the version that builds for macOS, or of ninja."""
    command = name if name == "ninja" else f"{name}-{VERSION}"
    path = shutil.which(command)
    if path is None:
        package = PACKAGES.get(name, f"llvm-{VERSION}")
        raise CannotCheck(f"{command} is missing: install the package {package}")
    return path


def run(command: list[str], folder: Path | None = None, text: str = "") -> subprocess.CompletedProcess[str]:
    """Runs the command with this input, without the variables by which compilers find this system's files."""
    environment = {name: value for name, value in os.environ.items() if name not in SEARCH_PATHS}
    environment["LC_ALL"] = "C.UTF-8"
    try:
        return subprocess.run(
            command,
            cwd=folder,
            input=text,
            capture_output=True,
            text=True,
            errors="replace",
            env=environment,
            check=False,
            timeout=TIMEOUT,
        )
    except subprocess.TimeoutExpired as error:
        raise CannotCheck(f"{command[0]} was not done after {TIMEOUT} seconds") from error
    except OSError as error:
        raise CannotCheck(f"{command[0]} can't be run: {error.strerror}") from error


def output_of(name: str, *arguments: str) -> str:
    """What the LLVM tool prints; an error of it ends the check."""
    done = run([tool(name), *arguments])
    if done.returncode != 0:
        message = (done.stderr.strip() or done.stdout.strip() or "it gave no reason").splitlines()[0]
        raise CannotCheck(f"{name}-{VERSION} can't read {arguments[-1]}: {message}")
    return done.stdout
