#!/usr/bin/env python3
"""Writes what the methods of the service package take and return, as a table in C++.

usage: generate.py DESCRIPTION.json TYPES.hal OUT.cpp
"""
import json
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "scripts"))
import headers

SCALARS = {"bool": "kBool", "int8_t": "kInt8", "uint8_t": "kUint8", "int16_t": "kInt16",
           "uint16_t": "kUint16", "int32_t": "kInt32", "uint32_t": "kUint32",
           "int64_t": "kInt64", "uint64_t": "kUint64"}
PACKAGE = "::vendor::qelnova::tv::qeltvapi::V1_0::"


class Types:
    """The types that are used, each as a function that returns its description."""

    def __init__(self, hal):
        text = headers.without_comments(hal)
        self.alias = {name: target for target, name in
                      re.findall(r"typedef\s+(\w+)\s+(\w+)\s*;", text)}
        self.alias.update(re.findall(r"enum\s+(\w+)\s*:\s*(\w+)", text))
        self.structs = {name: re.findall(r"([\w<>]+)(?:\[(\d+)\])?\s+(\w+)\s*;", body)
                        for name, body in re.findall(r"struct\s+(\w+)\s*\{(.*?)\}", text, re.S)}
        self.names, self.code = {}, []

    def use(self, hal_type):
        hal_type = self.alias.get(hal_type, hal_type)
        if hal_type in self.names:
            return self.names[hal_type]
        vector = re.fullmatch(r"vec<(.+)>", hal_type)
        if hal_type in SCALARS:
            kind, size, rest = SCALARS[hal_type], f"sizeof({hal_type})", ""
        elif hal_type == "string":
            kind, size, rest = "kString", "sizeof(android::hardware::hidl_string)", ""
        elif hal_type == "handle":
            kind, size, rest = "kHandle", "0", ""
        elif vector:
            kind, size = "kVector", "sizeof(android::hardware::hidl_vec<uint8_t>)"
            rest = f", &{self.use(vector[1])}()"
        elif hal_type in self.structs:
            cpp = PACKAGE + hal_type
            fields = "".join(
                f"\n                    {{\"{field}\", offsetof({cpp}, {field}), {count or 0}, "
                f"&{self.use(kind)}()}}," for kind, count, field in self.structs[hal_type])
            kind, size, rest = "kStruct", f"sizeof({cpp})", f", nullptr, {{{fields}}}"
        elif hal_type.startswith("I"):
            kind, size, rest = "kObject", "0", ""
        else:
            raise SystemExit(f"generate.py: unknown type {hal_type}")
        name = f"type{len(self.names)}"
        self.names[hal_type] = name
        self.code.append(f"/** {hal_type} */\nconst Type& {name}() {{\n"
                         f"    static const Type& type = *new Type{{Kind::{kind}, {size}{rest}}};\n"
                         f"    return type;\n}}\n")
        return name


def main():
    description, hal, out = map(pathlib.Path, sys.argv[1:])
    types = Types(hal.read_text())
    rows = ""
    for interface in json.loads(description.read_text())["interfaces"]:
        rows += f"            {{\"{interface['name']}\", {{\n"
        for method in interface["methods"]:
            values = [", ".join(f"{{\"{one['name']}\", &{types.use(one['type'])}()}}"
                                for one in method[way]) for way in ("parameters", "results")]
            rows += f"                {{\"{method['name']}\", {{{values[0]}}}, {{{values[1]}}}}},\n"
        rows += "            }},\n"
    out.write_text(
        "#include <vendor/qelnova/tv/qeltvapi/1.0/types.h>\n\n#include <cstddef>\n\n"
        "#include \"transactions.h\"\n\nnamespace transactions {\nnamespace {\n\n"
        + "\n".join(types.code)
        + "\n}  // namespace\n\nconst std::vector<Interface>& interfaces() {\n"
        "    // Never destroyed: calls arrive to the very end of a process.\n"
        "    static const auto& all = *new std::vector<Interface>{\n" + rows
        + "    };\n    return all;\n}\n\n}  // namespace transactions\n")


main()
