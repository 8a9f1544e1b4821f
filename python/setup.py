"""Makes a package for pip that holds all it needs: the module, the plugins, the platform's library, the engine.

The sources of those are the project's, around this folder, and CMake builds them; ZQM_BUILD_FOLDER names a folder
where it has done so already.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

from setuptools import Extension, setup
from setuptools.command.build_ext import build_ext

PROJECT = pathlib.Path(__file__).resolve().parent.parent
BUILT = os.environ.get("ZQM_BUILD_FOLDER")


def version():
    """As CMakeLists.txt has it, which a build knows, too."""
    if BUILT:
        return re.search(r"^CMAKE_PROJECT_VERSION:STATIC=(.+)$", read(BUILT, "CMakeCache.txt"), re.M)[1]
    return re.search(r"^project\(.*VERSION ([0-9.]+)", read(PROJECT, "CMakeLists.txt"), re.M)[1]


def read(folder, name):
    return pathlib.Path(folder, name).read_text(encoding="utf-8")


class Build(build_ext):
    def run(self):
        folder = BUILT or self.build_all()
        target = pathlib.Path(self.build_lib, "zqm")
        with tempfile.TemporaryDirectory() as stage:
            for component in ("plugin", "python"):
                cmake("--install", folder, "--strip", "--component", component, "--prefix", stage)
            target.mkdir(parents=True, exist_ok=True)
            for file in pathlib.Path(stage).rglob("*"):
                is_library = {".so", ".dylib"} & set(file.suffixes)  # a version may follow
                if file.is_file() and (is_library or file.name == "zqmspeech-engine"):
                    shutil.copy2(file, target)
        if not pathlib.Path(target, pathlib.Path(self.get_ext_filename("zqm._zqm")).name).exists():
            sys.exit(f"{folder} holds no module for this Python, {sys.executable}")

    def build_all(self):
        folder = str(pathlib.Path(self.build_temp).absolute() / "cmake")
        os.environ.setdefault("CMAKE_BUILD_TYPE", "RelWithDebInfo")
        cmake(
            *("-S", str(PROJECT), "-B", folder, "-G", "Ninja"),
            *("-D", "BUILD_TESTING=OFF", "-D", "ZQM_PYTHON=ON", "-D", f"Python3_EXECUTABLE={sys.executable}"),
            *launchers(),
        )
        cmake("--build", folder, "--target", "zqm_python", "ZQMNSSpeech", "ZQMFoundation")
        return folder


def launchers():
    """Of compilers: ccache, where there is one."""
    if shutil.which("ccache"):
        for language in ("C", "CXX", "OBJC", "OBJCXX"):
            yield from ("-D", f"CMAKE_{language}_COMPILER_LAUNCHER=ccache")


def cmake(*arguments):
    subprocess.run(["cmake", *arguments], check=True)


setup(
    version=version(),
    packages=["zqm"],
    package_data={"zqm": ["py.typed", "*.pyi"]},
    ext_modules=[Extension("zqm._zqm", sources=[])],
    cmdclass={"build_ext": Build},
)
