"""What mypy says of the scripts at its strictest."""

import subprocess

from conftest import SCRIPTS


def test_a_type_checker_has_nothing_against_them(tmp_path):
    packages = [option for package in ("common", "counting", "measuring", "soaking") for option in ("-p", package)]
    done = subprocess.run(
        ["mypy", "--strict", "--no-error-summary", "--cache-dir", str(tmp_path), *packages],
        cwd=SCRIPTS,
        capture_output=True,
        text=True,
        timeout=200,
    )
    assert done.stdout + done.stderr == ""
