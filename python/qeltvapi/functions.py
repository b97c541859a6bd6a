"""Every C function of the library, by its name.

    code = qeltvapi.functions.a_qeltvapi_cancel_scan()
    contrast = qeltvapi.functions.a_qeltvapi_config_get_value(0, "picture.contrast")

Arguments are the parameters that are not pure outputs, in their order. What the function writes is
returned: one value as it is, several as a named tuple of the parameters' names. A function without
outputs returns its result. A negative result raises Refused or Unreachable.

- Texts are str (or bytes, or None for null); records are those of qeltvapi.records, or bytes.
- An output of a single integer or record is returned as such. For an output array a keyword of the
  parameter's name gives the number of elements, and a list is returned; for an output block the
  keyword gives its bytes, or the record that it holds, or (record, count).
- A buffer of characters or bytes has 64 KiB unless a keyword gives another size. The length that
  follows among the outputs cuts what is returned, and is not returned itself. An array is cut to the
  count beside it in the same way.
- An input that the function overwrites is an argument and an output.

Any thread may call; the interpreter's lock is released during the call.
"""

import collections
import ctypes
import functools
import keyword
import operator
import struct

from . import records
from ._description import description, find
from .errors import Refused, Unreachable

BUFFER = 65536
# What is allocated at least, for functions that store more than a caller expects.
_GUARD = 4096

_SCALARS = {"int": ctypes.c_int, "int8_t": ctypes.c_int8, "uint8_t": ctypes.c_uint8,
            "int16_t": ctypes.c_int16, "uint16_t": ctypes.c_uint16, "int32_t": ctypes.c_int32,
            "uint32_t": ctypes.c_uint32, "int64_t": ctypes.c_int64, "uint64_t": ctypes.c_uint64,
            "bool": ctypes.c_bool, "uintptr_t": ctypes.c_size_t, "size_t": ctypes.c_size_t,
            "char": ctypes.c_char}
_COUNTS = ("n", "num", "count", "number")
_LENGTHS = ("uint8_t", "uint16_t", "uint32_t", "int32_t", "uint64_t", "int")


@functools.lru_cache(maxsize=None)
def library():
    """The loaded libqeltvapi_client."""
    path = find("QELTVAPI_LIBRARY", "libqeltvapi_client.so",
                "lib/libqeltvapi_client.so", "lib/x86_64-linux-gnu/libqeltvapi_client.so",
                "libqeltvapi_client.so", "build/host/clientwrapper/libqeltvapi_client.so")
    return ctypes.CDLL(str(path))


@functools.lru_cache(maxsize=None)
def callback_type(name):
    """The ctypes type of a callback's function."""
    described = description.callbacks[name]
    types = [_ctype(one["type"]) for one in described["parameters"]]
    return ctypes.CFUNCTYPE(_ctype(described["result"]["type"]), *types)


def _ctype(name):
    if name == "void":
        return None
    if name == "const char*":
        return ctypes.c_char_p
    if name.endswith("*"):
        return ctypes.c_void_p
    if name in description.callbacks:
        return callback_type(name)
    # Enumerations are integers.
    return _SCALARS.get(name, ctypes.c_int)


class _Parameter:
    """How one parameter crosses."""

    def __init__(self, described, following):
        # "in" is a word of the language: in_
        self.name = described["name"] + "_" * keyword.iskeyword(described["name"])
        self.type = described["type"]
        self.doc = described["doc"]
        self.pointer = self.type.endswith("*")
        self.element = self.type.replace("const ", "").rstrip("*").strip()
        self.constant = self.type.startswith("const ")
        self.callback = self.type in description.callbacks
        self.output = self.pointer and not self.constant and self.type != "void**"
        self.argument = described["direction"] != "out"
        # A pointer that only identifies something, such as a tag.
        if self.type == "void*" and not described["direction"].endswith("out"):
            self.output = following is not None and following.output and \
                following.element in _LENGTHS
        self.record = getattr(records, self.element, None)
        self.block = self.element in ("char", "void")
        self.length = following.name if self.block and following is not None and \
            following.output and following.element in _LENGTHS else None

    def annotation(self):
        if self.callback:
            return "Callable[..., int | None] | None"
        if self.record:
            return f"records.{self.element}"
        if self.element == "char":
            return "str | bytes | None" if self.argument else "str"
        if self.element == "void":
            return "records.Record | bytes | None" if self.argument else "bytes"
        if self.element == "bool":
            return "bool"
        return "int | Sequence[int]" if self.pointer and self.argument else "int"

    def scalar(self, value):
        """A number that is in range."""
        kind = _ctype(self.type if not self.pointer else self.element)
        try:
            value = operator.index(value)
        except TypeError:
            raise TypeError(f"{self.name} is a number, not {value!r}") from None
        made = kind(value)
        if made.value != value:
            raise OverflowError(f"{self.name} is a {self.element}, which cannot hold {value}")
        return made

    def bytes_of(self, value):
        """What an argument points to; None for null."""
        if value is None:
            return None
        if isinstance(value, str):
            encoded = value.encode()
            if b"\0" in encoded:
                raise ValueError(f"{self.name} has a NUL")
            return encoded + b"\0"
        if isinstance(value, (bytes, bytearray, memoryview)):
            return bytes(value) + (b"\0" if self.element == "char" else b"")
        if isinstance(value, records.Record):
            return bytes(value)
        values = [value] if isinstance(value, int) else list(value)
        if values and isinstance(values[0], records.Record):
            return b"".join(bytes(one) for one in values)
        if self.element == "void":
            return struct.pack(f"<{len(values)}i", *values)
        return b"".join(bytes(self.scalar(one)) for one in values)


class _Output:
    """The memory of one output and how its value is read."""

    def __init__(self, parameter, wanted, initial):
        self.parameter = parameter
        self.count = None
        self.record = parameter.record
        size = 0
        if isinstance(wanted, type):
            self.record = wanted
        elif isinstance(wanted, tuple):
            self.record, self.count = wanted
        elif isinstance(wanted, int) and not isinstance(wanted, bool):
            if wanted < 0:
                raise ValueError(f"{parameter.name}: {wanted} elements")
            self.count = wanted
        data = parameter.bytes_of(initial) if initial is not None else b""
        if not parameter.block and initial is not None and not isinstance(
                initial, (int, records.Record)):
            self.count = max(self.count or 0, len(initial))
        if self.record:
            size = self.record.SIZE * (self.count or 1)
        elif parameter.block:
            size = self.count if self.count is not None else BUFFER
        else:
            self.each = ctypes.sizeof(_ctype(parameter.element))
            size = self.each * (self.count or 1)
        self.size = max(size, len(data))
        self.memory = ctypes.create_string_buffer(max(self.size, _GUARD) + _GUARD)
        ctypes.memmove(self.memory, data, len(data))

    def value(self, length):
        data = self.memory.raw[:self.size]
        if self.record:
            each = self.record.SIZE
            made = [self.record.from_bytes(data[i:i + each])
                    for i in range(0, each * (self.count or 1), each)]
            return made if self.count is not None else made[0]
        if self.parameter.block:
            if length is not None:
                data = data[:min(max(length, 0), self.size)]
            return records.text(data) if self.parameter.element == "char" else data
        kind = _ctype(self.parameter.element)
        made = [kind.from_buffer_copy(data, i).value
                for i in range(0, self.each * (self.count or 1), self.each)]
        return made if self.count is not None else made[0]


class Function:
    """One C function; see the module."""

    def __init__(self, described):
        self.__name__ = self.name = described["name"]
        self.__doc__ = f"{described['prototype']}\n\n{described['doc']}"
        following = None
        self.parameters = []
        for one in reversed(described["parameters"] or []):
            following = _Parameter(one, following)
            self.parameters.insert(0, following)
        self.arguments = [one for one in self.parameters if one.argument or not one.output]
        self.outputs = [one for one in self.parameters if one.output]
        self.result = described["result"]["type"]
        self.registers = described["registers"]
        lengths = {one.length for one in self.outputs}
        self.returned = [one for one in self.outputs if one.name not in lengths]
        names = [one.name for one in self.returned]
        self._tuple = collections.namedtuple(f"{self.name}_result", names, rename=True)
        self._kept = None

    @functools.cached_property
    def address(self):
        function = getattr(library(), self.name)
        function.restype = _ctype(self.result)
        function.argtypes = None
        return function

    def __repr__(self):
        return f"<function {self.name}>"

    def __call__(self, *values, **keywords):
        if len(values) > len(self.arguments):
            raise TypeError(f"{self.name}() takes {len(self.arguments)} arguments, "
                            f"not {len(values)}")
        given = dict(zip((one.name for one in self.arguments), values))
        pure = {one.name for one in self.parameters} - {one.name for one in self.arguments}
        for name, value in keywords.items():
            if name in given or name not in {one.name for one in self.parameters}:
                raise TypeError(f"{self.name}() has no argument {name}, or it is given twice")
            if name not in pure:
                given[name] = value
        missing = [one.name for one in self.arguments if one.name not in given]
        if missing:
            raise TypeError(f"{self.name}() lacks {', '.join(missing)}")
        crossing, outputs, alive = [], {}, []
        for one in self.parameters:
            if one.output:
                output = _Output(one, keywords.get(one.name) if one.name in pure else None,
                                 given.get(one.name))
                outputs[one.name] = output
                crossing.append(ctypes.cast(output.memory, ctypes.c_void_p))
            elif one.callback:
                function = given[one.name]
                kind = callback_type(one.type)
                made = kind(function) if function is not None and not isinstance(
                    function, kind) else function or kind()
                alive.append(made)
                crossing.append(made)
            elif one.pointer and not one.type == "void*":
                data = one.bytes_of(given[one.name])
                crossing.append(None if data is None else ctypes.create_string_buffer(data))
            elif one.pointer:
                crossing.append(ctypes.c_void_p(given[one.name]))
            else:
                crossing.append(one.scalar(given[one.name]))
        code = self.address(*crossing)
        if alive:
            # The library keeps the function until another one is registered.
            self._kept = alive
        if isinstance(code, int) and code < 0 and self.result == "int":
            raise self.error(code)
        if not outputs:
            return code
        lengths = {one.name: outputs[one.length].value(None)
                   for one in self.outputs if one.length}
        read = [outputs[one.name].value(lengths.get(one.name)) for one in self.returned]
        self._cut_arrays(read)
        return read[0] if len(read) == 1 else self._tuple(*read)

    def _cut_arrays(self, read):
        for i, value in enumerate(read):
            for beside in (i + 1, i - 1):
                if isinstance(value, list) and 0 <= beside < len(read) and \
                        self.returned[beside].name in _COUNTS and isinstance(read[beside], int):
                    read[i] = value[:max(read[beside], 0)]

    def error(self, code):
        if code == -1:
            return Unreachable(self.name, code)
        known = description.codes.get(code)
        return Refused(self.name, code, *((known["name"], known["doc"]) if known else ()))


@functools.lru_cache(maxsize=None)
def function(name):
    """A function by its C name; KeyError for none."""
    return Function(description.functions[name])


def __getattr__(name):
    if name not in description.functions:
        raise AttributeError(f"the library has no function {name}")
    return function(name)


def __dir__():
    return sorted([*globals(), *description.functions])
