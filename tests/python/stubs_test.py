"""Type stubs say what the classes are."""

import __future__
import ast
import inspect
import os
import subprocess
import sys

import pytest
from conftest import BUILD, PLUGINS

import zqm
from zqm import stubs

LIBRARIES = ["libZQMNSSpeech", "libZQMFoundation", PLUGINS / "widget_plugin.so", PLUGINS / "echo_plugin.so"]


def run(*arguments):
    return subprocess.run(
        [sys.executable, "-m", "zqm.stubs", *map(str, arguments)], capture_output=True, text=True, timeout=120
    )


@pytest.fixture(params=LIBRARIES, ids=str)
def library(request):
    return zqm.load(request.param)


def members_of(made):
    """The public members of the class alone, without those that stubs can't have."""
    return {
        name: value
        for name, value in vars(made).items()
        if not name.startswith("_") or name.startswith("_exc")
        if name.isidentifier() and name not in ("from",)
    }


def declared(node):
    """The members that the stub of a class declares; of overloads all."""
    members = {}
    for statement in node.body:
        if isinstance(statement, ast.AnnAssign):
            members.setdefault(statement.target.id, []).append(statement)
        elif isinstance(statement, (ast.FunctionDef, ast.AsyncFunctionDef)):
            members.setdefault(statement.name, []).append(statement)
    return members


def test_stubs_are_python_that_runs(library):
    names = {}
    flags = __future__.annotations.compiler_flag
    exec(compile(stubs.stubs(library), "stubs.pyi", "exec", dont_inherit=True, flags=flags), names)
    for made in library.classes:
        stub = names[made.__name__]
        assert issubclass(stub, zqm.Object)
        assert issubclass(stub, zqm.HostException) == issubclass(made, zqm.HostException)


def test_stubs_declare_just_the_members_of_the_classes(library):
    tree = ast.parse(stubs.stubs(library))
    classes = [node for node in tree.body if isinstance(node, ast.ClassDef)]
    assert [node.name for node in classes] == library.__all__
    for node, made in zip(classes, library.classes):
        assert [ast.unparse(base).split(".")[-1] for base in node.bases] == [
            base.__name__ for base in made.__bases__
        ]
        assert set(declared(node)) - {"__init__"} == set(members_of(made))


def test_stubs_have_the_parameters_of_the_methods(library):
    tree = ast.parse(stubs.stubs(library))
    classes = [node for node in tree.body if isinstance(node, ast.ClassDef)]
    compared = 0
    for node, made in zip(classes, library.classes):
        for name, forms in declared(node).items():
            member = getattr(made, name)
            if len(forms) == 1 and callable(member) and name not in ("__init__", "finished"):
                names = [argument.arg for argument in forms[0].args.posonlyargs]
                assert names == list(inspect.signature(member).parameters), name
                compared += 1
    assert compared > 0 or not any(callable(value) for one in library.classes for value in members_of(one).values())


def test_types_are_those_of_the_declarations(speech, echoes):
    lines = [line.strip() for line in stubs.stubs(speech).splitlines()]
    for line in [
        "class NSSpeechSynthesizerZQM(zqm.Object):",
        "NSSpeechImmediateBoundary: int",
        "def __init__(self, voice: str | bytes | None, /) -> None: ...",
        "Rate: float",
        "def isSpeaking(self) -> bool: ...",
        "def availableVoices() -> list[str] | None: ...",
        "def attributesForVoice(voice: str | bytes | None, /) -> NSVoiceZQM | None: ...",
        "def startSpeakingString(self, Text: str | bytes | None, "
        "File: pathlib.Path | None, /) -> bool: ...",
        "def objectForProperty(self, PropertyName: str | bytes | None, "
        "error: zqm.ByRef[Any] | None, /) -> Any: ...",
        "def willSpeakWord(self, Position: int, Length: int, Text: str, /) -> None: ...",
        "async def finished(self) -> bool: ...",
        "def setCommands(self, commands: list[str | bytes | None] | tuple[str | bytes | None, ...] | None, /) "
        "-> None: ...",
    ]:
        assert line in lines
    lines = [line.strip() for line in stubs.stubs(echoes).splitlines()]
    assert "class EchoException(zqm.RuntimeException, zqm.Object):" in lines
    assert "Real: float" in lines
    assert not any("def from" in line for line in lines)


def test_inherited_overloads_stand_beside_a_classes_own(widgets):
    gadget = stubs.stubs(widgets).split("class Gadget")[1]
    assert gadget.count("def Describe") == 3
    assert gadget.count("what: str") == 1


def test_the_command_prints_them(speech):
    done = run("libZQMNSSpeech")
    assert (done.returncode, done.stderr) == (0, "")
    assert done.stdout == stubs.stubs(speech)


def test_the_command_tells_what_is_wrong():
    done = run("libNone")
    assert (done.returncode, done.stdout) == (1, "")
    assert done.stderr.startswith("zqm.stubs: there is no libNone.so in ")
    assert len(done.stderr.splitlines()) == 1
    assert run().returncode == 2


MODULE = 'import zqm\nglobals().update(vars(zqm.load("libZQMNSSpeech")))\n'

USED_WELL = """
import asyncio
import pathlib

import zqm
from zqm_speech import NSSpeechSynthesizerZQM


class Reader(NSSpeechSynthesizerZQM):
    def willSpeakWord(self, position: int, length: int, text: str) -> None:
        print(zqm.utf16_slice(text, position, length))


async def read(text: str, file: pathlib.Path) -> bool:
    reader = Reader()
    reader.Rate = 200

    @reader.on("didFinishSpeaking")
    def end(whole: bool) -> None:
        print(whole)

    end(reader.isSpeaking)
    error = zqm.ByRef()
    reader.objectForProperty("status", error)
    async with zqm.events():
        return reader.startSpeakingString(text, file) and await reader.finished()


for name in NSSpeechSynthesizerZQM.availableVoices() or []:
    print(name.upper())
zqm.run(lambda: asyncio.run(read("Hello", pathlib.Path("hello.wav"))), timeout=3)
"""


def checked(folder, *files):
    """What mypy says of them at its strictest."""
    environment = {**os.environ, "MYPYPATH": str(BUILD / "python")}
    done = subprocess.run(
        ["mypy", "--strict", "--no-error-summary", "--cache-dir", str(folder / "cache"), *files],
        cwd=folder,
        capture_output=True,
        text=True,
        timeout=200,
        env=environment,
    )
    assert done.stderr == ""
    return done.stdout.splitlines()


@pytest.fixture
def with_stubs(tmp_path):
    (tmp_path / "zqm_speech.py").write_text(MODULE)
    (tmp_path / "zqm_speech.pyi").write_text(run("libZQMNSSpeech").stdout)
    return tmp_path


def test_a_type_checker_has_nothing_against_stubs_and_the_module(tmp_path):
    for number, library in enumerate(LIBRARIES):
        (tmp_path / f"stub{number}.pyi").write_text(stubs.stubs(zqm.load(library)))
    files = [f"stub{number}.pyi" for number in range(len(LIBRARIES))]
    assert checked(tmp_path, *files, str(BUILD / "python/zqm")) == []


def test_a_type_checker_follows_a_program(with_stubs):
    (with_stubs / "program.py").write_text(USED_WELL)
    assert checked(with_stubs, "program.py") == []


MISTAKES = {
    "reader.startSpeakingString(3)": "No overload variant",
    "reader.Rate = 'fast'": "Incompatible types in assignment",
    "reader.rate = 200": '"NSSpeechSynthesizerZQM" has no attribute "rate"',
    "reader.isSpeaking()": '"bool" not callable',
    "reader.on('willSpeakWord', 5)": "No overload variant",
    "zqm.run(3)": 'Argument 1 to "run" has incompatible type "int"',
    "zqm.load(3)": 'Argument 1 to "load" has incompatible type "int"',
    "voices: list[int] = reader.availableVoices() or []": "Incompatible types in assignment",
}


def test_a_type_checker_finds_mistakes(with_stubs):
    lines = ["import zqm", "import zqm_speech", "reader = zqm_speech.NSSpeechSynthesizerZQM()", *MISTAKES]
    (with_stubs / "program.py").write_text("\n".join(lines))
    errors = [line.split(":", 3) for line in checked(with_stubs, "program.py") if ": error: " in line]
    assert [(file, lines[int(number) - 1]) for file, number, *_ in errors] == [
        ("program.py", line) for line in MISTAKES
    ]
    for (*_, text), told in zip(errors, MISTAKES.values()):
        assert told in text


def test_a_module_with_the_classes_is_one_line(tmp_path):
    (tmp_path / "zqm_speech.py").write_text(MODULE)
    program = "from zqm_speech import NSSpeechSynthesizerZQM; print(NSSpeechSynthesizerZQM().Rate > 0)"
    done = subprocess.run(
        [sys.executable, "-c", program], cwd=tmp_path, capture_output=True, text=True, timeout=120
    )
    assert (done.stdout, done.stderr) == ("True\n", "")
