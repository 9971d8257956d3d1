# SPDX-License-Identifier: MIT
"""What scripts/bench's parts share: building, timing, data, and their sections of
docs/performance.md."""

import datetime
import os
import pathlib
import subprocess
import sys
import tempfile
import time

TOP = pathlib.Path(__file__).resolve().parent.parent
BUILD = TOP / "build/bench"
DOCUMENT = TOP / "docs/performance.md"
SERVER_MARK = "<!-- scripts/bench --server -->\n"  # what follows is that command's
RUNS = 5


def build():
    subprocess.run([TOP / "scripts/install-dependencies", "bench"], check=True)
    subprocess.run(["cmake", "-S", TOP, "-B", BUILD, "-G", "Ninja", "-DZEBX_BENCH=ON",
                    "-DZEBX_TESTS=OFF", "-DCMAKE_BUILD_TYPE=RelWithDebInfo"],
                   check=True, stdout=subprocess.DEVNULL)
    subprocess.run(["cmake", "--build", BUILD], check=True, stdout=subprocess.DEVNULL)


def timed(command, environment):
    """Seconds and the highest memory in MB of one command."""
    with tempfile.TemporaryFile() as messages:
        start = time.perf_counter()
        process = subprocess.Popen([str(word) for word in command], env=environment,
                                   stdout=subprocess.DEVNULL, stderr=messages)
        _, status, usage = os.wait4(process.pid, 0)
        seconds = time.perf_counter() - start
        if os.waitstatus_to_exitcode(status) != 0:
            messages.seek(0)
            sys.exit(f"failed: {' '.join(str(word) for word in command)}\n"
                     f"{messages.read().decode(errors='replace')[-2000:]}")
    return seconds, usage.ru_maxrss / 1024


def environment_of(folder):
    """User folders of their own, and this build's installation."""
    environment = {**os.environ, "ZEBX_LANGUAGE": "en", "ZEBX_INSTALL": str(BUILD / "lib/zebx")}
    for name in ("CONFIG", "DATA", "STATE", "CACHE"):
        environment[f"XDG_{name}_HOME"] = str(folder / name.lower())
    return environment


def make_drawings(folder, count, size):
    folder.mkdir()
    for i in range(count):
        (folder / f"N{i:06d}.dwg").write_bytes(os.urandom(size))
    # Read once, so that the first reader is not the one who pays.
    for path in folder.iterdir():
        path.read_bytes()


def warm_up(work):
    """Touches memory and disk, of which the first use costs more."""
    block = bytes(1 << 24)
    with open(work / "warm", "wb") as file:
        for _ in range(256):
            file.write(block)
    os.unlink(work / "warm")


def of_processor():
    for line in pathlib.Path("/proc/cpuinfo").read_text().splitlines():
        if line.startswith("model name"):
            return f"{line.split(':')[1].strip()}, {os.cpu_count()} logical processors"
    return "unknown"


def circumstances():
    commit = subprocess.run(["git", "-C", TOP, "describe", "--always", "--dirty"],
                            capture_output=True, text=True).stdout.strip()
    return (f"- date: {datetime.date.today().isoformat()}\n"
            f"- processor: {of_processor()}\n"
            f"- commit: {commit}\n")


def table(title, rows):
    lines = ["| " + " | ".join(title) + " |", "|---" + "|---:" * (len(title) - 1) + "|"]
    return "\n".join(lines + ["| " + " | ".join(row) + " |" for row in rows]) + "\n"


def write_section(text, of_server):
    """Puts the text into the document in place of what the same command wrote before."""
    whole = DOCUMENT.read_text(encoding="utf-8") if DOCUMENT.exists() else ""
    own, _, server = whole.partition(SERVER_MARK)
    own, server = (own, text) if of_server else (text, server)
    mark = f"{SERVER_MARK}{server}" if server else ""
    DOCUMENT.write_text(f"{own.rstrip()}\n\n{mark}".rstrip() + "\n", encoding="utf-8")
