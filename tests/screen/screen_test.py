#!/usr/bin/env python3
"""The page of qeltvscreen in a real browser, against the reference television.

usage: screen_test.py BUILD_DIRECTORY [TEST...]

GTEST_OUTPUT=json:FILE has the cases counted one by one. QELTV_SCREENSHOTS=DIRECTORY has the
pictures of the documents written.
"""
import base64
import http.client
import json
import os
import pathlib
import shutil
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import time
import unittest

import browser

BUILD = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else None
SKIPPED = 77

TEXT = "(document.querySelector('[data-part=%s]')?.textContent ?? '')"
NAME = "document.getElementById('picture-main').alt.replace('Picture of ', '')"
PLAYS = "document.getElementById('picture-main').naturalWidth > 0"


def part(name):
    """The text of an element on the screen."""
    return TEXT % name


class Television:
    """A television and a screen of it, with a runtime directory of their own.

    options: further words of the television's command line.
    """

    def __init__(self, options=()):
        self.directory = tempfile.mkdtemp(prefix="qs-")
        self.options = options
        self.environment = dict(os.environ, QELTV_RUNTIME_DIR=self.directory)
        self.start()
        self.screen = subprocess.Popen([BUILD / "screen/qeltvscreen", "--port", "0"],
                                       env=self.environment, stdout=subprocess.PIPE, text=True)
        self.address = self.screen.stdout.readline().strip()
        self.port = int(self.address.rstrip("/").rsplit(":", 1)[1])

    def start(self):
        self.process = subprocess.Popen(
            [BUILD / "qeltvd/qeltvd", "--state", self.directory + "/state", *self.options],
            env=self.environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.tool("service", "wait", "--timeout", "60")

    def die(self):
        self.process.kill()
        self.process.wait()

    def tool(self, *words):
        return subprocess.run([BUILD / "tools/qeltvctl", *words], env=self.environment,
                              check=True, capture_output=True, text=True, timeout=120).stdout

    def close(self):
        self.screen.send_signal(signal.SIGTERM)
        self.screen.wait()
        self.die()
        shutil.rmtree(self.directory, ignore_errors=True)


class Screen(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.tv = Television()
        cls.browser = browser.Browser(browser.find())
        channels = json.loads(cls.tv.tool("channel", "list", "--tv", "--free", "--json"))
        # Channels of one list, so that a number finds them.
        cls.channels = [one for one in channels if one["list"] == channels[0]["list"]]

    @classmethod
    def tearDownClass(cls):
        cls.browser.close()
        cls.tv.close()

    def setUp(self):
        self.tv.tool("tune", self.channels[0]["id"])
        self.page = self.browser.open(self.tv.address)
        self.page.wait(PLAYS, "the picture")
        self.page.wait("document.querySelector('#channel-list button')", "the channels")

    def tearDown(self):
        self.browser.drain()
        problems = self.page.problems
        self.page.close()
        self.assertEqual([], problems)

    def keep(self, name):
        directory = os.environ.get("QELTV_SCREENSHOTS")
        if directory:
            self.page.screenshot(os.path.join(directory, name))

    def test_loads_without_errors_and_shows_what_plays(self):
        self.assertEqual(self.channels[0]["name"], self.page.evaluate(NAME))
        self.assertEqual("", self.page.evaluate("document.getElementById('link').textContent"))
        self.page.wait("document.getElementById('picture-main').complete === false"
                       " || " + PLAYS)
        names = self.page.evaluate("[...document.querySelectorAll('button, input')]"
                                   ".filter(e => !e.textContent && !e.labels?.length"
                                   " && !e.ariaLabel).map(e => e.outerHTML)")
        self.assertEqual([], names, "every control has a name")
        size = self.page.evaluate(
            "Promise.all(['/', ...performance.getEntriesByType('resource').map(e => e.name)"
            ".filter(n => /\\.(js|css)$/.test(n))].map(n => fetch(n).then(r => r.text())))"
            ".then(all => all.reduce((sum, one) => sum + one.length, 0))")
        self.assertLess(size, 150 * 1024)
        self.assertGreater(size, 10 * 1024)

    def test_a_key_changes_the_channel_and_the_banner_shows_it(self):
        other = self.channels[1]["name"]
        begin = self.page.evaluate("performance.now()")
        self.page.key("ArrowUp")
        self.page.wait(f"{part('banner')}.includes({json.dumps(other)})")
        took = self.page.evaluate("performance.now()") - begin
        print(f"key to the new banner: {took:.0f} ms")
        self.page.wait(f"{NAME} === {json.dumps(other)} && {PLAYS}")
        self.page.wait(f"[...document.querySelectorAll('#calls li')].some(li =>"
                       " li.textContent.includes('key_handler(166) \u2192 0'))")
        self.keep("screen.webp")
        entries = "[...document.querySelectorAll('#notifications li')].map(li => li.textContent)"
        plays = self.page.wait(f"{entries}.find(text => /broadcast plays.*banner 1/.test(text))")
        self.assertRegex(plays, r"channel 0x[0-9a-f]{8}, path 0, error \w+, banner 1$")
        self.page.dark(True)
        self.page.resize(1280, 1180)
        self.keep("notifications.webp")
        self.page.resize(1280, 900)
        self.page.dark(False)
        self.assertIn("broadcast selecting", self.page.evaluate(f"{entries}.join()"))
        self.page.wait(f"{part('banner')} === ''", "the banner goes by itself")

    def test_digits_volume_and_mute_show(self):
        self.page.key("9")
        self.page.wait(f"{part('digits')} === '9_'")
        self.page.wait(f"{part('digits')} === ''", "the number is complete after a while")
        self.page.key("ArrowRight")
        before = int(self.page.wait(part("volume")))
        self.page.key("ArrowRight")
        self.page.wait(f"+{part('volume')} === {min(100, before + 1)}")
        self.page.key("m")
        self.page.wait(f"{part('mute')} === 'MUTE'")
        self.page.wait("[...document.querySelectorAll('#remote button')]"
                       ".find(b => b.textContent === 'Mute').ariaPressed === 'true'")
        self.page.key("m")
        self.page.wait(f"{part('mute')} === ''")

    def test_standby_no_signal_and_inputs_have_their_screens(self):
        self.page.key("p")
        self.page.wait(f"{part('message')}.includes('Standby')")
        self.page.key("p")
        self.page.wait(f"{part('message')} === '' && {PLAYS}")
        self.tv.tool("service", "reception", "0")
        self.page.wait(f"{part('message')}.includes('No signal')")
        self.tv.tool("service", "reception", "100")
        self.page.wait(f"{part('message')} === ''")
        self.page.key("s")
        self.page.wait(f"{part('source')} !== ''", "the name of the input")
        self.tv.tool("input", "select", "0")

    def test_a_locked_channel_wants_the_pin(self):
        self.tv.tool("channel", "set", self.channels[1]["id"], "--lock")
        self.page.key("ArrowUp")
        self.page.wait(f"{part('message')}.includes('Locked')")
        self.page.wait("!document.getElementById('pin').hidden")
        for digit in "9999":
            self.page.key(digit)
        self.assertEqual("9999", self.page.evaluate("document.activeElement.value"),
                         "the digits go to the dialog")
        self.page.key("Enter")
        self.page.wait(f"{part('pin')}.includes('not accepted')")
        for digit in "0000":
            self.page.key(digit)
        self.page.key("Enter")
        self.page.wait(f"{part('message')} === '' && document.getElementById('pin').hidden")
        calls = self.page.evaluate("document.getElementById('calls').textContent")
        self.assertIn("checkPWD(****)", calls)
        self.assertNotIn("9999", calls + self.page.evaluate(
            "document.getElementById('notifications').textContent"))
        self.tv.tool("channel", "set", self.channels[1]["id"], "--unlock")

    def test_the_guide_scrolls(self):
        self.page.click("#tab-guide")
        self.page.wait("document.querySelectorAll('#guide-rows .row').length >= 5")
        self.page.wait("document.querySelector('.programme.now')")
        self.keep("guide.webp")
        rows = self.page.evaluate("document.querySelectorAll('#guide-rows .row').length")
        if rows < len(json.loads(self.tv.tool("channel", "list", "--json"))):
            self.page.evaluate("document.getElementById('guide').scrollTop = 1e6")
            self.page.wait(f"document.querySelectorAll('#guide-rows .row').length > {rows}")
        first = self.page.evaluate("document.querySelector('#guide-hours span').textContent")
        self.page.click("#guide-later")
        self.page.wait(f"document.querySelector('#guide-hours span').textContent !== '{first}'"
                       " && document.querySelector('.programme')")
        self.page.click(".programme")
        self.page.wait("document.getElementById('programme').open")
        self.assertIn("to", self.page.evaluate(
            "document.getElementById('programme-when').textContent"))
        self.page.click("#programme-record")
        self.page.wait("document.getElementById('calls').textContent"
                       ".includes('set_schedule_record')")

    def test_the_channel_list_is_searched_and_selects(self):
        wanted = self.channels[3]["name"]
        self.page.evaluate("(box => { box.value = %s; box.dispatchEvent(new Event('input')); })"
                           "(document.getElementById('channel-search'))" % json.dumps(wanted))
        shown = self.page.evaluate("[...document.querySelectorAll('#channel-list button')]"
                                   ".map(b => b.textContent)")
        self.assertTrue(shown and all(wanted in one for one in shown), shown)
        number = int(self.channels[3]["id"], 16)
        self.page.click(f"[data-channel='{number}']")
        self.page.wait(f"{NAME} === {json.dumps(wanted)} && {PLAYS}")
        self.page.wait(f"document.querySelector(\"[data-channel='{number}']\")"
                       ".ariaCurrent === 'true'")

    def test_a_recording_shows_and_is_listed(self):
        self.page.key("r")
        self.page.wait(f"{part('recording')} === 'REC'")
        self.page.key("r")
        self.page.wait(f"{part('recording')} === ''")
        self.page.click("#tab-recordings")
        self.page.wait("document.querySelectorAll('#recording-list button').length === 1")
        self.page.click("#recording-list button")
        self.page.wait("document.getElementById('recording-list').textContent"
                       ".includes('Nothing')")

    def test_teletext_covers_the_picture_and_takes_page_numbers(self):
        self.page.key("t")
        self.page.wait(f"{part('teletext')}.includes('P100')")
        for digit in "101":
            self.page.key(digit)
        self.page.wait(f"{part('teletext')}.includes('P101')")
        # What the last digit asks for must not overtake the key after it.
        for key in "102t":
            self.page.key(key)
        self.page.wait(f"{part('teletext')} === ''")
        time.sleep(1)
        self.assertTrue(self.page.evaluate(f"{part('teletext')} === ''"))

    def test_an_alert_a_scan_and_a_second_picture_show(self):
        self.tv.tool("alert", "raise", "warning", "--area", "7")
        self.page.wait(f"{part('alert')}.includes('Area 7')")
        self.page.wait("![...document.querySelectorAll('#remote button')].at(-1).hidden")
        self.tv.tool("alert", "end")
        self.page.wait(f"{part('alert')} === ''")

        self.page.key("v")
        place = self.page.wait("(image => !image.hidden && image.naturalWidth && image.style.left)"
                               "(document.getElementById('picture-sub'))")
        self.assertEqual("65%", place)
        self.page.key("v")
        self.page.wait("document.getElementById('picture-main').style.width === '50%'")
        self.page.key("v")
        self.page.wait("document.getElementById('picture-sub').hidden")

        scan = "[...document.querySelectorAll('#remote button')].find(b => b.textContent === 'Scan')"
        self.page.evaluate(f"{scan}.click()")
        self.page.wait(f"{part('scan')}.includes('%')")
        self.page.evaluate(f"{scan}.click()")
        self.page.wait(f"{part('scan')} === ''")

    def test_two_browsers_show_the_same(self):
        other = browser.Browser(browser.find())
        try:
            second = other.open(self.tv.address)
            second.wait(PLAYS)
            self.page.key("ArrowUp")
            for page in (self.page, second):
                page.wait(f"{part('banner')}.includes({json.dumps(self.channels[1]['name'])})")
            second.key("m")
            for page in (self.page, second):
                page.wait(f"{part('mute')} === 'MUTE'")
            second.key("m")
            self.page.wait(f"{part('mute')} === ''")
            other.drain()
            self.assertEqual([], second.problems)
        finally:
            other.close()

    def test_the_page_recovers_from_a_death_of_the_television(self):
        self.tv.die()
        self.page.wait(f"{part('message')}.includes('does not answer')")
        self.tv.start()
        self.page.wait(f"{part('message')} === '' && {PLAYS}", "the picture is back")
        self.page.wait("document.getElementById('link').textContent === ''")
        self.page.key("ArrowUp")
        self.page.wait(f"{part('banner')}.includes({json.dumps(self.channels[1]['name'])})")
        self.page.wait("document.getElementById('notifications').textContent.includes('plays')")
        self.assertGreater(self.page.evaluate(
            "fetch('/channels').then(r => r.json()).then(all => all.length)"), 1,
            "the channel list is reached too")
        # The stream of events has broken off, which the console shows.
        self.browser.drain()
        self.page.problems = [one for one in self.page.problems if "ERR_" not in one]

    def test_a_phone_and_a_dark_room(self):
        self.page.resize(390, 800)
        self.page.wait("document.documentElement.scrollWidth <= 390", "nothing is cut off")
        for dark in (False, True):
            self.page.dark(dark)
            low = self.page.evaluate("""(() => {
              const light = (colour) => {
                const [r, g, b] = colour.match(/[\\d.]+/g).map((v) => (v /= 255,
                  v <= .03928 ? v / 12.92 : ((v + .055) / 1.055) ** 2.4));
                return .2126 * r + .7152 * g + .0722 * b;
              };
              const below = (e) => {
                for (; e; e = e.parentElement) {
                  const colour = getComputedStyle(e).backgroundColor;
                  if (!/, 0\\)$/.test(colour)) return colour;
                }
                return 'rgb(255, 255, 255)';
              };
              return [...document.querySelectorAll('h1, h2, button, li, label, .note')]
                .filter((e) => e.offsetParent).map((e) => {
                  const [a, b] = [light(getComputedStyle(e).color), light(below(e))];
                  return [(Math.max(a, b) + .05) / (Math.min(a, b) + .05), e.outerHTML];
                }).filter(([contrast]) => contrast < 4.5);
            })()""")
            self.assertEqual([], low)

    def test_hidden_pages_ask_for_no_picture(self):
        self.page.evaluate("Object.defineProperty(document, 'hidden', {value: true,"
                           " configurable: true});"
                           "document.dispatchEvent(new Event('visibilitychange'))")
        self.page.wait("!document.getElementById('picture-main').hasAttribute('src')")

    def test_the_tool_draws_what_the_page_shows(self):
        self.page.key("i")
        self.page.wait(f"{part('banner')} !== ''")
        path = os.path.join(self.tv.directory, "shot.png")
        self.tv.tool("screenshot", path, "--osd")
        with open(path, "rb") as file:
            data = file.read()
        self.assertEqual(b"\x89PNG", data[:4])
        self.assertEqual((1280, 720), struct.unpack(">II", data[16:24]))
        line = "document.querySelector('[data-part=banner] rect:nth-of-type(2)')"
        x, y, fill = (self.page.evaluate(f"{line}.getAttribute('{name}')")
                      for name in ("x", "y", "fill"))
        # Elsewhere, because the page allows itself no such picture.
        empty = self.browser.open("about:blank")
        at = """(async (x, y) => {
          const image = new Image();
          image.src = "data:image/png;base64,%s";
          await image.decode();
          const canvas = Object.assign(document.createElement('canvas'),
            { width: 1280, height: 720 });
          const context = canvas.getContext('2d');
          context.drawImage(image, 0, 0);
          return [...context.getImageData(x, y, 1, 1).data.slice(0, 3)];
        })(%d, %d)"""
        data = base64.b64encode(data).decode()
        self.assertEqual([191, 191, 191], empty.evaluate(at % (data, 20, 40)), "the colour bars")
        colour = empty.evaluate(at % (data, float(x) + 3, float(y) + 10))
        self.assertEqual(fill[:7], "#%02x%02x%02x" % tuple(colour), "the edge of the banner")
        empty.close()


class Streamed(unittest.TestCase):
    """A service that the television receives as a transport stream."""

    @classmethod
    def setUpClass(cls):
        cls.directory = tempfile.TemporaryDirectory()
        region = cls.directory.name + "/region"
        subprocess.run([BUILD / "tests/support/qeltv-compose", cls.directory.name + "/stream.ts",
                        "--region", region], check=True, timeout=120)
        cls.tv = Television(["--region", region])
        cls.browser = browser.Browser(browser.find())

    @classmethod
    def tearDownClass(cls):
        cls.browser.close()
        cls.tv.close()
        cls.directory.cleanup()

    def test_its_banner_and_its_guide_are_those_of_the_broadcast(self):
        found = json.loads(self.tv.tool("channel", "find", "stenfunk", "--json"))
        self.assertEqual(["K\u00fcstenfunk TV"], [one["name"] for one in found])
        self.tv.tool("tune", found[0]["id"])
        page = self.browser.open(self.tv.address)
        page.wait(PLAYS, "the picture")
        page.wait(f"{NAME} === {json.dumps(found[0]['name'])}")
        page.key("i")
        banner = page.wait(f"{part('banner')}.includes('Nachrichten im Caf') && {part('banner')}")
        for text in (found[0]["name"], "107", "Film"):
            self.assertIn(text, banner)
        if os.environ.get("QELTV_SCREENSHOTS"):
            # The average of the bit rates has settled, and the banner is still there.
            page.screenshot(os.path.join(os.environ["QELTV_SCREENSHOTS"], "stream.webp"))
        page.wait(f"{part('banner')} === ''")
        self.compare(page)
        self.browser.drain()
        self.assertEqual([], page.problems)
        page.close()

    def compare(self, page):
        """The lower part of the picture, with the facts, is that of a screenshot."""
        width = page.evaluate("document.getElementById('picture-main').naturalWidth")
        lines = """(image => {
          const canvas = Object.assign(document.createElement('canvas'),
            { width: 640, height: 360 });
          const context = canvas.getContext('2d');
          context.drawImage(image, 0, 0, 640, 360);
          const data = context.getImageData(0, 265, 640, 80).data;
          return [...data.filter((_, i) => i % 4 === 1)];
        })"""
        path = os.path.join(self.tv.directory, "shot.jpg")
        self.tv.tool("screenshot", path, "--width", str(width))
        with open(path, "rb") as file:
            data = base64.b64encode(file.read()).decode()
        shown = page.evaluate(lines + "(document.getElementById('picture-main'))")
        empty = self.browser.open("about:blank")
        drawn = empty.evaluate("""(async () => {
          const image = new Image();
          image.src = "data:image/jpeg;base64,%s";
          await image.decode();
          return %s(image);
        })()""" % (data, lines))
        empty.close()
        self.assertEqual(len(shown), len(drawn))
        # A digit of a bit rate may differ.
        other = sum(abs(a - b) > 60 for a, b in zip(shown, drawn))
        self.assertLess(other, len(shown) / 200)
        self.assertGreater(max(shown) - min(shown), 100, "there is a text")


class Start(unittest.TestCase):
    """What the program does with its options."""

    def run_with(self, path):
        """Starts it with --open and a PATH, until it has printed its address."""
        directory = tempfile.mkdtemp(prefix="qs-")
        self.addCleanup(shutil.rmtree, directory, ignore_errors=True)
        environment = dict(os.environ, QELTV_RUNTIME_DIR=directory, PATH=path)
        process = subprocess.Popen([BUILD / "screen/qeltvscreen", "--port", "0", "--open"],
                                   env=environment, stdout=subprocess.PIPE,
                                   stderr=subprocess.PIPE, text=True)
        self.addCleanup(process.stderr.close)
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.wait)
        self.addCleanup(process.terminate)
        return process, process.stdout.readline().strip()

    def test_open_has_the_desktop_open_the_page(self):
        with tempfile.TemporaryDirectory() as directory:
            opened = pathlib.Path(directory, "opened")
            fake = pathlib.Path(directory, "xdg-open")
            fake.write_text(f'#!/bin/sh\nprintf "%s\\n" "$#" "$@" >{opened}.new\n'
                            f"/bin/mv {opened}.new {opened}\n")
            fake.chmod(0o755)
            _, address = self.run_with(directory)
            self.assertRegex(address, r"^http://127\.0\.0\.1:\d+/$")
            deadline = time.monotonic() + browser.PATIENCE
            while not opened.exists():
                self.assertLess(time.monotonic(), deadline, "xdg-open was not started")
                time.sleep(0.05)
            self.assertEqual(["1", address], opened.read_text().split("\n")[:-1])

    def test_open_without_a_desktop_says_what_to_do_and_serves(self):
        with tempfile.TemporaryDirectory() as directory:
            process, address = self.run_with(directory)
            line = process.stderr.readline()
            self.assertIn("xdg-open", line)
            self.assertIn(address, line)
            port = int(address.rstrip("/").rsplit(":", 1)[1])
            connection = http.client.HTTPConnection("127.0.0.1", port, timeout=30)
            connection.request("GET", "/")
            self.assertEqual(200, connection.getresponse().status)
            connection.close()


class Server(unittest.TestCase):
    """What others may send to the port."""

    @classmethod
    def setUpClass(cls):
        cls.tv = Television()

    @classmethod
    def tearDownClass(cls):
        cls.tv.close()

    def ask(self, method, path, headers=None, body=None):
        connection = http.client.HTTPConnection("127.0.0.1", self.tv.port, timeout=30)
        headers = dict({"Host": f"127.0.0.1:{self.tv.port}"}, **(headers or {}))
        connection.request(method, path, body=body, headers=headers)
        answer = connection.getresponse()
        text = answer.read()
        connection.close()
        return answer, text

    def status(self, *arguments, **named):
        return self.ask(*arguments, **named)[0].status

    def post(self, body, headers=None):
        own = {"Origin": f"http://127.0.0.1:{self.tv.port}", "Content-Type": "application/json"}
        return self.status("POST", "/do", headers=dict(own, **(headers or {})), body=body)

    def test_only_its_own_page_is_answered(self):
        port = self.tv.port
        self.assertEqual(200, self.status("GET", "/"))
        self.assertEqual(200, self.status("GET", "/", {"Host": f"localhost:{port}"}))
        for host in ("evil.example", f"evil.example:{port}", "127.0.0.1", f"127.0.0.1:{port + 1}"):
            self.assertEqual(403, self.status("GET", "/channels", {"Host": host}), host)
        for origin in ("http://evil.example", "null", f"https://127.0.0.1:{port}",
                       f"http://localhost:{port}"):
            self.assertEqual(403, self.status("GET", "/channels", {"Origin": origin}), origin)
            self.assertEqual(403, self.post("{}", {"Origin": origin}), origin)
        for site in ("cross-site", "same-site"):
            self.assertEqual(403, self.status("GET", "/picture/main", {"Sec-Fetch-Site": site}))
        self.assertEqual(403, self.status("POST", "/do", body='{"do": "key", "key": 26}'),
                         "a request without an origin")
        self.assertEqual(415, self.post('{"do": "key", "key": 26}',
                                        {"Content-Type": "text/plain"}))

    def test_listens_on_the_loopback_alone(self):
        listening = []
        for table in ("/proc/net/tcp", "/proc/net/tcp6"):
            with open(table) as file:
                for line in file.readlines()[1:]:
                    address, state = line.split()[1], line.split()[3]
                    if state == "0A" and int(address.split(":")[1], 16) == self.tv.port:
                        listening.append(address.split(":")[0])
        self.assertEqual(["0100007F"], listening)

    def test_headers_keep_others_out(self):
        for path in ("/", "/app.js", "/channels", "/nothing"):
            answer, _ = self.ask("GET", path)
            policy = answer.getheader("Content-Security-Policy")
            self.assertIn("default-src 'none'", policy, path)
            self.assertIn("frame-ancestors 'none'", policy, path)
            self.assertEqual("nosniff", answer.getheader("X-Content-Type-Options"))
            self.assertEqual("same-origin", answer.getheader("Cross-Origin-Resource-Policy"))

    def test_paths_are_no_files(self):
        for path in ("/../../../etc/passwd", "/%2e%2e/%2e%2e/etc/passwd", "/page/app.js",
                     "//etc/passwd", "/app.js/", "/index.html"):
            self.assertEqual(404, self.status("GET", path), path)

    def test_bad_requests_are_refused(self):
        good = '{"do": "key", "key": 24}'
        self.assertEqual(200, self.post(good))
        for body in ("", "[]", "{", '{"do": 1}', '{"do": "nothing"}', '{"do": "key"}',
                     '{"do": "key", "key": "24"}', '{"do": "key", "key": 1e300}',
                     '{"do": "key", "key": 18446744073709551615}',
                     '{"do": "select", "channel": -1, "path": 0}',
                     '{"do": "select", "channel": 1, "path": 2}',
                     '{"do": "teletext", "page": "zzz"}', '{"do": "teletext", "page": "900"}',
                     '{"do": "pin", "pin": "' + "1" * 17 + '"}', "[" * 2000):
            self.assertEqual(400, self.post(body), body[:60])
        self.assertEqual(413, self.post('{"do": "' + "x" * 5000 + '"}'))
        for query in ("", "?channels=1&from=0&to=86401", "?channels=x&from=0&to=1",
                      "?channels=1&from=5&to=5", "?channels=1&from=-9&to=1",
                      "?from=0&to=1&channels=" + ",".join(["1"] * 65)):
            self.assertEqual(400, self.status("GET", "/guide" + query), query[:40])
        self.assertEqual(400, self.status("GET", "/programme?channel=1"))
        self.assertEqual(b"null", self.ask("GET", "/programme?channel=1&event=1")[1])

    def test_connections_that_say_nothing_do_not_keep_others_out(self):
        silent = []
        try:
            for _ in range(40):
                silent.append(socket.create_connection(("127.0.0.1", self.tv.port)))
            self.assertEqual(200, self.status("GET", "/"))
        finally:
            for one in silent:
                one.close()

    def test_streams_have_a_limit_and_end_with_their_reader(self):
        request = (f"GET /events HTTP/1.1\r\nHost: 127.0.0.1:{self.tv.port}\r\n\r\n").encode()
        readers = []
        try:
            for _ in range(24):
                reader = socket.create_connection(("127.0.0.1", self.tv.port), timeout=30)
                reader.sendall(request)
                self.assertIn(b"200", reader.recv(12))
                readers.append(reader)
            self.assertEqual(503, self.status("GET", "/events"))
            self.assertEqual(200, self.status("GET", "/"))
        finally:
            for one in readers:
                one.close()
        deadline = time.monotonic() + browser.PATIENCE
        while self.stream() != 200:
            self.assertLess(time.monotonic(), deadline, "the places are free again")
            time.sleep(0.1)

    def stream(self):
        """The status of a picture, of which the rest is not read."""
        with socket.create_connection(("127.0.0.1", self.tv.port), timeout=30) as reader:
            reader.sendall((f"GET /picture/main HTTP/1.1\r\nHost: 127.0.0.1:{self.tv.port}"
                            "\r\n\r\n").encode())
            return int(reader.recv(64).split()[1])

    def test_a_second_screen_on_the_port_is_refused(self):
        done = subprocess.run([BUILD / "screen/qeltvscreen", "--port", str(self.tv.port)],
                              env=self.tv.environment, capture_output=True, text=True, timeout=60)
        self.assertEqual(1, done.returncode)
        self.assertIn("--port", done.stderr)


class Counted(unittest.TextTestResult):
    """Keeps what scripts/count-tests reads."""

    def __init__(self, *arguments):
        super().__init__(*arguments)
        self.cases = []

    def stopTest(self, test):
        super().stopTest(test)
        failed = any(test is one or getattr(one, "test_case", None) is test
                     for one, _ in self.failures + self.errors)
        case = {"name": test.id(), "result": "COMPLETED"}
        if failed:
            case["failures"] = [{"failure": "failed"}]
        self.cases.append(case)


def main():
    if not browser.find():
        reason = "no browser: install chromium-headless-shell or chromium"
        if os.environ.get("CI"):
            sys.exit(f"{reason}; these tests are not skipped where CI is set")
        print(f"skipped, {reason}")
        sys.exit(SKIPPED)
    if not BUILD:
        sys.exit(__doc__)
    loader = unittest.TestLoader()
    here = sys.modules[__name__]
    suite = loader.loadTestsFromNames(sys.argv[2:], here) if sys.argv[2:] else \
        loader.loadTestsFromModule(here)
    result = unittest.TextTestRunner(verbosity=2, resultclass=Counted, stream=sys.stdout).run(suite)
    output = os.environ.get("GTEST_OUTPUT", "")
    if output.startswith("json:"):
        path = pathlib.Path(output[len("json:"):])
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(json.dumps({"testsuites": [{"testsuite": result.cases}]}))
    sys.exit(not result.wasSuccessful())


if __name__ == "__main__":
    main()
