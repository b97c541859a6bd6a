"""The records of the headers, as dataclasses.

Every record of include/ and layouts/ is a class of this module, by its C name:

    channel = qeltvapi.records.channel_record_t(number=7, name="Seven")
    bytes(channel)
    qeltvapi.records.channel_record_t.from_bytes(data)

Integers are int, arrays of char are str, other arrays are lists. Alternatives of a union are fields
with a dot in their C name, "value.number", and an underscore here; all of them are read, and the
last one that is not zero is written.
"""

import dataclasses
import struct

from ._description import description

_FORMATS = {"int8_t": "b", "uint8_t": "B", "bool": "?", "int16_t": "h", "uint16_t": "H",
            "int32_t": "i", "uint32_t": "I", "int": "i", "int64_t": "q", "uint64_t": "Q",
            "qeltvapi_packed_u64_t": "Q", "uintptr_t": "Q"}


def text(data):
    """The characters before the first NUL."""
    return data.split(b"\0", 1)[0].decode("utf-8", "replace")


def _cut(data, limit):
    """At most `limit` bytes of UTF-8 without half a character."""
    return data if len(data) <= limit else data[:limit].decode("utf-8", "ignore").encode()


class _Field:
    def __init__(self, described, size):
        self.name = described["name"].replace(".", "_")
        self.type = described["type"]
        self.count = described["count"]
        self.offset = described["offset"]
        self.size = described.get("size", size)
        self.array = bool(described["dimensions"])
        self.nested = self.type if self.type in description.records else None
        self.format = _FORMATS.get(self.type)
        if self.format is None and self.nested is None:
            # Pointers and enumerations, by their width.
            self.format = {1: "B", 2: "H", 4: "i", 8: "Q"}.get(self.size // self.count)

    def annotation(self):
        if self.type == "char" and self.array:
            return str
        one = globals()[self.nested] if self.nested else bool if self.type == "bool" else int
        return list if self.array else one

    def default(self):
        if self.type == "char" and self.array:
            return ""
        if self.nested:
            make = globals()[self.nested]
            return dataclasses.field(default_factory=(
                lambda: [make() for _ in range(self.count)]) if self.array else make)
        if self.array:
            return dataclasses.field(default_factory=lambda: [0] * self.count)
        return False if self.type == "bool" else 0

    def read(self, data):
        part = data[self.offset:self.offset + self.size]
        if self.type == "char":
            return text(part) if self.array else part[0]
        if self.nested:
            kind = globals()[self.nested]
            each = self.size // self.count
            values = [kind.from_bytes(part[i * each:(i + 1) * each]) for i in range(self.count)]
        else:
            values = list(struct.unpack(f"<{self.count}{self.format}", part))
        return values if self.array else values[0]

    def write(self, value, data):
        if self.type == "char":
            # The last byte stays a NUL.
            part = (_cut(value.encode(), self.size - 1) if self.array else bytes([value]))
        elif self.nested:
            part = b"".join(bytes(one) for one in (value if self.array else [value]))
        else:
            values = list(value) if self.array else [value]
            if len(values) > self.count:
                raise ValueError(f"{self.name} has {self.count} elements, not {len(values)}")
            values += [0] * (self.count - len(values))
            try:
                part = struct.pack(f"<{self.count}{self.format}", *values)
            except struct.error as error:
                raise OverflowError(f"{self.name} is a {self.type}: {error}") from None
        data[self.offset:self.offset + len(part)] = part


class Record:
    """Base of all records. SIZE: bytes in this process."""

    SIZE = 0
    _fields = ()

    @classmethod
    def from_bytes(cls, data):
        """The record that bytes hold; ValueError for less than SIZE of them."""
        if len(data) < cls.SIZE:
            raise ValueError(f"{cls.__name__} has {cls.SIZE} bytes, not {len(data)}")
        return cls(**{field.name: field.read(data) for field in cls._fields})

    def __bytes__(self):
        data = bytearray(self.SIZE)
        for field in self._fields:
            value = getattr(self, field.name)
            # Of a union, what is set.
            if "_" not in field.name or value or not any(data[field.offset:field.offset +
                                                              field.size]):
                field.write(value, data)
        return bytes(data)


def _make(described):
    fields = [_Field(one, described["size"]) for one in described["fields"]]
    kind = dataclasses.make_dataclass(
        described["name"], [(one.name, one.annotation(), one.default()) for one in fields],
        bases=(Record,), namespace={"SIZE": described["size"], "_fields": fields,
                                    "__doc__": described["doc"], "__module__": __name__})
    return kind


def _order():
    """Records after those that they contain."""
    done, order = set(), []

    def visit(name):
        if name in done:
            return
        done.add(name)
        for field in description.records[name]["fields"]:
            if field["type"] in description.records:
                visit(field["type"])
        order.append(name)

    for name in description.records:
        visit(name)
    return order


__all__ = ["Record", "text"]
for _name in _order():
    globals()[_name] = _make(description.records[_name])
    __all__.append(_name)
