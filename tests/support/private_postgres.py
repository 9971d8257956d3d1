# SPDX-License-Identifier: MIT
"""A PostgreSQL server of one's own on 127.0.0.1, for scripts: in a given folder, with the
superuser "postgres" on its Unix socket alone. Nobody else's server is ever touched."""

import os
import pathlib
import pwd
import shutil
import socket
import subprocess
import tempfile

PROGRAMS = pathlib.Path("/usr/lib/postgresql/15/bin")


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class Postgres:
    """Runs as nobody when this runs as root, which a server refuses to: whoever may, must be
    able to come to the folder."""

    def __init__(self, folder, settings=None, certificate=None, key=None):
        self.port = free_port()
        self._folder = folder / "postgres"
        self._folder.mkdir()
        # A socket's path has at most 107 bytes.
        self._sockets = pathlib.Path(tempfile.mkdtemp(prefix="zebx-postgres-", dir="/tmp"))
        self._as = {}
        if os.geteuid() == 0:
            nobody = pwd.getpwnam("nobody")
            self._as = {"user": nobody.pw_uid, "group": nobody.pw_gid, "extra_groups": []}
        self._give(self._folder)
        self._give(self._sockets)
        self._data = self._folder / "data"
        self._tool("initdb", "-D", self._data, "-U", "postgres", "--auth-local=trust",
                   "--auth-host=scram-sha-256", "--encoding=UTF8", "--locale=C.UTF-8")
        self._write_settings({
            "port": self.port, "listen_addresses": "'127.0.0.1'",
            "unix_socket_directories": f"'{self._sockets}'", **(settings or {}),
            **(self._with_tls(certificate, key) if certificate else {})})
        self._tool("pg_ctl", "-D", self._data, "-l", self._folder / "log", "-w", "start")

    def _give(self, path):
        if self._as:
            os.chown(path, self._as["user"], self._as["group"])

    def _tool(self, name, *words):
        done = subprocess.run([PROGRAMS / name, *map(str, words)], stdout=subprocess.DEVNULL,
                              stderr=subprocess.PIPE, text=True, cwd=self._folder, **self._as)
        if done.returncode:
            raise RuntimeError(f"{name}: {done.stderr}")

    def _with_tls(self, certificate, key):
        for path, name in ((certificate, "server.crt"), (key, "server.key")):
            shutil.copy(path, self._data / name)
            os.chmod(self._data / name, 0o600)
            self._give(self._data / name)
        return {"ssl": "on"}

    def _write_settings(self, settings):
        with open(self._data / "postgresql.conf", "a", encoding="utf-8") as file:
            file.writelines(f"{name} = {value}\n" for name, value in settings.items())

    def run(self, statements, database="postgres"):
        """As the superuser; the rows' texts, columns separated by "|"."""
        return subprocess.run(
            [PROGRAMS / "psql", "-XqAtv", "ON_ERROR_STOP=1", "-h", self._sockets, "-p",
             str(self.port), "-U", "postgres", "-d", database, "-c", statements],
            env={**os.environ, "PGOPTIONS": "-c client_min_messages=warning"},
            check=True, stdout=subprocess.PIPE, text=True, cwd=self._folder,
            **self._as).stdout.strip()

    def stop(self):
        self._tool("pg_ctl", "-D", self._data, "-m", "immediate", "-w", "stop")
        shutil.rmtree(self._sockets)
