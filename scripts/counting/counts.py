"""How many instructions a round of each path takes, by callgrind."""

from __future__ import annotations

import os
import re
import subprocess
import tempfile
from pathlib import Path

from common.problems import Problem

ROUNDS = 1000
# Counted from the call of this function of bench/hot_paths.mm to its return: neither start-up nor warm-up.
COUNTED_FUNCTION = "*countedRounds*"
# The C library has other code for processors that can more.
SAME_CODE_ON_ALL_PROCESSORS = "glibc.cpu.hwcaps=-AVX2,-AVX_Fast_Unaligned_Load,-ERMS,-FSRM"


def paths_of(program: Path) -> list[str]:
    return output_of([str(program)], {}).split()


def count_of(program: Path, path: str) -> int:
    """To the next whole number."""
    with tempfile.TemporaryDirectory(prefix="zqm-counts-") as folder:
        profile = Path(folder) / "profile"
        environment = {"HOME": folder, "LC_ALL": "C.UTF-8", "GLIBC_TUNABLES": SAME_CODE_ON_ALL_PROCESSORS}
        options = ["--tool=callgrind", f"--toggle-collect={COUNTED_FUNCTION}", f"--callgrind-out-file={profile}"]
        output_of(["valgrind", *options, str(program), path, str(ROUNDS)], environment)
        total = re.search(r"^totals: ([0-9]+)$", profile.read_text(encoding="utf-8"), re.MULTILINE)
    count = round(int(total[1]) / ROUNDS) if total is not None else 0
    if count == 0:
        raise Problem(f"{path}: nothing was counted")
    return count


def output_of(command: list[str], environment: dict[str, str]) -> str:
    """In no other environment than this, but for where programs are."""
    environment = {"PATH": os.environ["PATH"], **environment}
    try:
        result = subprocess.run(command, capture_output=True, text=True, check=False, env=environment)
    except FileNotFoundError:
        if command[0] == "valgrind":
            raise Problem("valgrind is missing: install the package valgrind") from None
        raise
    if result.returncode != 0:
        raise Problem(f"{' '.join(command)} fails:\n{result.stderr.strip()}")
    return result.stdout
