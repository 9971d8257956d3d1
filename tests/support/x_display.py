# SPDX-License-Identifier: MIT
"""A real X server of one's own (Xvfb), and a user in front of it: clicks and keys from outside
the programs (xdotool), through the server's own input."""

import os
import subprocess
import time

SECONDS = 30  # for whatever is waited for


def wait_for(what, condition):
    """Asks until the condition gives something true, which is returned."""
    deadline = time.monotonic() + SECONDS
    while True:
        if answer := condition():
            return answer
        if time.monotonic() > deadline:
            raise AssertionError(f"waited {SECONDS} s for {what}")
        time.sleep(0.02)


class Window:
    def __init__(self, display, number):
        self._display = display
        self.number = number

    def geometry(self):
        """x, y, width, height on the screen, in pixels."""
        text = self._display.tool("getwindowgeometry", "--shell", self.number)
        values = dict(line.split("=") for line in text.split())
        return tuple(int(values[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))

    def title(self):
        return self._display.tool("getwindowname", self.number).rstrip("\n")

    def is_shown(self):
        return self.number in self._display.window_numbers(".*")

    def to_front(self):
        self._display.tool("windowraise", self.number, "windowfocus", "--sync", self.number)

    def move(self, x, y):
        self._display.tool("windowmove", self.number, x, y)

    def click(self, x, y):
        """At pixels from the window's upper left corner."""
        left, top, _, _ = self.geometry()
        self._display.tool("mousemove", left + int(x), top + int(y), "click", 1)

    def keys(self, *names):
        """Pressed one after the other: "Tab", "alt+l", "ctrl+Tab"."""
        self.to_front()
        self._display.tool("key", *names)

    def type(self, text):
        self.to_front()
        self._display.tool("type", "--delay", "2", text)


class Display:
    """Xvfb, for as long as the with statement lasts."""

    def __init__(self, width=1600, height=1200):
        self._size = f"{width}x{height}x24"

    def __enter__(self):
        read, write = os.pipe()
        self._server = subprocess.Popen(
            ["Xvfb", "-displayfd", str(write), "-screen", "0", self._size, "-nolisten", "tcp",
             "-noreset"],
            pass_fds=[write], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(write)
        with os.fdopen(read) as answer:
            number = answer.readline().strip()
        if not number:
            raise RuntimeError("Xvfb did not start")
        self.environment = {"DISPLAY": f":{number}"}
        return self

    def __exit__(self, *_):
        self._server.terminate()
        self._server.wait()

    def tool(self, *arguments):
        run = subprocess.run(["xdotool", *map(str, arguments)], capture_output=True, text=True,
                             timeout=SECONDS, env={**os.environ, **self.environment})
        if run.returncode:
            raise AssertionError(f"xdotool {arguments}: {run.stderr}")
        return run.stdout

    def window_numbers(self, title):
        """Of the shown windows whose title is that regular expression."""
        run = subprocess.run(["xdotool", "search", "--onlyvisible", "--name", f"^{title}$"],
                             capture_output=True, text=True, timeout=SECONDS,
                             env={**os.environ, **self.environment})
        return [int(line) for line in run.stdout.split()]

    def window(self, title):
        """The shown window of that title; waits for it."""
        numbers = wait_for(f"the window {title}", lambda: self.window_numbers(title))
        return Window(self, numbers[0])

    def capture(self, window, path):
        """The window as it is on the screen, as a PNG."""
        subprocess.run(["import", "-window", str(window.number), str(path)], check=True,
                       env={**os.environ, **self.environment})
