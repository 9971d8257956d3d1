# SPDX-License-Identifier: MIT
"""Private servers on 127.0.0.1, each in a folder of its own and gone at the end: PostgreSQL,
the ones it is measured beside, and the line that delays."""

import json
import os
import secrets
import shutil
import signal
import socket
import subprocess
import time

import measuring
import private_postgres
from private_postgres import free_port

DATABASE = "gis"
OWNER = "owner"
# What an administrator would set for such a server; all else is as Debian's packages have it,
# fsync and synchronous_commit among them.
SETTINGS = {"shared_buffers": "512MB", "max_wal_size": "4GB", "max_connections": "300"}


def wait_for_port(port, process):
    deadline = time.monotonic() + 30
    while True:
        try:
            socket.create_connection(("127.0.0.1", port)).close()
            return
        except ConnectionRefusedError:
            if process.poll() is not None or time.monotonic() > deadline:
                raise RuntimeError(f"did not start: {process.args}") from None
            time.sleep(0.02)


class Process:
    """A daemon that stays in the foreground; listens on its port once this is made."""

    def __init__(self, command, port, **options):
        self.port = port
        self._process = subprocess.Popen([str(word) for word in command],
                                         stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                         start_new_session=True, **options)
        wait_for_port(port, self._process)

    def stop(self):
        os.killpg(self._process.pid, signal.SIGTERM)  # git's has one below it
        self._process.wait()


class Postgres(private_postgres.Postgres):
    """With a database and its owner, whose password stands in a file."""

    def __init__(self, folder):
        super().__init__(folder, SETTINGS)
        self.passwords = folder / "passwords"
        password = secrets.token_hex(16)
        self.run(f"CREATE ROLE {OWNER} LOGIN CREATEROLE PASSWORD '{password}'")
        self.run(f"CREATE DATABASE {DATABASE} OWNER {OWNER}")
        self.passwords.touch(mode=0o600)
        self.passwords.write_text(f"*:*:*:{OWNER}:{password}\n")


def rsync_daemon(folder, source):
    settings = folder / "rsyncd.conf"
    settings.write_text(f"use chroot = no\nuid = {os.geteuid()}\ngid = {os.getegid()}\n"
                        f"[files]\npath = {source}\n")
    port = free_port()
    return Process(["rsync", "--daemon", "--no-detach", "--address=127.0.0.1", f"--port={port}",
                    f"--config={settings}"], port)


def subversion_server(folder, source):
    root = folder / "subversion"
    subprocess.run(["svnadmin", "create", root], check=True)
    subprocess.run(["svn", "import", "-q", "-m", "files", source, f"file://{root}/files"],
                   check=True)
    port = free_port()
    return Process(["svnserve", "-d", "--foreground", "--listen-host=127.0.0.1",
                    f"--listen-port={port}", "-r", root], port)


def git_daemon(folder, source):
    root = folder / "git"
    shutil.copytree(source, root / "files")
    git = ["git", "-C", root / "files", "-c", "user.name=bench",
           "-c", "user.email=bench@localhost", "-c", "gc.auto=0"]
    # Packed, as a server of git keeps it after a while.
    for words in (["init", "-q"], ["add", "."], ["commit", "-qm", "files"], ["gc", "-q"]):
        subprocess.run([*git, *words], check=True)
    port = free_port()
    return Process(["git", "daemon", "--export-all", f"--base-path={root}", "--reuseaddr",
                    "--listen=127.0.0.1", f"--port={port}"], port)


class Relay:
    """A line to that port of 127.0.0.1."""

    def __init__(self, folder, port, delay_ms):
        self._counts = folder / f"counts-{port}"
        self._process = subprocess.Popen(
            [measuring.BUILD / "bench/zebx_relay", "0", f"127.0.0.1:{port}", "--delay",
             str(delay_ms), "--counts", self._counts], stdout=subprocess.PIPE, text=True)
        self.port = int(self._process.stdout.readline())

    def bytes(self):
        """That went either way so far."""
        self._counts.unlink(missing_ok=True)
        os.kill(self._process.pid, signal.SIGUSR1)
        while not self._counts.exists():
            time.sleep(0.005)
        counts = json.loads(self._counts.read_text())
        return counts["to_server"] + counts["from_server"]

    def stop(self):
        self._process.terminate()
        self._process.wait()
