#!/usr/bin/env python3
"""Writes the tables of interfaces.h from the description of the library and the types of the
package.

usage: generate.py OUT.cpp DESCRIPTION.json types.hal
"""
import json
import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "scripts"))
import headers

SCALARS = {"bool": 1, "uint8_t": 1, "uint16_t": 2, "uint32_t": 4, "uint64_t": 8,
           "int8_t": 1, "int16_t": 2, "int32_t": 4, "int64_t": 8}


class Types:
    """Writes each type once, those that it is made of first."""

    def __init__(self, hal):
        text = headers.without_comments(hal)
        self.structs = {name: [one.strip().rsplit(" ", 1) for one in body.split(";") if one.strip()]
                        for name, body in re.findall(r"struct (\w+) \{([^}]*)\};", text)}
        self.aliases = {name: kind for kind, name in re.findall(r"typedef (\w+) (\w+);", text)}
        self.aliases.update(re.findall(r"enum (\w+) : (\w+)", text))
        self.known = {}
        self.lines = []

    def add(self, kind):
        """The index, size and alignment of a type."""
        if kind in self.known:
            return self.known[kind]
        size = align = 16
        element, count, fields = -1, 0, []
        array = re.fullmatch(r"(\w+)\[(\d+)\]", kind)
        if kind in self.aliases:
            self.known[kind] = self.add(self.aliases[kind])
            return self.known[kind]
        if kind in SCALARS:
            form, size = ("boolean" if kind == "bool" else
                          "unsignedNumber" if kind[0] == "u" else "signedNumber"), SCALARS[kind]
            align = size
        elif kind == "string":
            form, align = "text", 8
        elif kind == "handle":
            form, align = "memory", 8
        elif kind.startswith("vec<"):
            form, align = "vector", 8
            element = self.add(kind[4:-1])[0]
        elif array:
            form, count = "array", int(array[2])
            element, size, align = self.add(array[1])
            size *= count
        elif kind in self.structs:
            form, size, align = "record", 0, 1
            for field_kind, name in self.structs[kind]:
                index, field_size, field_align = self.add(field_kind)
                size = (size + field_align - 1) // field_align * field_align
                fields.append(f'{{"{name}", {index}, {size}}}')
                size += field_size
                align = max(align, field_align)
            size = (size + align - 1) // align * align
        elif kind.startswith("I"):
            form, align = "object", 8
        else:
            raise SystemExit(f"{kind} is a type that the test kit does not know")
        self.known[kind] = len(self.lines), size, align
        self.lines.append(f'{{Form::{form}, "{kind}", {size}, {element}, {count},'
                          f' {{{", ".join(fields)}}}}},')
        return self.known[kind]


def main():
    out, description, hal = sys.argv[1:]
    with open(description) as file:
        description = json.load(file)
    types = Types(pathlib.Path(hal).read_text())
    interfaces = []
    for interface in description["interfaces"]:
        lines = []
        for method in interface["methods"]:
            listed = ["{" + ", ".join(f'{{"{one["name"]}", {types.add(one["type"])[0]}, 0}}'
                                      for one in method[key]) + "}"
                      for key in ("parameters", "results")]
            lines.append(f'     {{"{method["name"]}", {listed[0]}, {listed[1]}}},')
        interfaces.append("\n".join([f'    {{"{interface["name"]}", {{', *lines, "    }},"]))
    notifications = [f'    {{"{one["name"]}", {{'
                     + ", ".join(f'"{method}"' for method in one["methods"]) + "}},"
                     for one in description["notifications"]]
    pathlib.Path(out).write_text("\n".join([
        '#include "interfaces.h"', "", "namespace qeltvapi::testing {", "",
        "const std::vector<Type>& allTypes() {",
        "    static const std::vector<Type>& sTypes = *new std::vector<Type>{",
        *("    " + line for line in types.lines), "    };", "    return sTypes;", "}", "",
        "const std::vector<Interface>& allInterfaces() {",
        "    static const std::vector<Interface>& sInterfaces = *new std::vector<Interface>{",
        *interfaces, "    };", "    return sInterfaces;", "}", "",
        "const std::vector<Notification>& allNotifications() {",
        "    static const std::vector<Notification>& sAll = *new std::vector<Notification>{",
        *notifications, "    };", "    return sAll;", "}", "", "}  // namespace qeltvapi::testing",
        ""]))


if __name__ == "__main__":
    main()
