"""Notifications, as callbacks and as iterators.

    remove = qeltvapi.on("scan", print)

    with qeltvapi.listen("scan", "channellist") as events:
        for event in events.until(timeout=10):
            ...

    async with qeltvapi.listen("broadcast") as events:
        async for event in events: ...

The kinds are those of `qeltvctl watch`. The library registers on a thread of its own: what the
television sends in the moment after the first on() or listen() of a process may be missed. Listeners run on a thread of the library, one after the
other, and the television waits for them: be quick. An exception in one is printed, as those of
other threads are, and does not reach the library.
"""

import asyncio
import atexit
import collections
import dataclasses
import functools
import sys
import threading
import time

from . import functions
from ._description import description


@dataclasses.dataclass(frozen=True)
class Notification:
    """One notification.

    kind: "scan"; event: the name of the kind of event, "QELTV_SCAN_PROGRESS", or None; number: its
    number; values: what it has, by name, in the order of the C function's parameters.
    """

    kind: str
    event: "str | None"
    number: "int | None"
    values: dict

    def __getattr__(self, name):
        try:
            return self.values[name]
        except KeyError:
            raise AttributeError(f"{self.kind} has no {name}") from None

    def __str__(self):
        named = " ".join(f"{name}={value}" for name, value in self.values.items())
        return f"{self.kind} {self.event or self.number or ''} {named}".strip()


class _Kind:
    """Everybody who listens to one kind."""

    def __init__(self, described):
        self.described = described
        self.callback = description.callbacks[described["callback"]]
        self.listeners = []
        self.registered = False
        self.thunk = functions.callback_type(described["callback"])(self.arrived)
        events = description.enumerations.get(described["events"] or "")
        self.events = {one["value"]: one for one in events["values"]} if events else {
            description.constants[name]: {"name": name, "fields": None}
            for name in described["constants"]}

    def decode(self, arguments):
        values, number = {}, None
        for parameter, value in zip(self.callback["parameters"], arguments):
            if isinstance(value, bytes):
                value = value.decode("utf-8", "replace")
            if parameter["name"] == self.described["selector"]:
                number = value
            elif parameter["name"] != "tag":
                values[parameter["name"]] = value
        event = self.events.get(number)
        fields = (event or {}).get("fields") or self.described["fields"]
        for i, field in enumerate(fields, 1):
            value = values.pop(f"arg{i}", None)
            if value is None or not field["name"]:
                continue
            if field["signed"] and isinstance(value, int):
                value = (value & 0xffffffff) - ((value & 0x80000000) << 1)
            values[field["name"]] = value
        return Notification(self.described["name"], event["name"] if event else None, number, values)

    def arrived(self, *arguments):
        answer = 0
        try:
            notification = self.decode(arguments)
            with _lock:
                listeners = list(self.listeners)
            for listener in listeners:
                said = listener(notification)
                if self.described["answered"] and isinstance(said, int):
                    answer = said
        except BaseException:  # Nothing may go through the library's frames.
            sys.excepthook(*sys.exc_info())
        return answer

    def register(self, thunk):
        register = functions.function(self.described["registeredBy"][0])
        register(*[thunk if one.callback else 0 if not one.pointer else None
                   for one in register.arguments])


_lock = threading.RLock()


@functools.lru_cache(maxsize=None)
def _kind(name):
    if name not in description.notifications:
        raise ValueError(f"there is no notification {name!r}; there are: " +
                         ", ".join(kinds()))
    described = description.notifications[name]
    if not described["registeredBy"]:
        raise ValueError(f"no function registers for {name!r}")
    return _Kind(described)


def kinds():
    """The names of all kinds that can be listened to."""
    return sorted(name for name, one in description.notifications.items() if one["registeredBy"])


def on(kind, listener):
    """Calls a function with each Notification of a kind; returns a function that ends that."""
    found = _kind(kind)
    with _lock:
        found.listeners = found.listeners + [listener]
        first = not found.registered
        found.registered = True
    if first:
        found.register(found.thunk)
        asks = description.functions[found.described["registeredBy"][0]]
        if not asks["requestsRegistration"]:
            # It stores the function only; this one also has the callback object registered.
            _request_registration()

    def remove():
        with _lock:
            found.listeners = [one for one in found.listeners if one is not listener]

    return remove


def _request_registration():
    for name, one in description.notifications.items():
        for register in one["registeredBy"]:
            described = description.functions[register]
            if described["requestsRegistration"] and len(described["parameters"]) == 1:
                kind = _kind(name)
                kind.register(kind.thunk if kind.registered else None)
                return


class Events:
    """The notifications of some kinds, in the order of their arrival. Use as a context manager."""

    def __init__(self, names):
        for name in names:
            _kind(name)
        self._names = names
        self._waiting = collections.deque()
        self._changed = threading.Condition()
        self._wakers = []
        self._remove = []

    def _arrived(self, notification):
        with self._changed:
            self._waiting.append(notification)
            self._changed.notify_all()
            wakers = list(self._wakers)
        for waker in wakers:
            waker()

    def __enter__(self):
        self._remove = [on(name, self._arrived) for name in self._names]
        return self

    def __exit__(self, *_):
        for remove in self._remove:
            remove()

    async def __aenter__(self):
        return self.__enter__()

    async def __aexit__(self, *_):
        self.__exit__()

    def next(self, timeout=None, where=None):
        """The next one (for which where(notification) holds); TimeoutError after `timeout` s."""
        end = None if timeout is None else time.monotonic() + timeout
        while True:
            with self._changed:
                while not self._waiting:
                    left = None if end is None else end - time.monotonic()
                    if left is not None and left <= 0:
                        raise TimeoutError(f"no notification of {', '.join(self._names)} within "
                                           f"{timeout} s")
                    self._changed.wait(left)
                notification = self._waiting.popleft()
            if where is None or where(notification):
                return notification

    def until(self, timeout):
        """Those that arrive within `timeout` seconds."""
        end = time.monotonic() + timeout
        while True:
            try:
                yield self.next(max(0, end - time.monotonic()))
            except TimeoutError:
                return

    def __iter__(self):
        return self

    def __next__(self):
        return self.next()

    def __aiter__(self):
        return self

    async def __anext__(self):
        loop = asyncio.get_running_loop()
        arrived = asyncio.Event()

        def waker():
            loop.call_soon_threadsafe(arrived.set)

        with self._changed:
            self._wakers.append(waker)
        try:
            while True:
                with self._changed:
                    if self._waiting:
                        return self._waiting.popleft()
                arrived.clear()
                with self._changed:
                    waiting = bool(self._waiting)
                if not waiting:
                    await arrived.wait()
        finally:
            with self._changed:
                self._wakers.remove(waker)


def listen(*names):
    """The notifications of the named kinds, from the `with` on."""
    if not names:
        raise ValueError("name at least one kind: " + ", ".join(kinds()))
    return Events(names)


@atexit.register
def _end():
    # The interpreter ends before the library's threads do.
    for name in kinds():
        if _kind.cache_info().currsize == 0:
            return
        found = _kind(name)
        if found.registered:
            found.register(None)
