# SPDX-License-Identifier: MIT
"""A server's repository beside other servers of files, directly and over a line of 20 ms; the
part of scripts/bench that --server asks for."""

import contextlib
import os
import pathlib
import re
import shutil
import statistics
import subprocess
import tempfile

import fleet
import measuring
import services
from measuring import BUILD, RUNS, table, timed

DELAY_MS = 10  # each way
LINES = ("directly", "at 20 ms")
KIND = "ncf:002_NODE"
FOLDER = "nodes"  # of that kind, below the support folder

PULL = "`zebx pull`, empty cache"
AGAIN = "`zebx pull` again, nothing changed"
CACHED = "`zebx pull`, another empty folder, same cache"
UNCACHED = "`zebx pull`, without the cache"
PUSH = "`zebx push`"
STREAM = "libpq alone, streamed"
INSERT = "libpq alone, pipelined inserts"
RSYNC, SVN, GIT = "rsync's daemon", "`svn export`", "`git clone`"


def check_same(source, target):
    done = subprocess.run(["diff", "-rq", "--exclude=.git", source, target],
                          stdout=subprocess.PIPE, text=True)
    if done.returncode:
        raise RuntimeError(f"{target} is not what was sent: {done.stdout[:1000]}")


class Repository:
    """One in a schema of its own, as workstations at the end of a line see it."""

    def __init__(self, postgres, schema, port):
        self.schema = schema
        self.port = port
        self._postgres = postgres

    def url(self):
        return (f"postgresql://{services.OWNER}@127.0.0.1:{self.port}/{services.DATABASE}"
                f"?sslmode=disable&options=-czebx.schema%3D{self.schema}")

    def environment(self, folder, cache=None):
        """Of a workstation that is connected."""
        environment = {**measuring.environment_of(folder),
                       "PGPASSFILE": str(self._postgres.passwords)}
        if cache:
            environment["XDG_CACHE_HOME"] = str(cache)
        subprocess.run([BUILD / "bin/zebx", "connect", self.url()], env=environment, check=True,
                       stdout=subprocess.DEVNULL)
        return environment

    def create(self):
        # Told once, directly: making it is not what is measured.
        environment = {**os.environ, "PGPASSFILE": str(self._postgres.passwords),
                       "ZEBX_INSTALL": str(BUILD / "lib/zebx")}
        url = Repository(self._postgres, self.schema, self._postgres.port).url()
        subprocess.run([BUILD / "bin/zebx", "repo", "create", url], env=environment, check=True,
                       stdout=subprocess.DEVNULL)
        return self

    def drop(self):
        self._postgres.run(f"DROP SCHEMA {self.schema} CASCADE", services.DATABASE)

    def libpq(self):
        """The environment of the program with libpq alone."""
        return {**os.environ, "PGHOST": "127.0.0.1", "PGPORT": str(self.port),
                "PGUSER": services.OWNER, "PGDATABASE": services.DATABASE,
                "PGPASSFILE": str(self._postgres.passwords), "PGSSLMODE": "disable"}

    def query(self):
        return (f"SELECT f.name, c.bytes FROM {self.schema}.stored_file f "
                f"JOIN {self.schema}.content c USING (hash) WHERE f.file_type = 4 "
                f"AND f.origin_id = '{KIND.split(':')[1]}' AND f.holder IS NULL "
                "AND f.until_revision IS NULL")


class Comparison:
    """The same files, moved by every means."""

    def __init__(self, work, stations, postgres, count, size):
        self.folder = work / f"files-{count}-{size}"
        self.folder.mkdir()
        self.stations = stations / self.folder.name
        self.stations.mkdir()
        self.count, self.size = count, size
        self.source = self.stations / "source"
        self.postgres = postgres
        measuring.make_drawings(self.source, count, size)
        self.peers = {"rsync": services.rsync_daemon(self.folder, self.source),
                      "svn": services.subversion_server(self.folder, self.source),
                      "git": services.git_daemon(self.folder, self.source)}
        ports = {"postgres": postgres.port,
                 **{name: peer.port for name, peer in self.peers.items()}}
        self.relays = {name: services.Relay(self.folder, port, DELAY_MS)
                       for name, port in ports.items()}
        self.ports = {LINES[0]: ports,
                      LINES[1]: {name: relay.port for name, relay in self.relays.items()}}
        self.samples = {line: {} for line in LINES}  # line, what: seconds
        self.bytes = {line: {} for line in LINES}  # line, what: on the line, in percent of content

    def _stop(self):
        for process in [*self.relays.values(), *self.peers.values()]:
            process.stop()
        shutil.rmtree(self.folder)
        shutil.rmtree(self.stations)

    def measure(self):
        try:
            for turn in range(RUNS):
                for line in LINES:
                    self._turn(line, turn)
        finally:
            self._stop()
        return self

    def median(self, line, what):
        return statistics.median(self.samples[line][what])

    def _note(self, line, what, command, environment, target=None):
        before = self.relays["postgres"].bytes()
        self.samples[line].setdefault(what, []).append(timed(command, environment)[0])
        moved = self.relays["postgres"].bytes() - before
        self.bytes[line].setdefault(what, []).append(moved / (self.count * self.size) * 100)
        if target:
            check_same(self.source, target)

    def _turn(self, line, turn):
        folder = self.stations / f"run-{turn}"
        folder.mkdir()
        self._own(line, folder, turn)
        self._peers(line, folder)
        shutil.rmtree(folder)

    def _own(self, line, folder, turn):
        port = self.ports[line]["postgres"]
        repository = Repository(self.postgres, f"run_{turn}", port).create()
        self._push(line, repository, folder)
        self._pulls(line, repository, folder)
        self._libpq(line, repository, folder)
        repository.drop()

    def _push(self, line, repository, folder):
        sender = folder / "sender"
        sender.mkdir()
        shutil.copytree(self.source, sender / FOLDER)
        environment = repository.environment(folder / "of-sender")
        self.postgres.run("CHECKPOINT")
        self._note(line, PUSH, [BUILD / "bin/zebx", "--support", sender, "push", KIND],
                   environment)
        shutil.rmtree(sender)

    def _pulls(self, line, repository, folder):
        environment = repository.environment(folder / "of-receiver")
        # A folder that can't be made: /dev/null is none.
        uncached = repository.environment(folder / "of-uncached", "/dev/null/cache")
        for what, target, its in ((PULL, "first", environment), (AGAIN, "first", environment),
                                  (CACHED, "second", environment), (UNCACHED, "third", uncached)):
            self._note(line, what,
                       [BUILD / "bin/zebx", "--support", folder / target, "pull", KIND], its,
                       folder / target / FOLDER)

    def _libpq(self, line, repository, folder):
        program = BUILD / "bench/zebx_bench_server"
        environment = repository.libpq()
        self._note(line, STREAM, [program, "stream", folder / "streamed", repository.query()],
                   environment, folder / "streamed")
        scratch = f"{repository.schema}_scratch"
        self.postgres.run(f"CREATE TABLE {scratch} (name text PRIMARY KEY, bytes bytea NOT NULL);"
                          f"ALTER TABLE {scratch} OWNER TO {services.OWNER}", services.DATABASE)
        self.postgres.run("CHECKPOINT")
        self._note(line, INSERT, [program, "insert", self.source, scratch], environment)
        rows = self.postgres.run(f"SELECT count(*), sum(length(bytes)) FROM {scratch}",
                                 services.DATABASE)
        assert rows == f"{self.count}|{self.count * self.size}", rows
        self.postgres.run(f"DROP TABLE {scratch}", services.DATABASE)

    def _peers(self, line, folder):
        ports = self.ports[line]
        for what, command in {
                RSYNC: ["rsync", "-r", f"rsync://127.0.0.1:{ports['rsync']}/files/"],
                SVN: ["svn", "export", "-q", f"svn://127.0.0.1:{ports['svn']}/files"],
                GIT: ["git", "clone", "-q", f"git://127.0.0.1:{ports['git']}/files"]}.items():
            target = folder / "peer"
            self._note(line, what, [*command, target], os.environ, target)
            shutil.rmtree(target)


class Catalogue:
    """Sent once, loaded again and again."""

    def __init__(self, work, postgres, count):
        self.count = count
        self.folder = work / "catalogue"
        self.folder.mkdir()
        repository = Repository(postgres, "catalogue", postgres.port).create()
        self.samples = {line: [] for line in LINES}
        sender = repository.environment(self.folder / "sender")
        self.sending = timed([BUILD / "bench/zebx_bench_catalogues", str(count)], sender)[0]
        relay = services.Relay(self.folder, postgres.port, DELAY_MS)
        self.repositories = {LINES[0]: repository,
                             LINES[1]: Repository(postgres, "catalogue", relay.port)}
        try:
            for turn in range(RUNS):
                for line in LINES:
                    self._load(line, self.folder / f"{turn}-{LINES.index(line)}")
        finally:
            relay.stop()
        self.repositories[LINES[0]].drop()

    def _load(self, line, folder):
        environment = self.repositories[line].environment(folder)
        support = folder / "support"
        support.mkdir()
        (support / "Catalogues.xml").write_text(
            '<catalogues><catalogue reference="BENCH"/></catalogues>')
        self.samples[line].append(timed([BUILD / "bin/zebx", "--support", support, "pull",
                                         "catalogue:BENCH"], environment)[0])
        loaded = (support / "Catalogues/BENCH.xml").read_text(encoding="utf-8")
        ids = set(re.findall(r"\{0f8fad5b-[-0-9a-f]*\}", loaded, re.IGNORECASE))
        if len(ids) != self.count:
            raise RuntimeError(f"{len(ids)} of {self.count} items were loaded")

    def median(self, line):
        return statistics.median(self.samples[line])


def comparison_text(comparison):
    what_order = list(comparison.samples[LINES[0]])
    rows = []
    for what in what_order:
        near, far = (comparison.median(line, what) for line in LINES)
        moved = statistics.median(comparison.bytes[LINES[1]][what])
        rows.append([what, f"{near:.2f}", f"{far:.2f}",
                     "" if what in (RSYNC, SVN, GIT) else f"{moved:.2f} %"])
    return table(["what", *(f"{line}, s" for line in LINES), "bytes on the line, of the content"],
                 rows)


def targets(comparison):
    near = {what: comparison.median(LINES[0], what) for what in comparison.samples[LINES[0]]}
    far = {what: comparison.median(LINES[1], what) for what in comparison.samples[LINES[1]]}
    files = f"{comparison.count:,} files of {comparison.size // 1000} kB"

    def ratio(what, own, peer, limit):
        reached = near[own] / near[peer]
        return [f"{files}: {what}", f"at most {limit}", f"{reached:.2f}",
                "yes" if reached <= limit else "no"]

    def at_distance(what, own):
        limit = 1.3 * near[own] + 1
        return [f"{files}: {what} at 20 ms", f"at most {limit:.2f} s", f"{far[own]:.2f} s",
                "yes" if far[own] <= limit else "no"]

    moved = statistics.median(comparison.bytes[LINES[1]][AGAIN])
    return [ratio("pull, of rsync's time", PULL, RSYNC, 1.0),
            ratio("pull, of libpq's stream", PULL, STREAM, 1.5),
            ratio("push, of libpq's inserts", PUSH, INSERT, 1.5),
            at_distance("pull", PULL), at_distance("push", PUSH),
            [f"{files}: pull again, bytes on the line", "under 1 %", f"{moved:.3f} %",
             "yes" if moved < 1 else "no"]]


def catalogue_targets(catalogue):
    far = catalogue.median(LINES[1])
    return [[f"catalogue of {catalogue.count:,} items: pull at 20 ms", "under 3 s", f"{far:.2f} s",
             "yes" if far < 3 else "no"]]


def section(work, share):
    pathlib.Path(work).chmod(0o755)  # the server is somebody else
    measuring.warm_up(work)
    with contextlib.ExitStack() as stack:
        # In memory: files that are made where others were just removed cost ext4 a hundred times
        # as much, and then that is what is measured.
        stations = pathlib.Path(stack.enter_context(
            tempfile.TemporaryDirectory(prefix="zebx-bench-", dir="/dev/shm")))
        postgres = services.Postgres(work)
        stack.callback(postgres.stop)
        comparisons = [Comparison(work, stations, postgres, count // share, size).measure()
                       for count, size in ((5000, 100_000), (20_000, 5_000))]
        catalogue = Catalogue(stations, postgres, 10_000 // share)
        workstations = fleet.measure(stations, postgres, 200 // share)
        version = postgres.run("SHOW server_version")
    settings = ", ".join(f"`{name} = {value}`" for name, value in services.SETTINGS.items())
    rows = [row for comparison in comparisons for row in targets(comparison)]
    tables = "\n".join(f"### {comparison.count:,} files of {comparison.size // 1000} kB in one "
                       f"kind\n\n{comparison_text(comparison)}" for comparison in comparisons)
    return f"""# On a server

Written by `scripts/bench --server`; medians of {RUNS} in one run. Servers and workstations are
this one computer; the workstations' folders and the files that rsync's daemon serves are in memory
(`/dev/shm`), the other servers' data is on its disk. Each load goes into a folder that is not there
yet, and what was loaded is compared with what was sent, byte for byte. PostgreSQL {version} has {settings}, and else
Debian's settings: `fsync` and `synchronous_commit` are on. Nobody's connection is encrypted. "At
20 ms" goes through a relay that delays each byte, and each connecting, by 10 ms each way, and
limits nothing else.

{measuring.circumstances()}
## What was to be reached

{table(["what", "to reach", "reached", ""], rows + catalogue_targets(catalogue))}
## Files

{tables}
## A catalogue of {catalogue.count:,} items in six levels

Sent in {catalogue.sending:.1f} s, each item a revision of its own; loaded in
{catalogue.median(LINES[0]):.2f} s directly and {catalogue.median(LINES[1]):.2f} s at 20 ms.

{fleet.text(workstations)}"""
