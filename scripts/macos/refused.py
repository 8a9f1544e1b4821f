"""Shows that the checks find faults: each file in tests/macos/refused holds one, and must be refused."""

from __future__ import annotations

import os
import re
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass, field
from pathlib import Path

from macos.check import Planted, Project, check_declarations, check_exceptions, check_planted
from macos.commands import PLUGIN, SOURCES
from macos.problems import CannotCheck

STAGES = ("sources", "compiler", "linker", "audit", "rules", "golden", "declarations", "exceptions")
NOTHING = "nothing"
LINE = re.compile(r"^\s*(?://|#) ?(refused by|message|library|compile option|link option): (.+?)\s*$", re.MULTILINE)


@dataclass
class Fault:
    """A file with what its first lines say of it."""

    path: Path
    stage: str = ""
    library: str = PLUGIN
    messages: list[str] = field(default_factory=list)
    compiling: list[str] = field(default_factory=list)
    linking: list[str] = field(default_factory=list)


def read_faults(folder: Path) -> list[Fault]:
    """The planted faults, and the sound files among them, which nothing may refuse."""
    faults = [_read(path) for path in sorted(folder.iterdir()) if path.is_file()]
    if not any(fault.stage == NOTHING for fault in faults):
        raise CannotCheck(f"{folder} holds no sound file, one that is refused by: {NOTHING}")
    return faults


def _read(path: Path) -> Fault:
    fault = Fault(path)
    for key, value in LINE.findall(path.read_text(encoding="utf-8")):
        if key == "refused by":
            fault.stage = value
        elif key == "library":
            fault.library = value
        elif key == "message":
            fault.messages.append(value)
        else:
            options = fault.compiling if key == "compile option" else fault.linking
            options.append(value.replace("{folder}", str(path.parent)))
    if fault.stage not in (*STAGES, NOTHING):
        stages = ", ".join((*STAGES, NOTHING))
        raise CannotCheck(f'{path} does not say by which stage it is "refused by": {stages}')
    if fault.library not in SOURCES:
        raise CannotCheck(f"{path} is planted in {fault.library}, which is none of: {', '.join(SOURCES)}")
    if bool(fault.messages) == (fault.stage == NOTHING):
        raise CannotCheck(f'{path} needs the line "message: ..." exactly when it is to be refused')
    return fault


def check_refusals(project: Project) -> tuple[list[str], int]:
    """Runs the checks on each file: what went otherwise than the files say, and the number of faults."""
    faults = read_faults(project.folder / "refused")
    with ThreadPoolExecutor(max_workers=os.cpu_count()) as pool:
        verdicts = list(pool.map(lambda fault: _verdict(project, fault), faults))
    return [verdict for verdict in verdicts if verdict], sum(fault.stage != NOTHING for fault in faults)


def _verdict(project: Project, fault: Fault) -> str:
    found = _run(project, fault)
    name = fault.path.name
    if fault.stage == NOTHING:
        return "".join(
            f"{name} is sound, but refused by {stage}: {lines[0]}" for stage, lines in found.items()
        )
    if not found:
        return f"{name} is not refused; {fault.stage} must refuse it"
    stage, lines = next(iter(found.items()))
    if stage != fault.stage:
        return f"{name} is refused by {stage}, not by {fault.stage}: {lines[0] if lines else 'no message'}"
    text = "\n".join(lines)
    missing = [message for message in fault.messages if message not in text]
    if missing:
        return f'{name} is refused by {stage} without the message "{missing[0]}": {lines[0]}'
    return ""


def _run(project: Project, fault: Fault) -> dict[str, list[str]]:
    if fault.path.suffix in (".h", ".tbd"):
        problems = check_declarations(project, project.beyond_the_record(), fault.path)
        return {"declarations": problems} if problems else {}
    if fault.path.suffix == ".txt":
        problems = check_exceptions(project, fault.path)
        return {"exceptions": problems} if problems else {}
    return check_planted(project, Planted(fault.library, fault.path, fault.compiling, fault.linking))
