"""Lists of names with reasons, of which every line must be needed."""

from __future__ import annotations

from pathlib import Path

from macos.problems import CannotCheck


class Exceptions:
    """The lines "name -- reason" of files. A line that was never asked for is a fault."""

    def __init__(self, *paths: Path) -> None:
        # The files by the names that stand in them.
        self.places: dict[str, Path] = {}
        self.used: set[str] = set()
        for path in paths:
            self._read(path)

    def _read(self, path: Path) -> None:
        try:
            lines = path.read_text(encoding="utf-8").splitlines()
        except OSError as error:
            raise CannotCheck(f"{path} can't be read: {error.strerror}") from error
        for number, line in enumerate(lines, 1):
            if not line.strip() or line.startswith("#"):
                continue
            name, separator, reason = line.partition(" -- ")
            if not separator or not reason.strip():
                raise CannotCheck(f'{path}:{number} is not "name -- reason"')
            self.places[name.strip()] = path

    def covers(self, name: str) -> bool:
        """Whether the name stands in the file."""
        if name in self.places:
            self.used.add(name)
            return True
        return False

    def unneeded(self) -> list[str]:
        """A message for each line that nothing needed."""
        unused = [name for name in self.places if name not in self.used]
        return [f"{self.places[name].name}: {name} is not needed any more" for name in unused]
