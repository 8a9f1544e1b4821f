"""What headers declare, as clang itself reads them."""

from __future__ import annotations

import json
import re
from collections.abc import Container
from dataclasses import dataclass, field
from pathlib import Path
from typing import Any

from macos.problems import CannotCheck
from macos.tools import run

# What the names of macros get in the enumeration by which the compiler tells their values.
MACRO_PREFIX = "zqm_value_of_"


@dataclass(frozen=True)
class Callable:
    """The types of a function or a method, as they are written."""

    result: str
    parameters: tuple[str, ...]
    variadic: bool


@dataclass(frozen=True)
class Method:
    owner: str
    in_protocol: bool
    name: str
    types: Callable


@dataclass
class Declarations:
    """All names that the headers declare. Types are as written; `types` tells what their names stand for."""

    superclasses: dict[str, str | None] = field(default_factory=dict)
    adopted: dict[str, set[str]] = field(default_factory=dict)
    protocols: set[str] = field(default_factory=set)
    methods: list[Method] = field(default_factory=list)
    functions: dict[str, Callable] = field(default_factory=dict)
    variables: dict[str, str] = field(default_factory=dict)
    constants: dict[str, int] = field(default_factory=dict)
    structures: dict[str, tuple[tuple[str, str], ...]] = field(default_factory=dict)
    typedefs: dict[str, str] = field(default_factory=dict)
    # All typedefs, enumerations and opaque structures, those of other headers too.
    types: dict[str, str] = field(default_factory=dict)
    enumerations: dict[str, str] = field(default_factory=dict)
    opaque: set[str] = field(default_factory=set)


def read_declarations(
    compiler: list[str], headers: list[str], folders: list[Path], constants: Container[str]
) -> Declarations:
    """Has the compiler read these headers ("Foundation/Foundation.h" or a full path) and takes what stands in
    files below the folders. Of the macros it takes those that are named as one of these constants."""
    text = "".join(
        f'#import "{header}"\n' if header.startswith("/") else f"#import <{header}>\n" for header in headers
    )
    macros = re.findall(r"^#define (\w+) \S", _output(compiler, ["-E", "-dM"], text), re.MULTILINE)
    named = [name for name in macros if name in constants]
    text += "".join(
        f"enum : long long {{ {MACRO_PREFIX}{name} = static_cast<long long>({name}) }};\n" for name in named
    )
    return _Reader(folders).read(_output(compiler, ["-fsyntax-only", "-Xclang", "-ast-dump=json"], text))


def _output(compiler: list[str], options: list[str], text: str) -> str:
    done = run([*compiler, *options, "-x", "objective-c++", "-"], text=text)
    if done.returncode != 0:
        errors = [line for line in done.stderr.splitlines() if "error:" in line]
        message = errors[0] if errors else done.stderr.strip()[:200]
        raise CannotCheck(f"clang can't read the declarations: {message}")
    return done.stdout


class _Reader:
    def __init__(self, folders: list[Path]) -> None:
        self.prefixes = tuple(str(folder.resolve()) + "/" for folder in folders if folder.is_dir())
        self.files = {str(folder.resolve()) for folder in folders if folder.is_file()}
        self.found = Declarations()
        self.file = ""

    def read(self, text: str) -> Declarations:
        tree = json.loads(text, object_hook=self._with_file)
        self._scope(tree)
        return self.found

    def _with_file(self, node: dict[str, Any]) -> dict[str, Any]:
        # A place names its file only where that differs from the file of the place before.
        if "offset" in node:
            self.file = node.setdefault("file", self.file)
        return node

    def _ours(self, node: dict[str, Any]) -> bool:
        place = node.get("loc", {})
        file = place.get("expansionLoc", place).get("file", "")
        return bool(file) and (file in self.files or str(Path(file).resolve()).startswith(self.prefixes))

    def _scope(self, scope: dict[str, Any]) -> None:
        for node in scope.get("inner", []):
            kind = node.get("kind", "")
            if kind in ("LinkageSpecDecl", "NamespaceDecl"):
                self._scope(node)
                continue
            self._type(node)
            if node["kind"] == "EnumDecl" and self._of_macro(node):
                self._read_EnumDecl(node)
            if not self._ours(node):
                continue
            reader = getattr(self, f"_read_{kind}", None)
            if reader is not None:
                reader(node)

    def _type(self, node: dict[str, Any]) -> None:
        name = node.get("name", "")
        if node["kind"] in ("TypedefDecl", "TypeAliasDecl"):
            self.found.types[name] = node["type"]["qualType"]
        elif node["kind"] == "EnumDecl" and name:
            underlying = node.get("fixedUnderlyingType", {})
            self.found.enumerations[name] = underlying.get("qualType", "unsigned int")
        elif node["kind"] in ("RecordDecl", "CXXRecordDecl") and name:
            if node.get("completeDefinition"):
                self.found.opaque.discard(name)
            elif name not in self.found.structures:
                self.found.opaque.add(name)

    def _read_ObjCInterfaceDecl(self, node: dict[str, Any]) -> None:
        name = node["name"]
        superclass = node.get("super", {}).get("name")
        self.found.superclasses[name] = superclass or self.found.superclasses.get(name)
        self._adopt(name, node)
        self._methods(name, False, node)

    def _read_ObjCProtocolDecl(self, node: dict[str, Any]) -> None:
        self.found.protocols.add(node["name"])
        self._methods(node["name"], True, node)

    def _read_ObjCCategoryDecl(self, node: dict[str, Any]) -> None:
        name = node["interface"]["name"]
        self._adopt(name, node)
        self._methods(name, False, node)

    def _adopt(self, name: str, node: dict[str, Any]) -> None:
        adopted = {entry["name"] for entry in node.get("protocols", [])}
        self.found.adopted.setdefault(name, set()).update(adopted)

    def _methods(self, owner: str, in_protocol: bool, node: dict[str, Any]) -> None:
        for method in node.get("inner", []):
            if method["kind"] == "ObjCMethodDecl":
                name = ("-" if method.get("instance") else "+") + method["name"]
                types = Callable(
                    method["returnType"]["qualType"], self._parameters(method), method.get("variadic", False)
                )
                self.found.methods.append(Method(owner, in_protocol, name, types))

    @staticmethod
    def _parameters(node: dict[str, Any]) -> tuple[str, ...]:
        parameters = [entry for entry in node.get("inner", []) if entry["kind"] == "ParmVarDecl"]
        return tuple(entry["type"]["qualType"] for entry in parameters)

    def _read_FunctionDecl(self, node: dict[str, Any]) -> None:
        if node.get("isImplicit"):
            return
        result = node["type"]["qualType"].partition("(")[0].strip()
        types = Callable(result, self._parameters(node), node.get("variadic", False))
        self.found.functions[node["name"]] = types

    def _read_VarDecl(self, node: dict[str, Any]) -> None:
        self.found.variables[node["name"]] = node["type"]["qualType"]

    def _read_TypedefDecl(self, node: dict[str, Any]) -> None:
        if not node.get("isImplicit"):
            self.found.typedefs[node["name"]] = node["type"]["qualType"]
            # The only name of a structure that has none of its own.
            for entry in node.get("inner", []):
                if entry.get("ownedTagDecl", {}).get("name") == "":
                    self.found.structures.setdefault(node["name"], self.found.structures.pop("", ()))

    def _read_CXXRecordDecl(self, node: dict[str, Any]) -> None:
        if node.get("completeDefinition") and not node.get("isImplicit"):
            self.found.structures[node.get("name", "")] = tuple(
                (entry.get("name", ""), entry["type"]["qualType"])
                for entry in node.get("inner", [])
                if entry["kind"] == "FieldDecl"
            )

    def _read_EnumDecl(self, node: dict[str, Any]) -> None:
        following = 0
        for constant in node.get("inner", []):
            if constant["kind"] == "EnumConstantDecl":
                written = _value(constant)
                value = following if written is None else written
                self.found.constants[constant["name"].removeprefix(MACRO_PREFIX)] = value
                following = value + 1


    @staticmethod
    def _of_macro(node: dict[str, Any]) -> bool:
        return any(entry.get("name", "").startswith(MACRO_PREFIX) for entry in node.get("inner", []))


def _value(node: dict[str, Any]) -> int | None:
    for inner in node.get("inner", []):
        if inner.get("kind") == "ConstantExpr" and "value" in inner:
            return int(inner["value"])
        value = _value(inner)
        if value is not None:
            return value
    return None


def spelled(type_name: str) -> str:
    """The type without qualifiers, nullability and the types of a collection's elements."""
    text = re.sub(
        r"\b(const|volatile|oneway|struct|enum|__kindof|__strong|__unsafe_unretained)\b", " ", type_name
    )
    text = re.sub(r"_Nonnull|_Nullable_result|_Nullable|_Null_unspecified|__autoreleasing", " ", text)
    text = re.sub(r"\b(?!id\b)(\w+)\s*<[^<>]*(?:<[^<>]*>[^<>]*)*>", r"\1", text)
    text = re.sub(r"\s*\*\s*", " *", text)
    return re.sub(r"\s+", " ", re.sub(r"\* \*", "**", text)).strip().replace("* *", "**")
