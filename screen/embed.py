#!/usr/bin/env python3
"""Writes the files of the page as a C++ source.

usage: embed.py OUT.cpp FILE...
"""
import pathlib
import sys

TYPES = {".html": "text/html; charset=utf-8", ".css": "text/css; charset=utf-8",
         ".js": "text/javascript; charset=utf-8", ".svg": "image/svg+xml"}
# Compilers need not take longer literals.
PIECE = 4000


def literals(data):
    text = "".join(chr(byte) if 32 <= byte < 127 and chr(byte) not in '"\\?' else f"\\{byte:03o}"
                   for byte in data)
    pieces, start = [], 0
    while start < len(text):
        end = min(start + PIECE, len(text))
        # Not within an escape, which has four characters.
        while end < len(text) and "\\" in text[end - 3:end]:
            end -= 1
        pieces.append(f'         "{text[start:end]}"')
        start = end
    return "\n".join(pieces) or '         ""'


def main():
    out, *files = sys.argv[1:]
    entries = []
    for file in map(pathlib.Path, files):
        data = file.read_bytes()
        path = "/" if file.name == "index.html" else "/" + file.name
        entries.append(f'        {{"{path}", "{TYPES[file.suffix]}",\n         std::string_view(\n'
                       f"{literals(data)},\n         {len(data)})}},\n")
    pathlib.Path(out).write_text(
        '#include "Assets.h"\n\nnamespace screen {\n\n'
        "const std::vector<Asset>& assets() {\n"
        "    static const std::vector<Asset>& all = *new std::vector<Asset>{\n"
        + "".join(entries) + "    };\n    return all;\n}\n\n}  // namespace screen\n")


main()
