#!/usr/bin/env python3
"""Spreads a source that hidl-gen wrote over several, so that they compile at the same time.

usage: split_source.py SOURCE PARTS

SOURCE keeps the first part; part N goes to a file beside it whose name ends in "_N.cpp". Goes by
hidl-gen's form: includes and opened namespaces, then definitions that each begin and end in the
first column, then the end of the namespaces. What only the file itself sees (the functions that
run when the library is loaded) stands before the first member function and stays in SOURCE.
"""
import pathlib
import sys


def split(lines, parts):
    """The texts of the parts: about as many lines each."""
    head = max(i for i, line in enumerate(lines) if line.startswith("namespace ")) + 1
    tail = min(i for i, line in enumerate(lines) if line.startswith("}  // namespace"))
    body = lines[head:tail]
    # A definition ends with the brace in the first column.
    ends = [i + 1 for i, line in enumerate(body) if line == "}"]
    texts, start = [], 0
    for part in range(1, parts + 1):
        wanted = len(body) * part // parts
        end = len(body) if part == parts else min(ends, key=lambda at: abs(at - wanted))
        if end <= start:
            sys.exit(f"{len(ends)} definitions do not make {parts} parts")
        texts.append("\n".join(lines[:head] + body[start:end] + lines[tail:]) + "\n")
        start = end
    return texts


source = pathlib.Path(sys.argv[1])
for number, text in enumerate(split(source.read_text().splitlines(), int(sys.argv[2])), 1):
    part = source if number == 1 else source.with_name(f"{source.stem}_{number}.cpp")
    part.write_text(text)
