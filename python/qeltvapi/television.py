"""A private television for a test.

    with qeltvapi.television() as tv:
        qeltvapi.functions.a_qeltvapi_config_set_value(0, "picture.contrast", 42, 0)
        tv.restart()
"""

import atexit
import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import threading
import time

from . import functions
from ._description import find
from .errors import Error, NoTelevision

# The library reads QELTV_RUNTIME_DIR once, so all private televisions of a process use one.
_directory = None


def _runtime():
    global _directory
    if _directory is None:
        if functions.library.cache_info().currsize:
            raise NoTelevision("the library has already been used in this process: start the "
                               "private television before the first call")
        # Sockets want a short path.
        _directory = pathlib.Path(tempfile.mkdtemp(prefix="qeltv."))
        atexit.register(shutil.rmtree, _directory, ignore_errors=True)
        (_directory / "runtime").mkdir(mode=0o700)
        os.environ["QELTV_RUNTIME_DIR"] = str(_directory / "runtime")
    return _directory


class Television:
    """A process of qeltvd. directory: its state; log: the file of its log."""

    def __init__(self, arguments=()):
        self.arguments = list(arguments)
        self.directory = None
        self.log = None
        self.process = None

    def start(self, timeout=20):
        """Starts it and waits until it answers. @raises NoTelevision"""
        base = _runtime()
        if self.directory is None:
            self.directory = pathlib.Path(tempfile.mkdtemp(prefix="state.", dir=base))
            self.log = self.directory / "log"
        program = find("QELTVD", "qeltvd", "bin/qeltvd", "build/host/qeltvd/qeltvd")
        with open(self.log, "ab") as log:
            self.process = subprocess.Popen(
                [program, "--state", self.directory, *self.arguments], stdin=subprocess.DEVNULL,
                stdout=log, stderr=log, start_new_session=True)
        end = time.monotonic() + timeout
        while True:
            try:
                functions.a_qeltvapi_config_get_value(0, "picture.contrast")
                return self
            except Error:
                if self.process.poll() is not None or time.monotonic() > end:
                    self.stop()
                    raise NoTelevision("the television did not start:\n" +
                                       self.log.read_text(errors="replace")[-2000:]) from None
                time.sleep(0.02)

    def stop(self, how=signal.SIGTERM):
        """Ends it; its state stays."""
        if self.process is None:
            return
        if self.process.poll() is None:
            # A call of the main interface makes the library notice the end. One after the start is
            # not enough: the library may drop that proxy when it registers its callback object.
            # In a thread, because a television that hangs has to end as well.
            call = threading.Thread(target=functions.a_qeltvapi_freeze_is_freeze, args=("main",),
                                    daemon=True)
            call.start()
            call.join(2)
            self.process.send_signal(how)
            try:
                self.process.wait(10)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()
        self.process = None

    def kill(self):
        """Ends it as a crash does."""
        self.stop(signal.SIGKILL)

    def restart(self):
        """Ends it and starts it again with its state."""
        self.stop()
        return self.start()

    def __enter__(self):
        return self.start()

    def __exit__(self, *_):
        self.stop()
        shutil.rmtree(self.directory, ignore_errors=True)
        self.directory = None


def television(*arguments):
    """A television with a state of its own, for a `with`; arguments are those of qeltvd."""
    return Television(arguments)
