"""Reads the headers, layouts and interfaces of this tree for the scripts that write or check what
follows from them. Everything here goes by the form that clang-format and hidl-gen give the files.

Scripts that need names, types, comments or values read the description that scripts/describe.py
writes; what is here is for that script and for those that work on the text of the files.
"""
import ast
import collections
import csv
import functools
import os
import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parents[1]

COMMENT = r"/\*\*((?:[^*]|\*(?!/))*)\*/"
# A function of a C header with its comment: comment, result, name, parameters.
DECLARATION = re.compile(COMMENT + r"(\s*(?:unsigned )?\w+[ *]+)(\w+)\(([^()]*)\);", re.S)
# The comment at the head of a header.
FILE_COMMENT = re.compile(r"\A\s*" + COMMENT)

# A type of functions with its comment: comment, result, name, parameters.
FUNCTION_TYPE = re.compile(COMMENT + r"\s*typedef (\w+[ *]+)\(\*(\w+)\)\(([^()]*)\);", re.S)
# A record with its comment: comment, body, name.
RECORD = re.compile(r"(?:" + COMMENT + r"\s*)?typedef struct(?: \w+)? \{(.*?)^\} (\w+);",
                    re.S | re.M)
ENUM = re.compile(COMMENT + r"\s*enum (\w+) \{(.*?)^\};", re.S | re.M)
# A piece of a record or enum: a comment, or a field or enumerator to its end.
PIECE = re.compile(r"/\*\*(<?)((?:[^*]|\*(?!/))*)\*/|([^;,/\s][^;,/]*)[;,]", re.S)

Function = collections.namedtuple("Function", "comment result name parameters")
Method = collections.namedtuple("Method", "name result parameters answers")
Documentation = collections.namedtuple("Documentation", "text parameters result values")
Record = collections.namedtuple("Record", "comment name fields")
Field = collections.namedtuple("Field", "type name dimensions comment")
Enumeration = collections.namedtuple("Enumeration", "comment name values")
Enumerator = collections.namedtuple("Enumerator", "name value comment")
HalMethod = collections.namedtuple("HalMethod", "comment name parameters results")


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


def one_line(text):
    """Text with its paragraphs on one line each, without Doxygen's marks."""
    paragraphs = re.split(r"\n\s*\n", text.strip())
    text = "\n\n".join(re.sub(r"\s+", " ", part).strip() for part in paragraphs)
    return re.sub(r"@c |@p |@ref |::(?=\w)", "", text)


def documentation(comment):
    """A comment taken apart: its text, {parameter: (direction, text)}, the text of the result, and
    the names that @values gives to the values of a notification."""
    text, *tags = re.split(r"(?m)^(?=@(?:param|return)\b)|(?=@values\b)", plain(comment))
    parameters, result, values = {}, "", None
    for tag in tags:
        if tag.startswith("@return"):
            result = one_line(tag[len("@return"):])
        elif tag.startswith("@values"):
            values = [one.strip() for one in one_line(tag[len("@values"):]).split(",")]
        else:
            match = re.match(
                r"@param\s+(\w+(?:,\s*\w+)*)\s*(?:\[(in, ?out|in|out)\])?(.*)", tag, re.S)
            for name in re.split(r",\s*", match[1]):
                parameters[name] = ((match[2] or "").replace(" ", ""), one_line(match[3]))
    return Documentation(one_line(text), parameters, result, values)


def first_sentence(text):
    """The first sentence of a text of one_line()."""
    return re.split(r"(?<=[.!?])\s+(?=[A-Z])", text.split("\n\n")[0])[0]


def families(directory):
    """The headers of the library, in the order in which qeltvapi.h includes them."""
    directory = pathlib.Path(directory)
    names = re.findall(r'#include "(\w+\.h)"', (directory / "qeltvapi.h").read_text())
    return [directory / name for name in names]


def declarations(pattern, text):
    for comment, result, name, listed in pattern.findall(text):
        listed = re.sub(r"\s+", " ", listed.strip())
        parameters = None
        if listed != "QELTVAPI_ANY_ARGS":
            pairs = [re.match(r"^(.*?[ *])(\w+)$", one).groups()
                     for one in listed.split(", ") if one not in ("", "void")]
            parameters = [(re.sub(r"\s*\*", "*", kind.strip()), name) for kind, name in pairs]
        yield Function(comment, result.strip(), name, parameters)


def functions(text):
    """The documented functions of a header. Parameters are (type, name) pairs, or None for any."""
    return declarations(DECLARATION, text)


def callbacks(text):
    """The documented types of functions of a header, as functions()."""
    return declarations(FUNCTION_TYPE, text)


def records(text):
    """The records of a header: name and body, without comments."""
    for _, body, name in RECORD.findall(text):
        yield name, re.sub(r"/\*.*?\*/", "", body, flags=re.S)


def members(body):
    """The fields or enumerators of a body, each with its comment, before it or behind."""
    found, before = [], ""
    for match in PIECE.finditer(body):
        behind, comment, member = match.groups()
        if member is not None:
            found.append([re.sub(r"\s+", " ", member).strip(), before])
            before = ""
        elif behind:
            found[-1][1] = comment
        else:
            before = comment
    return found


def record_types(text):
    """The records of a header with their fields; dimensions are texts, numbers or constants. The
    alternatives of a union have its name in theirs, "value.number"."""
    def alternatives(match):
        return re.sub(r"(\w+;)", match[2] + r".\1", match[1])

    for comment, body, name in RECORD.findall(text):
        body = re.sub(r"union \{(.*?)\} (\w+);", alternatives, body, flags=re.S)
        fields = []
        for field, about in members(body):
            kind, field_name, dimensions = re.match(
                r"^(.*?[ *])([\w.]+)((?:\[\w+\])*)$", field).groups()
            fields.append(Field(re.sub(r"\s*\*", "*", kind.strip()), field_name,
                                re.findall(r"\[(\w+)\]", dimensions), about))
        yield Record(comment, name, fields)


def value_of(expression, known):
    """The value of a constant expression of C: an int or a str, None for anything else."""
    expression = re.sub(r"\b(0[xX][0-9a-fA-F]+|\d+)[uUlL]+\b", r"\1", expression)
    expression = re.sub(r"\b[A-Z]\w+\b", lambda m: repr(known.get(m[0])), expression)
    try:
        tree = ast.parse(expression.strip(), mode="eval")
        if any(isinstance(node, (ast.Call, ast.Attribute)) for node in ast.walk(tree)):
            return None
        value = eval(compile(tree, "", "eval"), {"__builtins__": {}})  # operators and literals only
    except (SyntaxError, TypeError, NameError):
        return None
    return value if isinstance(value, (int, str)) else None


def enumerations(text):
    """The enumerations of a header."""
    for comment, name, body in ENUM.findall(text):
        values = []
        for member, about in members(body):
            constant, value = member.split(" = ")
            values.append(Enumerator(constant, value_of(value, {}), about))
        yield Enumeration(comment, name, values)


def constants(text, known):
    """The constants of a header in runs: those below one comment that is not Doxygen's are an
    Enumeration, whose name is their common beginning or a word and a colon before the comment. The
    others are a run each without a name. Adds to `known`."""
    define = re.compile(
        r"(?:(?P<group>/\*(?!\*)(?:[^*]|\*(?!/))*\*/)\n)?(?:" + COMMENT + r"\s*?\n)?"
        r"#define (?P<name>\w+) (?P<value>[^\n/\\]+?)"
        r"(?: */\*\*<(?P<behind>(?:[^*]|\*(?!/))*)\*/)?\n")
    runs, end = [], None
    for found in define.finditer(text):
        value = value_of(found["value"], known)
        if value is None:
            continue
        known[found["name"]] = value
        one = Enumerator(found["name"], value, found[2] or found["behind"] or "")
        if found["group"]:
            runs.append(Enumeration(found["group"][2:-2], "grouped", [one]))
        elif found.start() == end and runs and runs[-1].name:
            runs[-1].values.append(one)
        else:
            runs.append(Enumeration("", "", [one]))
        end = found.end()
    for comment, name, values in runs:
        if name:
            given = re.match(r"\s*(\w+): ", comment)
            shared = os.path.commonprefix([one.name for one in values])
            name = given[1] if given else shared[:shared.rfind("_") + 1]
            comment = comment[given.end():] if given else comment
        yield Enumeration(comment, name, values)


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


def hal_interface(path):
    """The methods of a .hal file in the order of their transaction numbers, with their comments.
    Parameters and results are (type, name) pairs."""
    text = pathlib.Path(path).read_text()
    for comment, name, parameters, results in re.findall(
            COMMENT + r"\s*(?:oneway\s+)?(a_hidl_\w+)\s*\(([^()]*)\)"
            r"(?:\s*generates\s*\(([^()]*)\))?\s*;",
            text, re.S):
        yield HalMethod(comment, name, *(split_parameters(re.sub(r"\s+", " ", listed))
                                         for listed in (parameters, results)))


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
