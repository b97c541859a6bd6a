"""python3 -m qeltvapi FUNCTION [ARGUMENT...]: calls a function and prints what it returns.

--list [TEXT]  names of the functions that contain a text
--help FUNCTION  the contract of a function
"""

import sys

from . import Error, functions
from ._description import description


def value(text):
    try:
        return int(text, 0)
    except ValueError:
        return text


def main(arguments):
    if not arguments or arguments == ["--help"]:
        print(__doc__)
        return 0 if arguments else 2
    name, *rest = arguments
    if name == "--list":
        print("\n".join(one for one in description.functions if not rest or rest[0] in one))
        return 0
    if name == "--help":
        name, rest = rest[0], None
    if name not in description.functions:
        print(f"there is no function {name}", file=sys.stderr)
        return 2
    function = functions.function(name)
    if rest is None:
        print(function.__doc__)
        return 0
    try:
        print(function(*map(value, rest)))
    except (TypeError, ValueError, OverflowError) as error:
        print(error, file=sys.stderr)
        return 2
    except Error as error:
        print(error, file=sys.stderr)
        return 1
    return 0


sys.exit(main(sys.argv[1:]))
