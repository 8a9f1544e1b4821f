"""Plugin libraries: where they are looked for, and what they bring."""

from __future__ import annotations

import os
import stat
import sys
import sysconfig
import types
from collections.abc import Iterator
from pathlib import Path
from typing import Any

from . import _zqm
from ._classes import make_class
from ._errors import LoadError
from ._objects import Object

PATH_VARIABLE = "ZQM_PLUGIN_PATH"

_SUFFIX = ".dylib" if sys.platform == "darwin" else ".so"


class Library(types.ModuleType):
    """What a plugin library brings: its classes, as attributes."""

    classes: tuple[type[Object], ...]
    descriptions: tuple[_zqm.ClassDescription, ...]  # in the order of the classes

    def __init__(self, path: Path, descriptions: list[_zqm.ClassDescription]):
        super().__init__(path.name.split(".")[0], f"The classes of the plugin library {path}.")
        self.__file__ = str(path)
        self.descriptions = tuple(descriptions)
        self.classes = tuple(make_class(description, self.__name__) for description in descriptions)
        self.__all__ = [one.__name__ for one in self.classes]
        vars(self).update(zip(self.__all__, self.classes))

    def __repr__(self) -> str:
        return f"<plugin library {self.__file__}>"

    # For those who check types: which classes a library has is known when it is loaded.
    def __getattr__(self, name: str) -> Any:
        raise AttributeError(f"{self.__name__} has no class {name}")


def load(plugin: str | os.PathLike[str]) -> Library:
    """Loads a plugin library, once: by its path, or by its name, with or without what such files end in.

    A name is looked for in the folders that ZQM_PLUGIN_PATH names, beside this module, where the platform's
    library is, and in the system's folders for libraries.
    """
    path = _find(_name(plugin)).resolve()
    library = _loaded.get(path)
    if library is None:
        known = len(_zqm.describe_classes())
        _zqm.load(str(path))
        library = _loaded[path] = Library(path, _zqm.describe_classes()[known:])
    return library


_loaded: dict[Path, Library] = {}


def _name(plugin: object) -> str:
    name = os.fspath(plugin) if isinstance(plugin, os.PathLike) else plugin
    if not isinstance(name, str):
        raise TypeError(f"a plugin library is named by a str or a path, not {plugin!r}")
    if not name:
        raise LoadError("the name of the plugin library is empty")
    if "\0" in name:
        raise LoadError(f"{name!r} is no name of a file")
    return name


def _find(plugin: str) -> Path:
    # Names may have a version behind what libraries end in.
    file = plugin if plugin.endswith(_SUFFIX) or _SUFFIX + "." in plugin else plugin + _SUFFIX
    if os.sep in plugin:
        return _of_path(plugin, Path(plugin).absolute(), Path(file).absolute())
    folders = list(dict.fromkeys(_folders()))
    for folder in folders:
        if _is_file(folder / file):
            return folder / file
    listed = ", ".join(map(str, folders))
    raise LoadError(f"there is no {file} in {listed}; {PATH_VARIABLE} can name other folders")


def _is_file(path: Path) -> bool:
    try:
        return path.is_file()
    except OSError:  # its folder can't be looked into, for one
        return False


def _of_path(plugin: str, *candidates: Path) -> Path:
    for candidate in candidates:
        if _is_file(candidate):
            return candidate
    try:
        mode = os.stat(plugin).st_mode
    except FileNotFoundError:
        raise LoadError(f"there is no plugin library {plugin}") from None
    except OSError as error:
        raise LoadError(f"there is no plugin library {plugin}: {error.strerror}") from None
    raise LoadError(f"{plugin} is {'a folder' if stat.S_ISDIR(mode) else 'no file'}, not a plugin library")


def _folders() -> Iterator[Path]:
    for folder in os.environ.get(PATH_VARIABLE, "").split(os.pathsep):
        if folder:
            yield Path(folder).absolute()
    yield Path(_zqm.__file__).parent
    platform_folder = _zqm.platform_folder()
    if platform_folder is not None:
        yield Path(platform_folder).absolute()
    architecture = sysconfig.get_config_var("MULTIARCH") or ""
    for prefix in ("/usr/local/lib", "/usr/lib"):
        yield Path(prefix, architecture)
        yield Path(prefix)
