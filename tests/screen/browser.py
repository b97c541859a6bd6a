"""Drives a headless Chromium through its debugging pipe, with the standard library alone."""
import base64
import json
import os
import select
import shutil
import signal
import subprocess
import tempfile
import time

NAMES = ("chromium-headless-shell", "chromium", "chromium-browser", "google-chrome")
# Far more than a loaded machine takes.
PATIENCE = 60


def find():
    """The path of a browser, or None."""
    return next((path for path in map(shutil.which, NAMES) if path), None)


class ScriptError(Exception):
    """A script of the test has thrown."""


class Browser:
    """A browser of its own, with a profile that goes with it."""

    def __init__(self, path):
        self.profile = tempfile.mkdtemp(prefix="qeltv-browser-")
        to_browser, self.writing = os.pipe()
        self.reading, from_browser = os.pipe()

        def give_pipes():
            # 3 and 4 are what the browser expects; the copies above keep both safe meanwhile.
            for source, target in ((os.dup(to_browser), 3), (os.dup(from_browser), 4)):
                os.dup2(source, target)

        arguments = [path, "--headless", "--remote-debugging-pipe", "--disable-gpu", "--no-first-run",
                     "--disable-dev-shm-usage", "--disable-background-networking",
                     "--hide-scrollbars", f"--user-data-dir={self.profile}"]
        if os.getuid() == 0:
            # The browser refuses its sandbox to the super-user.
            arguments.append("--no-sandbox")
        self.process = subprocess.Popen(arguments, preexec_fn=give_pipes, close_fds=False,
                                        start_new_session=True, stdin=subprocess.DEVNULL,
                                        stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(to_browser)
        os.close(from_browser)
        self.received = b""
        self.number = 0
        self.pages = {}

    def close(self):
        # Its helpers are in the same group; no other process is.
        os.killpg(self.process.pid, signal.SIGKILL)
        self.process.wait()
        os.close(self.writing)
        os.close(self.reading)
        shutil.rmtree(self.profile, ignore_errors=True)

    def _take(self, timeout):
        """Reads messages until one is there; events go to their pages."""
        deadline = time.monotonic() + timeout
        while b"\0" not in self.received:
            ready, _, _ = select.select([self.reading], [], [], max(0, deadline - time.monotonic()))
            if not ready:
                return None
            data = os.read(self.reading, 1 << 16)
            if not data:
                raise RuntimeError("the browser has ended")
            self.received += data
        message, self.received = self.received.split(b"\0", 1)
        message = json.loads(message)
        page = self.pages.get(message.get("sessionId"))
        if page and "method" in message:
            page.event(message["method"], message["params"])
        return message

    def call(self, method, session=None, **parameters):
        self.number += 1
        message = {"id": self.number, "method": method, "params": parameters}
        if session:
            message["sessionId"] = session
        os.write(self.writing, json.dumps(message).encode() + b"\0")
        deadline = time.monotonic() + PATIENCE
        while time.monotonic() < deadline:
            answer = self._take(1)
            if answer and answer.get("id") == self.number:
                if "error" in answer:
                    raise RuntimeError(f"{method}: {answer['error']['message']}")
                return answer["result"]
        raise RuntimeError(f"{method}: the browser does not answer")

    def drain(self):
        while self._take(0):
            pass

    def open(self, address, width=1280, height=900):
        return Page(self, address, width, height)


class Page:
    def __init__(self, browser, address, width, height):
        self.browser = browser
        self.problems = []
        target = browser.call("Target.createTarget", url="about:blank", width=width,
                              height=height)["targetId"]
        self.session = browser.call("Target.attachToTarget", targetId=target,
                                    flatten=True)["sessionId"]
        self.target = target
        browser.pages[self.session] = self
        for domain in ("Page", "Runtime", "Log"):
            self.call(f"{domain}.enable")
        self.resize(width, height)
        self.call("Page.navigate", url=address)

    def close(self):
        self.browser.call("Target.closeTarget", targetId=self.target)

    def call(self, method, **parameters):
        return self.browser.call(method, self.session, **parameters)

    def event(self, method, parameters):
        """Keeps what the console would show as an error."""
        if method == "Runtime.exceptionThrown":
            details = parameters["exceptionDetails"]
            self.problems.append(details.get("exception", {}).get("description", details["text"]))
        elif method == "Log.entryAdded" and parameters["entry"]["level"] == "error":
            self.problems.append(f"{parameters['entry']['text']} {parameters['entry'].get('url')}")
        elif method == "Runtime.consoleAPICalled" and parameters["type"] == "error":
            self.problems.append(str(parameters["args"]))

    def evaluate(self, script):
        result = self.call("Runtime.evaluate", expression=script, awaitPromise=True,
                           returnByValue=True)
        if "exceptionDetails" in result:
            raise ScriptError(f"{script}: {result['exceptionDetails']}")
        return result["result"].get("value")

    def wait(self, condition, what=None):
        """Waits until a script gives something that is true, and gives it."""
        deadline = time.monotonic() + PATIENCE
        while True:
            try:
                value = self.evaluate(condition)
            except ScriptError:
                # What it looks at is not there yet.
                value = None
            # An element arrives as an empty object.
            if value or value == {}:
                return value
            if time.monotonic() > deadline:
                state = self.evaluate("document.getElementById('spoken')?.textContent")
                raise AssertionError(f"not in time: {what or condition}; the screen: {state};"
                                     f" problems: {self.problems}")
            time.sleep(0.02)

    def key(self, key):
        """Presses a key of the keyboard."""
        parameters = {"key": key}
        if len(key) == 1:
            parameters["text"] = key
        if key == "Enter":
            parameters["text"] = "\r"
        self.call("Input.dispatchKeyEvent", type="keyDown", **parameters)
        self.call("Input.dispatchKeyEvent", type="keyUp", key=key)

    def click(self, selector):
        self.evaluate(f"document.querySelector({json.dumps(selector)}).click()")

    def resize(self, width, height):
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=height,
                  deviceScaleFactor=1, mobile=False)

    def dark(self, on):
        self.call("Emulation.setEmulatedMedia", features=[
            {"name": "prefers-color-scheme", "value": "dark" if on else "light"}])

    def screenshot(self, path):
        """Writes a picture that is small enough for the documents."""
        data = self.call("Page.captureScreenshot", format="webp", quality=75)["data"]
        with open(path, "wb") as file:
            file.write(base64.b64decode(data))
