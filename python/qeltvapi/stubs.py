"""Writes the type stubs of the generated modules: python3 -m qeltvapi.stubs DIRECTORY"""

import dataclasses
import pathlib
import sys

from . import records
from ._description import description
from .functions import function


def functions_stub():
    out = ["from collections.abc import Callable, Sequence", "from typing import NamedTuple", "",
           "from . import records", ""]
    for name in description.functions:
        one = function(name)
        arguments = [f"{argument.name}: {argument.annotation()}" for argument in one.arguments]
        pure = [p for p in one.outputs if not p.argument]
        if pure:
            arguments.append("*")
            arguments += [f"{p.name}: object = ..." for p in pure]
        types = [(p.name, f"records.{p.element}" if p.record else
                  {"char": "str", "void": "bytes", "bool": "bool"}.get(p.element, "int"))
                 for p in one.returned]
        if not types:
            result = "None" if one.result == "void" else "int"
        elif len(types) == 1:
            result = types[0][1]
        else:
            result = f"_{name}"
            out += [f"class {result}(NamedTuple):"]
            out += [f"    {field}: {kind}" for field, kind in types]
        out.append(f"def {name}({', '.join(arguments)}) -> {result}: ...")
    return "\n".join(out) + "\n"


def records_stub():
    out = ["from dataclasses import dataclass", "from typing import ClassVar, TypeVar", "",
           "_R = TypeVar('_R', bound='Record')", "", "def text(data: bytes) -> str: ...", "",
           "class Record:", "    SIZE: ClassVar[int]", "    @classmethod",
           "    def from_bytes(cls: type[_R], data: bytes) -> _R: ...",
           "    def __bytes__(self) -> bytes: ...", ""]
    for name in records.__all__:
        kind = getattr(records, name)
        if not dataclasses.is_dataclass(kind):
            continue
        out += ["@dataclass", f"class {name}(Record):"]
        out += [f"    {field.name}: {field.type.__name__} = ..."
                for field in dataclasses.fields(kind)] or ["    ..."]
    return "\n".join(out) + "\n"


def main(directory):
    directory = pathlib.Path(directory)
    directory.mkdir(parents=True, exist_ok=True)
    (directory / "functions.pyi").write_text(functions_stub())
    (directory / "records.pyi").write_text(records_stub())


if __name__ == "__main__":
    main(sys.argv[1])
