#!/usr/bin/env python3
"""The installed library from Python: ctypes_test.py LIBRARY INCLUDE, with a television at work."""
import ctypes
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))
import headers

library = ctypes.CDLL(sys.argv[1])

# Every function that the headers declare is there.
names = {function.name for header in headers.families(sys.argv[2])
         for function in headers.functions(header.read_text())}
assert len(names) > 700, len(names)
for name in names:
    getattr(library, name)

value = ctypes.c_int32()
assert library.a_qeltvapi_config_get_value(0, b"picture.contrast", ctypes.byref(value)) == 0
assert value.value == 85
assert library.a_qeltvapi_config_set_value(0, b"picture.contrast", 101, 0) == -4
assert library.a_qeltvapi_config_set_value(0, b"picture.hue", -7, 0) == 0
assert library.a_qeltvapi_config_get_value(0, b"picture.hue", ctypes.byref(value)) == 0
assert value.value == -7

# A text comes without a terminator: the length says where it ends.
text = ctypes.create_string_buffer(b"#" * 64)
length = ctypes.c_uint32()
assert library.a_qeltvapi_config_get_str_value(b"channels.country", text, ctypes.byref(length)) == 0
assert text.raw[:length.value + 1] == b"DEU#", text.raw

print(f"Python: {len(names)} functions, picture.hue is {value.value}")
