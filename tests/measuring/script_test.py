"""The script, before it builds anything."""

import subprocess

import pytest
from conftest import SCRIPTS

from measuring.runs import PROGRAMS


@pytest.mark.parametrize(
    ("arguments", "told"),
    [
        (["--fast"], "--fast is no option of this script."),
        (["calls"], '"calls" follows no --only.'),
        (["--only"], "--only which PROGRAM?"),
        (["--only", "--quick"], "--only which PROGRAM?"),
        (["--only", ""], "--only which PROGRAM?"),
        (["--page", "--quick"], "--page measures nothing, so it stands alone."),
        (["--only", "calls", "--page"], "--page measures nothing, so it stands alone."),
    ],
)
def test_wrong_arguments_are_refused(arguments, told):
    done = subprocess.run([SCRIPTS / "measure", *arguments], capture_output=True, text=True, timeout=60)
    assert done.returncode == 1
    assert done.stderr == f"{told} See scripts/measure --help.\n"
    assert done.stdout == ""


def test_help_names_all_programs():
    done = subprocess.run([SCRIPTS / "measure", "--help"], capture_output=True, text=True, timeout=60)
    assert done.returncode == 0
    words = done.stdout.replace(",", " ").replace(".", " ").split()
    assert [program for program in PROGRAMS if program not in words] == []
    assert {"--quick", "--only", "--page"} <= set(words)
