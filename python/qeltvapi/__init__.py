"""The TV middleware from Python.

functions      every C function, with typed arguments and outputs as return values
records        the records as dataclasses
constants      the enumerators and constants: qeltvapi.constants.QELTV_KEY_MUTE
on, listen     notifications
television     a private television for a test

Pure Python over the C library: nothing is compiled. QELTVAPI_LIBRARY, QELTVAPI_DESCRIPTION and
QELTVD name the library, its description and the television where they are not found beside the
package.
"""

from . import functions, records
from ._description import description as _description
from .errors import Error, NoTelevision, Refused, Unreachable
from .notifications import Events, Notification, kinds, listen, on
from .television import Television, television


class _Constants:
    """Enumerators and constants of the headers, by their names."""

    def __getattr__(self, name):
        try:
            return _description.constants[name]
        except KeyError:
            raise AttributeError(f"the headers have no constant {name}") from None

    def __dir__(self):
        return sorted(_description.constants)


constants = _Constants()

__all__ = ["Error", "Events", "NoTelevision", "Notification", "Refused", "Television",
           "Unreachable", "constants", "functions", "kinds", "listen", "on", "records",
           "television"]
