"""Reads the headers and interfaces of this tree for the scripts that write or check what follows
from them. Everything here goes by the form that clang-format and hidl-gen give the files.
"""
import collections
import csv
import functools
import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parents[1]

COMMENT = r"/\*\*((?:[^*]|\*(?!/))*)\*/"
# A function of a C header with its comment: comment, result, name, parameters.
DECLARATION = re.compile(COMMENT + r"(\s*(?:unsigned )?\w+[ *]+)(\w+)\(([^()]*)\);", re.S)
# The comment at the head of a header.
FILE_COMMENT = re.compile(r"\A\s*" + COMMENT)

Function = collections.namedtuple("Function", "comment result name parameters")
Method = collections.namedtuple("Method", "name result parameters answers")


# ---- C headers

def without_comments(text):
    return re.sub(r"/\*.*?\*/|//[^\n]*", "", text, flags=re.S)


def plain(comment):
    """A comment without its stars."""
    lines = [re.sub(r"^\s*\* ?", "", line).rstrip() for line in comment.split("\n")]
    return "\n".join(lines).strip()


def file_comment(text):
    found = FILE_COMMENT.match(text)
    return found[1] if found else ""


def families(directory):
    """The headers of the library, in the order in which qeltvapi.h includes them."""
    directory = pathlib.Path(directory)
    names = re.findall(r'#include "(\w+\.h)"', (directory / "qeltvapi.h").read_text())
    return [directory / name for name in names]


def functions(text):
    """The documented functions of a header. Parameters are (type, name) pairs, or None for any."""
    for comment, result, name, listed in DECLARATION.findall(text):
        listed = re.sub(r"\s+", " ", listed.strip())
        parameters = None
        if listed != "QELTVAPI_ANY_ARGS":
            pairs = [re.match(r"^(.*?[ *])(\w+)$", one).groups()
                     for one in listed.split(", ") if one not in ("", "void")]
            parameters = [(re.sub(r"\s*\*", "*", kind.strip()), name) for kind, name in pairs]
        yield Function(comment, result.strip(), name, parameters)


def records(text):
    """The records of a header: name and body, without comments."""
    for body, name in re.findall(r"typedef struct \{(.*?)^\} (\w+);", text, re.S | re.M):
        yield name, re.sub(r"/\*.*?\*/", "", body, flags=re.S)


def function_types(text):
    """The names that a header gives to types of functions."""
    return re.findall(r"^typedef \w+[ *]+\(\*(\w+)\)\(", text, re.M)


# ---- interfaces

def hal_methods(path):
    """The methods of a .hal file in the order of their transaction numbers."""
    path = pathlib.Path(path)
    text = without_comments(path.read_text())
    body = text[text.index("{", text.index("interface " + path.stem)):]
    return re.findall(r"^\s*(?:oneway\s+)?(a_hidl_\w+)\s*\(", body, re.M)


def split_parameters(text):
    """Splits at the commas outside of angle brackets; gives (type, name) pairs."""
    parts, depth, start = [], 0, 0
    for i, c in enumerate(text):
        if c == "<":
            depth += 1
        elif c == ">":
            depth -= 1
        elif c == "," and depth == 0:
            parts.append(text[start:i])
            start = i + 1
    parts.append(text[start:])
    return [tuple(part.strip().rsplit(" ", 1)) for part in parts if part.strip()]


def value_type(kind):
    """The type of a value that a parameter of this type refers to."""
    return re.sub(r"^const |&$", "", kind).strip()


def generated_methods(text):
    """The methods of an interface in the header that hidl-gen writes; `answers` are the parameters
    of the result callback, None where there is none."""
    callbacks = {name: split_parameters(listed) for name, listed in re.findall(
        r"^    using (\w+)_cb = std::function<void\((.*)\)>;$", text, re.M)}
    methods = []
    for result, name, listed in re.findall(
            r"^    virtual ::android::hardware::Return<(.+?)> (\w+)\((.*)\) = 0;$", text, re.M):
        pairs = split_parameters(listed)
        answers = None
        if pairs and pairs[-1][1] == "_hidl_cb":
            pairs.pop()
            answers = callbacks[name]
        methods.append(Method(name, result, pairs, answers))
    return methods


# ---- the library

@functools.lru_cache
def exports():
    """tests/exports.tsv: the rows of each function, a row per method that it calls."""
    with open(ROOT / "tests/exports.tsv", newline="") as file:
        rows = {}
        for row in csv.DictReader(file, delimiter="\t"):
            rows.setdefault(row["function"], []).append(row)
        return rows
