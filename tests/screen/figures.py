#!/usr/bin/env python3
"""Measures qeltvscreen without a browser: what a picture costs, and how soon a key shows.

usage: figures.py BUILD_DIRECTORY

A build with the decoder (build/decoder) also measures streams that the television receives; they
are composed first.
"""
import http.client
import json
import os
import pathlib
import socket
import statistics
import subprocess
import sys
import tempfile
import threading
import time

import screen_test

SECONDS = 10
KEYS = 30


def server_of(parent):
    """The process that serves, of the two."""
    children = pathlib.Path(f"/proc/{parent}/task/{parent}/children").read_text().split()
    return int(children[0])


def cpu(pid):
    fields = pathlib.Path(f"/proc/{pid}/stat").read_text().rsplit(")", 1)[1].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def memory(pid):
    for line in pathlib.Path(f"/proc/{pid}/status").read_text().splitlines():
        if line.startswith("VmRSS"):
            return int(line.split()[1]) / 1024


class Stream:
    """Reads a stream on a thread of its own."""

    def __init__(self, port, path, receive=lambda data: None):
        self.socket = socket.create_connection(("127.0.0.1", port))
        self.socket.sendall(f"GET {path} HTTP/1.1\r\nHost: 127.0.0.1:{port}\r\n\r\n".encode())
        self.size = self.parts = 0
        self.receive = receive
        self.thread = threading.Thread(target=self.run, daemon=True)
        self.thread.start()

    def run(self):
        while data := self.socket.recv(1 << 16):
            self.size += len(data)
            self.parts += data.count(b"Content-Length")
            self.receive(data)

    def close(self):
        self.socket.shutdown(socket.SHUT_RDWR)
        self.thread.join()
        self.socket.close()


def share(pid):
    before, begin = cpu(pid), time.monotonic()
    time.sleep(SECONDS)
    return 100 * (cpu(pid) - before) / (time.monotonic() - begin)


class Streams:
    """Streams with pictures, as many as the build can decode."""

    FORMATS = {"576i": 842, "1080i": 850}

    def __init__(self):
        self.directory = tempfile.TemporaryDirectory()
        self.formats, self.options = {}, []
        composer = screen_test.BUILD / "tests/screen/compose_video"
        if not composer.exists():
            return
        self.formats = self.FORMATS
        table = ""
        for name, frequency in self.formats.items():
            file = f"{self.directory.name}/{name}.ts"
            subprocess.run([composer, name, file], check=True)
            table += f"[A]\nDELIVERY_SYSTEM = DVBT\nFREQUENCY = {frequency}000000\nSTREAM = {file}\n"
        region = pathlib.Path(self.directory.name, "region")
        region.write_text(table)
        self.options = ["--region", region]


def main():
    screen_test.BUILD = pathlib.Path(sys.argv[1])
    streams = Streams()
    tv = screen_test.Television(streams.options)
    try:
        pid = server_of(tv.screen.pid)
        print(f"nobody looks        {share(pid):5.1f} % of a core, {memory(pid):.0f} MiB")
        events = Stream(tv.port, "/events")
        print(f"a page, no picture  {share(pid):5.1f} %")
        for width in (480, 960, 1920):
            picture = Stream(tv.port, f"/picture/main?width={width}")
            used = share(pid)
            print(f"picture of {width:4}     {used:5.1f} %, {memory(pid):.0f} MiB, "
                  f"{picture.size / SECONDS / 1024:.0f} KiB/s")
            picture.close()
        channels = json.loads(tv.tool("channel", "list", "--tv", "--json"))
        for name, frequency in streams.formats.items():
            channel = next(one for one in channels
                           if one["multiplex"]["frequency_hz"] == frequency * 1000000)
            tv.tool("tune", channel["id"])
            time.sleep(2)
            before = share(tv.process.pid)
            picture = Stream(tv.port, "/picture/main?width=960")
            time.sleep(2)
            count = picture.parts
            used = share(pid)
            print(f"{name:5} decoded       {used:5.1f} %, {memory(pid):.0f} MiB, "
                  f"{(picture.parts - count) / SECONDS:.1f} pictures a second; "
                  f"the television {before:.1f} % without a reader")
            picture.close()
        events.close()

        shown = threading.Event()
        wanted = [b""]

        def look(data):
            if wanted[0] and b'"banner"' in data and wanted[0] in data:
                shown.set()

        events = Stream(tv.port, "/events", look)
        channels = json.loads(tv.tool("channel", "list", "--json"))
        tv.tool("tune", channels[0]["id"])
        names = [one["name"] for one in channels]
        connection = http.client.HTTPConnection("127.0.0.1", tv.port)
        times = []
        for i in range(KEYS):
            shown.clear()
            wanted[0] = names[i + 1].encode()
            begin = time.monotonic()
            connection.request("POST", "/do", body='{"do": "key", "key": 166}', headers={
                "Origin": f"http://127.0.0.1:{tv.port}", "Content-Type": "application/json"})
            connection.getresponse().read()
            if shown.wait(10):
                times.append(1000 * (time.monotonic() - begin))
            time.sleep(0.4)
        print(f"key to banner       median {statistics.median(times):.1f} ms, "
              f"largest {max(times):.1f} ms of {len(times)}")
        page = sum(file.stat().st_size for file in
                   (pathlib.Path(__file__).parents[2] / "screen/page").iterdir())
        print(f"page                {page / 1024:.0f} KiB")
    finally:
        tv.close()


main()
