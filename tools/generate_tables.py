#!/usr/bin/env python3
"""Writes, from the description of the library (scripts/describe.py), what the tool knows of it:

calls.cpp          the functions with their comments and arguments and, if the arguments allow it, a
                   way to call them with values that are known only at run time; the methods
notifications.cpp  the names of the notifications, of their values and of the enumerators, as JSON

usage: generate_tables.py DESCRIPTION.json OUT_DIRECTORY
"""
import json
import os
import pathlib
import re
import sys

INTEGERS = {"int": 4, "int8_t": 1, "uint8_t": 1, "int16_t": 2, "uint16_t": 2, "int32_t": 4,
            "uint32_t": 4, "int64_t": 8, "uint64_t": 8, "bool": 1}


def literal(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n") + '"'


def records_with_pointers(description):
    deep = set()
    while True:
        more = {record["name"] for record in description["records"]
                if any("*" in field["type"] or field["type"] in deep for field in record["fields"])}
        if more == deep:
            return deep
        deep = more


def classify(kind, direction, deep, callbacks):
    """How an argument is given and shown: (kind, type it points to or None, why not or None)."""
    pointer = re.match(r"^(const )?(\w+)\*$", kind)
    if kind in INTEGERS:
        return "kNumber", kind, None
    if kind in callbacks:
        return None, None, "takes a function of the program that calls it (see qeltvctl watch)"
    if not pointer:
        return None, None, f"takes a {kind}"
    const, target = bool(pointer[1]), pointer[2]
    if target in deep:
        return None, None, f"takes a record with pointers in it, {target}"
    if const:
        if target == "char":
            return "kText", None, None
        if target == "void":
            return "kDataIn", "uint8_t", None
        return "kValuesIn" if target in INTEGERS else "kRecordIn", target, None
    if target == "void" and direction == "in":
        return "kToken", None, None
    if target == "char":
        return "kTextInOut" if direction == "in,out" else "kTextOut", "char", None
    if target == "void":
        return "kDataInOut" if direction == "in,out" else "kDataOut", "uint8_t", None
    if target in INTEGERS:
        return "kValueInOut" if direction == "in,out" else "kValueOut", target, None
    return "kRecordInOut" if direction == "in,out" else "kRecordOut", target, None


def passed(index, kind, category):
    if category == "kNumber":
        return f"a[{index}].number != 0" if kind == "bool" else \
            f"static_cast<{kind}>(a[{index}].number)"
    if category == "kToken":
        return f"reinterpret_cast<void*>(static_cast<uintptr_t>(a[{index}].number))"
    return f"static_cast<{kind}>(a[{index}].pointer)"


class Calls:
    def __init__(self, description):
        self.deep = records_with_pointers(description)
        self.callbacks = {one["name"] for one in description["callbacks"]}
        self.about = {family["header"]: family["doc"] for family in description["families"]}
        self.thunks = []
        self.entries = sorted(self.entry(one) for one in description["functions"])

    def thunk(self, name, result, arguments):
        call = f"{name}(" + ", ".join(passed(i, kind, category) for i, (kind, category)
                                      in enumerate(arguments)) + ")"
        body = f"{call};\n    return 0;" if result == "void" else \
            f"return static_cast<int64_t>({call});"
        self.thunks.append(
            f"int64_t call_{name}([[maybe_unused]] const Slot* a) {{\n    {body}\n}}")
        return f"call_{name}"

    def entry(self, function):
        name, result = function["name"], function["result"]["type"]
        arguments, rows, why = [], "", None
        for parameter in function["parameters"] or []:
            kind = parameter["type"]
            category, target, reason = classify(kind, parameter["direction"], self.deep,
                                                self.callbacks)
            why = why or (reason and f"{parameter['name']} {reason}")
            arguments.append((kind, category))
            signed = target and INTEGERS.get(target) and not target.startswith("u")
            rows += (f"            {{{literal(parameter['name'])}, {literal(kind)}, "
                     f"{literal(parameter['doc'])}, Kind::{category or 'kOther'}, "
                     f"{f'sizeof({target})' if target else '0'}, {str(bool(signed)).lower()}}},\n")
        if result != "void" and result not in INTEGERS:
            why = why or f"returns a {result}"
        thunk = "nullptr" if why else self.thunk(name, result, arguments)
        interfaces = {method["interface"] for method in function["methods"]}
        reachable = f"reach<get{interfaces.pop()[1:]}Service>" if len(interfaces) == 1 else "nullptr"
        methods = ", ".join(literal(method["method"]) for method in function["methods"])
        return (f"        {{{literal(name)}, {literal(function['header'])},\n"
                f"         {literal(function['prototype'])},\n"
                f"         {literal(function['doc'])},\n"
                f"         {literal(self.about[function['header']])},\n"
                f"         {literal(result)}, {literal(function['result']['doc'])},\n"
                f"         {{\n{rows}         }},\n"
                f"         {thunk}, {literal(why or '')}, {{{methods}}}, {reachable}}},\n")


def calls(description):
    table = Calls(description)
    methods = "".join(f"        {{{literal(interface['name'])}, {literal(method['name'])}}},\n"
                      for interface in description["interfaces"] for method in interface["methods"])
    return ('#include "calls.h"\n\n#include "hw_qeltvapi_common.h"\n#include "qeltvapi.h"\n\n'
            "namespace tool {\nnamespace {\n\n"
            "template <auto Getter>\nbool reach() {\n    return Getter() != nullptr;\n}\n\n"
            + "\n\n".join(table.thunks) + "\n\n}  // namespace\n\n"
            "const std::vector<Function>& functions() {\n"
            "    static const std::vector<Function> all{\n" + "".join(table.entries)
            + "    };\n    return all;\n}\n\n"
            "const std::vector<Method>& methods() {\n"
            "    static const std::vector<Method> all{\n" + methods
            + "    };\n    return all;\n}\n\n}  // namespace tool\n")


def short(names):
    """The names without what they have in common, in lower case."""
    common = os.path.commonprefix(names) if len(names) > 1 else ""
    common = common[:common.rfind("_") + 1]
    return [name[len(common):].lower() for name in names]


def notifications(description):
    enumerations = {one["name"]: one for one in description["enumerations"]}
    values = {value["name"]: value for one in enumerations.values() for value in one["values"]}
    values.update({one["name"]: one for one in description["constants"]})
    callbacks = {one["name"]: one for one in description["callbacks"]}

    def enumerators(all_of_them):
        names = short([one["name"] for one in all_of_them])
        return [{"value": one["value"], "name": one["name"], "short": name,
                 "fields": one.get("fields")} for one, name in zip(all_of_them, names)]

    used, found = set(), []
    for one in description["notifications"]:
        parameters = [{"name": each["name"], "type": each["type"],
                       "enumeration": each["enumeration"]}
                      for each in callbacks[one["callback"]]["parameters"]]
        events = enumerations[one["events"]]["values"] if one["events"] else \
            [values[name] for name in one["constants"]]
        events = enumerators(events)
        for field in [*parameters, *one["fields"], *(field for event in events
                                                     for field in event["fields"] or [])]:
            if field["enumeration"]:
                used.add(field["enumeration"])
        found.append({"name": one["name"], "callback": one["callback"], "methods": one["methods"],
                      "registeredBy": one["registeredBy"], "selector": one["selector"],
                      "events": events, "fields": one["fields"], "parameters": parameters})
    text = json.dumps({
        "notifications": found,
        "enumerations": {name: {"bits": enumerations[name]["bits"],
                                "values": enumerators(enumerations[name]["values"])}
                         for name in sorted(used)}}, indent=1)
    lines = "\n".join("        " + literal(line) for line in text.split("\n"))
    return ('#include "notifications.h"\n\nnamespace tool {\n\n'
            "const char* notificationDescription() {\n    return\n" + lines
            + ";\n}\n\n}  // namespace tool\n")


def main():
    description_path, directory = sys.argv[1:]
    description = json.loads(pathlib.Path(description_path).read_text())
    directory = pathlib.Path(directory)
    (directory / "calls.cpp").write_text(calls(description))
    (directory / "notifications.cpp").write_text(notifications(description))


main()
