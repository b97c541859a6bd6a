"""The errors of calls."""


class Error(Exception):
    """A call that did not succeed.

    function: name of the C function; code: what it returned.
    """

    def __init__(self, function, code, text):
        super().__init__(f"{function}: {text}")
        self.function = function
        self.code = code


class Unreachable(Error):
    """No service is there, or the transport failed before its reply came."""

    def __init__(self, function, code):
        super().__init__(function, code, f"the television is not reachable ({code})")


class Refused(Error):
    """The service answered with a negative code. name: its QELTV_ name, or None."""

    def __init__(self, function, code, name=None, doc=None):
        text = f"refused with {code}"
        if name:
            text = f"refused: {doc} ({name}, {code})"
        super().__init__(function, code, text)
        self.name = name


class NoTelevision(Exception):
    """A private television did not start; the text has the end of its log."""
