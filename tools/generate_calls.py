#!/usr/bin/env python3
"""Writes, from the C headers of the library, a table of its functions: name, prototype, comment,
arguments with type, direction and comment, and where the arguments allow it a way to call the
function with values that are known only at run time.

usage: generate_calls.py OUT.cpp INCLUDE_DIR   (the headers that its qeltvapi.h includes)
"""

import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "scripts"))
import headers

INTEGERS = {"int": 4, "int8_t": 1, "uint8_t": 1, "int16_t": 2, "uint16_t": 2, "int32_t": 4,
            "uint32_t": 4, "int64_t": 8, "uint64_t": 8, "bool": 1}


def joined(text):
    paragraphs = re.split(r"\n\s*\n", text.strip())
    text = "\n\n".join(re.sub(r"\s+", " ", p).strip() for p in paragraphs)
    return re.sub(r"@c |@p |::(?=\w)", "", text)


def split_comment(comment):
    """The text, the comments and directions of the parameters by name, and of the result."""
    text, *tags = re.split(r"^(?=@(?:param|return)\b)", headers.plain(comment), flags=re.M)
    parameters, result = {}, ""
    for tag in tags:
        if tag.startswith("@return"):
            result = joined(tag[len("@return"):])
            continue
        match = re.match(r"@param\s+(\w+(?:,\s*\w+)*)\s*(?:\[(in,out|in|out)\])?(.*)", tag, re.S)
        for name in re.split(r",\s*", match[1]):
            parameters[name] = (match[2] or "", joined(match[3]))
    return joined(text), parameters, result


def literal(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n") + '"'


def classify(kind, direction, records, functions):
    """How an argument is given and shown: (kind, type it points to or None, why not or None)."""
    pointer = re.match(r"^(const )?(\w+)\*$", kind)
    if kind in INTEGERS:
        return "kNumber", kind, None
    if kind in functions:
        return None, None, "takes a function of the program that calls it (see qeltvctl watch)"
    if not pointer:
        return None, None, f"takes a {kind}"
    const, target = bool(pointer[1]), pointer[2]
    if target in records and records[target]:
        return None, None, f"takes a record with pointers in it, {target}"
    if const:
        if target == "char":
            return "kText", None, None
        if target == "void":
            return "kDataIn", "uint8_t", None
        return "kValuesIn" if target in INTEGERS else "kRecordIn", target, None
    if target == "void" and not direction:
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


def main():
    out_path, directory = sys.argv[1:]
    files = headers.families(directory)
    records, functions = {}, set()
    for file in files:
        source = file.read_text()
        for name, body in headers.records(source):
            records[name] = "*" in body or any(n in body for n, deep in records.items() if deep)
        functions.update(headers.function_types(source))

    entries, thunks = [], []
    for file in files:
        source = file.read_text()
        about = joined(headers.plain(headers.file_comment(source)))
        for comment, result, name, parameters in headers.functions(source):
            text, comments, result_comment = split_comment(comment)
            arguments, why = [], None
            for kind, argument_name in parameters or []:
                direction, note = comments.get(argument_name, ("", ""))
                category, target, reason = classify(kind, direction, records, functions)
                why = why or (reason and f"{argument_name} {reason}")
                arguments.append((argument_name, kind, note, category, target))
            if result != "void" and result not in INTEGERS:
                why = why or f"returns a {result}"
            thunk = "nullptr"
            if not why:
                thunk = f"call_{name}"
                call = f"{name}(" + ", ".join(passed(i, kind, category) for i, (_, kind, _, category, _)
                                              in enumerate(arguments)) + ")"
                if result == "void":
                    body = f"{call};\n    return 0;"
                else:
                    body = f"return static_cast<int64_t>({call});"
                thunks.append(f"int64_t {thunk}([[maybe_unused]] const Slot* a) {{\n    {body}\n}}")
            shown = "..." if parameters is None else \
                ", ".join(f"{kind} {argument}" for kind, argument in parameters) or "void"
            rows = []
            for argument_name, kind, note, category, target in arguments:
                if category is None:
                    category, target = "kOther", None
                signed = "true" if target and INTEGERS.get(target) and not target.startswith("u") \
                    else "false"
                rows.append(f"            {{{literal(argument_name)}, {literal(kind)}, "
                            f"{literal(note)}, Kind::{category}, "
                            f"{f'sizeof({target})' if target else '0'}, {signed}}},\n")
            entries.append(
                f"        {{{literal(name)}, {literal(file.name)},\n"
                f"         {literal(f'{result} {name}({shown})')},\n"
                f"         {literal(text)},\n         {literal(about)},\n"
                f"         {literal(result)}, {literal(result_comment)},\n"
                f"         {{\n{''.join(rows)}         }},\n"
                f"         {thunk}, {literal(why or '')}}},\n")

    entries.sort()
    with open(out_path, "w") as out:
        out.write('#include "calls.h"\n\n#include "qeltvapi.h"\n\nnamespace tool {\nnamespace {\n\n'
                  + "\n\n".join(thunks) + "\n\n}  // namespace\n\n"
                  "const std::vector<Function>& functions() {\n"
                  "    static const std::vector<Function> all{\n" + "".join(entries)
                  + "    };\n    return all;\n}\n\n}  // namespace tool\n")


if __name__ == "__main__":
    main()
