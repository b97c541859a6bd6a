"""What the functions of the library return when no answer comes, from the sources of
clientwrapper/: every family has constants with its results (see Family in clientwrapper/call.h),
which a function changes where it differs, and the shape of a call decides whether a transport
failure ends the process.
"""
import re

import headers
from headers import ROOT

# A result that is no number: the process ends.
ENDS = "ends the process"

FAMILY = re.compile(r"^constexpr Family<\w+> (k\w+)\s*(=?[^;]*);", re.M)
# What changes a family's constant for one function: ".withMissing(0)", any number of times.
CHANGES = r"(?:\.with\w+\((?:[^()]|\([^()]*\))*\))*"
# The shapes of a call, in clientwrapper/call.h; only one of them does not check for a failure.
SHAPE = re.compile(r"(?<![\w:])(?:call\.)?(direct|ask|inlineChecked|unchecked|send)(?:<[^>]*>)?\(")
UNCHECKED = "unchecked"
# A result that is taken as a narrower type before it is returned.
CAST = re.compile(r"static_cast<(u?int(?:8|16)_t)>\(\s*(?:call|result|direct|ask|unchecked)\b")
BITS = {"uint8_t": (8, False), "uint16_t": (16, False), "uint32_t": (32, False),
        "bool": (1, False), "int16_t": (16, True), "int": (32, True), "int64_t": (64, True)}


def number(text, constants):
    text = re.sub(r"/\*.*?\*/", "", text).strip()
    return constants[text] if text in constants else int(text, 0)


def changed(results, changes, constants):
    preset, missing = results
    for name, value in re.findall(r"\.with(Preset|Missing)\(([^()]*)\)", changes):
        if name == "Preset":
            preset = number(value, constants)
        else:
            missing = number(value, constants)
    return preset, missing


def family_constants(source, constants):
    """{name: (result after a transport failure, result without a service)}"""
    found = {}
    for name, text in FAMILY.findall(source):
        text = re.sub(r"\[\]\([^{]*\{.*\}", "", text, flags=re.S)  # a line's own function
        base = re.match(r"=\s*(k\w+)", text)
        if base:
            found[name] = changed(found[base[1]], text, constants)
            continue
        fields = [one.strip() for one in re.search(r"\{(.*?)\}", text, re.S)[1].split(",")]
        preset = number(fields[2], constants) if len(fields) > 2 else -1
        missing = number(fields[3], constants) if len(fields) > 3 else -1
        found[name] = changed((preset, missing), text, constants)
    return found


def converted(value, kind):
    """A number as a value of an integer type."""
    bits, signed = BITS[kind]
    if kind == "bool":
        return int(value != 0)
    value &= (1 << bits) - 1
    return value - (1 << bits) if signed and value >> (bits - 1) else value


class Source:
    """One source of clientwrapper/: its families' constants, and its functions' bodies by name."""

    def __init__(self, stem, constants):
        path = ROOT / f"clientwrapper/{stem}.cpp"
        text = headers.without_comments(path.read_text()) if path.exists() else ""
        self.constants = constants
        self.families = family_constants(text, constants)
        self.bodies = {}
        for name, body in re.findall(
                r"^[^\s#}/][^;{}]*?\b(\w+)\([^;{}]*\)(?: const)?\s*\{\n(.*?)^\}", text,
                re.M | re.S):
            self.bodies.setdefault(name, body)

    def whole(self, name):
        """The body of a function with those of the functions of this file that it calls."""
        body = self.bodies.get(name, "")
        called = re.findall(r"(?<![\w.>:])(\w+)(?:<[^<>;]*>)?\(", body)
        return body + "".join(self.whole(one) for one in called
                              if one in self.bodies and one != name)

    def results(self, name):
        """(without a service, after a transport failure), or None without a family's constant."""
        body = self.whole(name)
        used = [changed(self.families[family], changes, self.constants)
                for family, changes in re.findall(rf"\b(k\w+)({CHANGES})", body)
                if family in self.families]
        if not used:
            return None
        preset, missing = used[0]
        explicit = re.search(r"if \(!call\) return (-?\d+);", body)
        if explicit:
            missing = int(explicit[1])
        cast = CAST.search(body)
        if cast:
            preset, missing = converted(preset, cast[1]), converted(missing, cast[1])
        return missing, ENDS if set(SHAPE.findall(body)) == {UNCHECKED} else preset


class Library:
    """All sources of clientwrapper/. `constants` has the values of the constants of the headers."""

    def __init__(self, constants):
        self.constants = constants
        self.sources = {}

    def source(self, stem):
        """The source that belongs to a header of this base name."""
        if stem not in self.sources:
            self.sources[stem] = Source(stem, self.constants)
        return self.sources[stem]

    def results(self, stem, name, kind):
        """What a function of this result type returns without a service and after a transport
        failure: numbers, ENDS, or None where there is no result. None for a function that is
        written out without a family's constant."""
        found = self.source(stem).results(name)
        if found is None:
            return None
        return tuple(value if value == ENDS else None if kind == "void" else converted(value, kind)
                     for value in found)
