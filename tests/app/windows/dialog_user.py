# SPDX-License-Identifier: MIT
"""A workstation with the sample installation, and somebody who works at its windows."""

import contextlib
import os
import pathlib
import re
import shutil
import signal
import subprocess
import time

from x_display import wait_for

SAMPLE = pathlib.Path(__file__).resolve().parents[3] / "examples/installation"

# The main window's size, and where its controls' middles are, in dialog units; the connection
# window's likewise.
DIALOG_SIZE = (343, 261)
LOAD_ALL = (83, 14)
CONNECTION = (82, 247)
CLOSE = (311, 247)
# A page begins below the tabs; its buttons are large enough for the font's share in that.
PAGE = (9, 38)
SEND_GS, SEND_CATALOGUES, SEND_NCF, SEND_FOC = ((61, y) for y in (33, 51, 70, 89))

CONNECTION_SIZE = (360, 329)
CONNECTION_FILE, CONNECTION_TEST, CONNECTION_OK = (192, 54), (35, 212), (265, 315)

TITLE = {"en": "Network repository configuration", "hr": "Konfiguracija mrežnog repozitorija"}


def pixels(window, size, units):
    """From the window's corner, for a place in dialog units in a window of that size."""
    _, _, width, height = window.geometry()
    return units[0] * width / size[0], units[1] * height / size[1]


class Workstation:
    """With user folders and an installation folder of its own."""

    def __init__(self, build, folder, has_sample=False, language="en"):
        self._build = pathlib.Path(build).resolve()
        self.folder = pathlib.Path(folder)
        self.support = self.folder / "data/StudioZEB/support"
        self.install = self.folder / "install"
        self.log = self.folder / "state/StudioZEB/workspace.log"
        self.language = language
        self.install.mkdir(parents=True)
        for module in (self._build / "lib/zebx").iterdir():
            (self.install / module.name).symlink_to(module)
        self.environment = {name: value for name, value in os.environ.items()
                            if not name.startswith(("ZEBX_", "XDG_", "QT_", "WAYLAND_", "LC_"))}
        self.environment.update(
            XDG_CONFIG_HOME=str(self.folder / "config"), XDG_DATA_HOME=str(self.folder / "data"),
            XDG_STATE_HOME=str(self.folder / "state"), XDG_CACHE_HOME=str(self.folder / "cache"),
            LANG="C.UTF-8", ZEBX_INSTALL=str(self.install), ZEBX_LANGUAGE=language)
        # The leak check itself crashes at the end of a process in which Qt's thread for X11 still
        # runs beside modules that were loaded late; the offscreen tests look for leaks.
        self.environment["ASAN_OPTIONS"] = ":".join(
            filter(None, [os.environ.get("ASAN_OPTIONS"), "detect_leaks=0"]))
        self.zebx("init")
        if has_sample:
            shutil.copytree(SAMPLE / "support", self.support, dirs_exist_ok=True)
            shutil.copytree(SAMPLE / "install", self.install, dirs_exist_ok=True)

    def zebx(self, *arguments):
        run = subprocess.run([self._build / "bin/zebx", *map(str, arguments)], text=True,
                             capture_output=True, env=self.environment, timeout=300)
        if run.returncode:
            raise AssertionError(f"zebx {arguments} ended with {run.returncode}: {run.stderr}")
        return run.stdout

    def lines(self):
        """Of the workspace log, without their times: (kind, text)."""
        if not self.log.exists():
            return []
        return [tuple(line.split("\t")[1:]) for line in self.log.read_text("utf-8").splitlines()]

    def wait_for_line(self, text, after=0):
        """Until a line behind so many fits the regular expression from its begin."""
        wait_for(f"the line {text!r} in {self.log}",
                 lambda: any(re.match(text, line[1]) for line in self.lines()[after:]))

    def wait_until_quiet(self):
        """Until nothing was written to the log for a while: input is dropped before."""
        size = -1
        while size != (size := len(self.lines())):
            time.sleep(0.3)

    def files(self):
        """What a load brings: every file's bytes by its name below the two folders."""
        roots = [self.support, self.install / "assemblyElements"]
        return {str(path.relative_to(self.folder)): path.read_bytes()
                for root in roots for path in root.rglob("*") if path.is_file()}

    @contextlib.contextmanager
    def dialog(self, display, verb="dialog", typed="", expected=0, **variables):
        """zebx dialog, until it ends by itself: whoever opens it closes it.  Another verb reads
        what is typed and opens the dialog, too."""
        output = self.folder / "output"
        with open(output, "w", encoding="utf-8") as file:
            program = subprocess.Popen(
                [self._build / "bin/zebx", verb], text=True, stdin=subprocess.PIPE, stdout=file,
                stderr=subprocess.STDOUT,
                env={**self.environment, **display.environment, **variables})
        program.stdin.write(typed)
        program.stdin.close()
        try:
            yield DialogUser(display, program, TITLE[self.language])
            if program.wait(timeout=60) != expected:
                raise AssertionError(f"zebx dialog ended with {program.returncode}")
        finally:
            if program.poll() is None:
                program.kill()
                program.wait()
            print(output.read_text("utf-8")[-2000:])


class DialogUser:
    """Who sees the open dialog."""

    def __init__(self, display, program, title):
        self.display = display
        self._program = program
        self.window = display.window(title)

    def is_open(self):
        return self._program.poll() is None

    def interrupt(self):
        self._program.send_signal(signal.SIGINT)

    def click(self, units):
        self.window.to_front()
        self.window.click(*pixels(self.window, DIALOG_SIZE, units))

    def click_on_page(self, units):
        self.click((PAGE[0] + units[0], PAGE[1] + units[1]))

    def keys(self, *names):
        self.window.keys(*names)
