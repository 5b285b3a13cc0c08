"""Writes type stubs for modules of host classes, from the description of the classes:

    python3 -m tyve.stubs FOLDER MODULE...
"""

from __future__ import annotations

import importlib
import inspect
import keyword
import sys
import types
from pathlib import Path
from typing import Any, Iterator

import tyve

_words = {
    "logical scalar": "bool",
    "uint16 scalar": "int",
    "int32 scalar": "int",
    "double scalar": "float",
    "TyveFactoryString scalar": "str",
    "cell": "list[Any]",
}
_results = _words | {"char": "str", "TyveFactoryString vector": "list[str]"}
_header = '''\
from os import PathLike as _PathLike
from typing import Any, Collection, Generic as _Generic, Iterator, Sequence as _Sequence
from typing import TypeVar as _TypeVar
from uuid import UUID as _UUID
_T = _TypeVar("_T")
class _Reference(_Generic[_T]):
    """A property that None unsets."""
    def __get__(self, instance: object, owner: object) -> _T: ...
    def __set__(self, instance: object, value: _T | None) -> None: ...
'''
_or_none = " or none"
_arguments = _words | {
    "char": "str | _UUID | _PathLike[str]",
    "TyveFactoryString vector": "_Sequence[str]",
}


class _Stub:
    """The stub of one module; collects the modules that it refers to."""

    def __init__(self, module: str):
        self.module = module
        self.imports = {"tyve", "tyve.enumeration"}
        self.body: list[str] = []

    def text(self) -> str:
        imports = [f"import {name}" for name in sorted(self.imports - {self.module})]
        return "\n".join([_header, *imports, "", *self.body, ""])

    def name_of(self, word: str, words: dict[str, str]) -> str:
        """The type that a type word stands for."""
        if word.endswith(_or_none):
            return self.name_of(word.removesuffix(_or_none), words) + " | None"
        name = word.removesuffix(" scalar").removesuffix(" property")
        if word in words:
            return words[word]
        module, _, last = name.rpartition(".")
        if not module:
            return "Any"
        if module == self.module:
            return last
        self.imports.add(module)
        return name

    def add_class(self, cls: type) -> None:
        told = tyve.describe(f"{self.module}.{cls.__name__}")
        base = "tyve.enumeration.Enumeration"
        if not told["members"]:
            base = self.name_of(told["superclass"] or "tyve.Object", {})
        self.body.append(f"class {cls.__name__}({base}):")
        lines = [repr(told["documentation"])] if told["documentation"] else []
        lines += [f"{name} = {value}" for name, value in told["members"]]
        if told["constructor"]:
            lines += self.function("__init__", told["constructor"], "None")
        methods: dict[str, Any] = {}
        extension: dict[str, list[str]] = {}
        # What is declared as a collection is of a class derived from it, and can do more.
        for each in (*filter(_extension_of, cls.__subclasses__()), cls):
            described = tyve.describe(f"{each.__module__}.{each.__name__}")
            methods |= {method["name"]: method for method in described["methods"]}
            extension |= {} if told["members"] else _extension_of(each)
        for name, method in methods.items():
            if name not in extension:
                lines += self.function(name, method, self.result_of(method))
        lines += [line for stub in extension.values() for line in stub]
        # Last, as their names may be those of types and decorators.
        for told_property in told["properties"]:
            lines += self.property(told_property)
        self.body += [f"    {line}" for line in lines or ["..."]] + [""]

    def result_of(self, method: dict[str, Any]) -> str:
        if not method["result"]:
            return "None"
        result = self.name_of(method["result"], _results)
        return f"list[{result}]" if method["array"] else result

    def function(self, name: str, method: dict[str, Any], result: str) -> Iterator[str]:
        is_constructor = name == "__init__"
        names = method["argument_names"].split()
        are_named = len(names) == len(method["arguments"]) and not any(
            map(keyword.iskeyword, names)
        )
        least = len(method["arguments"]) - method["optional"]
        parameters = ["self"] if is_constructor or not method["static"] else []
        for place, word in enumerate(method["arguments"]):
            if place == 0 and not method["static"]:
                continue
            argument = names[place].removeprefix("opt_") if are_named else f"arg{place}"
            kind = self.name_of(word, _arguments)
            if place >= least:
                kind += " | None = ..."
            parameters.append(f"{argument}: {kind}")
        if not are_named and parameters:
            parameters.append("/")
        if method["static"] and not is_constructor:
            yield "@staticmethod"
        yield f"def {name}({', '.join(parameters)}) -> {result}:"
        yield f"    {method['documentation']!r}"

    def property(self, told: dict[str, Any]) -> Iterator[str]:
        name, kind = told["name"], self.name_of(told["result"] or "any", _results)
        if not told["read_only"] and not told["type"] and _is_class(told["result"]):
            yield f"{name}: _Reference[{kind}]"
            yield f"{told['documentation']!r}"
            return
        yield "@property"
        yield f"def {name}(self) -> {kind}:"
        yield f"    {told['documentation']!r}"
        if not told["read_only"]:
            yield f"@{name}.setter"
            yield f"def {name}(self, value: {kind}) -> None: ..."


def _is_class(word: str) -> bool:
    return "." in word and " " not in word


def _extension_of(cls: type) -> dict[str, list[str]]:
    """The functions that Python has put on a class, by their names."""
    stubs = {}
    for name, value in vars(cls).items():
        is_static = isinstance(value, staticmethod)
        function = value.__func__ if is_static else value
        if not isinstance(function, types.FunctionType):
            continue
        signature = inspect.signature(function)
        if not is_static:
            self, *rest = signature.parameters.values()
            signature = signature.replace(parameters=[self.replace(annotation=self.empty), *rest])
        stubs[name] = ["@staticmethod"] * is_static + [f"def {name}{signature}:"]
        stubs[name].append(f"    {inspect.getdoc(function) or '...'!r}")
    return stubs


def stub_of(module: str) -> str:
    """The text of the stub of a module of host classes."""
    offered = importlib.import_module(module)
    stub = _Stub(module)
    for name in offered.__all__:
        stub.add_class(getattr(offered, name))
    return stub.text()


def main(folder: str, *modules: str) -> None:
    for module in modules:
        path = Path(folder, *module.split("."), "__init__.pyi")
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(stub_of(module), encoding="utf-8")


if __name__ == "__main__":
    main(*sys.argv[1:])
