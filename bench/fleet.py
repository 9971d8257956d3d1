# SPDX-License-Identifier: MIT
"""Many workstations that load at once while two administrators send."""

import collections
import concurrent.futures
import os
import statistics
import subprocess
import threading
import time

import server
import services
from measuring import BUILD, table

FILES = 200
FILE_BYTES = 20_000

Fleet = collections.namedtuple(
    "Fleet", "stations seconds last failures mixed revisions acknowledged gapless memory")


class Administrator(threading.Thread):
    """Sends the whole kind again and again, each time with other contents."""

    def __init__(self, name, repository, folder):
        super().__init__()
        self._name = name
        self._support = folder / f"{name}-support"
        (self._support / server.FOLDER).mkdir(parents=True)
        self._environment = repository.environment(folder / name)
        self.is_over = threading.Event()
        self.acknowledged = 0
        self.failures = 0

    def send(self):
        mark = f"{self._name} {self.acknowledged + self.failures}\n".encode()
        for number in range(FILES):
            (self._support / server.FOLDER / f"N{number:06d}.dwg").write_bytes(
                mark + f"{number}\n".encode() + os.urandom(FILE_BYTES))
        done = subprocess.run([BUILD / "bin/zebx", "--support", self._support, "push",
                               server.KIND], env=self._environment, stdout=subprocess.DEVNULL,
                              stderr=subprocess.DEVNULL)
        if done.returncode:
            self.failures += 1
        else:
            self.acknowledged += 1

    def run(self):
        while not self.is_over.is_set():
            self.send()


class Station:
    def __init__(self, repository, folder):
        self._support = folder / "support"
        self._environment = repository.environment(folder)

    def load(self):
        """Seconds, highest memory in MB, and whether it went well."""
        start = time.perf_counter()
        process = subprocess.Popen(
            [BUILD / "bin/zebx", "--support", self._support, "pull", server.KIND],
            env=self._environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        return time.perf_counter() - start, usage.ru_maxrss / 1024, process.returncode == 0

    def has_one_call(self):
        """Whether all files are of the same sending."""
        files = list((self._support / server.FOLDER).glob("*.dwg"))
        marks = {path.read_bytes().split(b"\n")[0] for path in files}
        return len(files) == FILES and len(marks) == 1


def measure(work, postgres, count):
    folder = work / "fleet"
    folder.mkdir()
    repository = server.Repository(postgres, "fleet", postgres.port).create()
    administrators = [Administrator(name, repository, folder) for name in ("first", "second")]
    administrators[0].send()
    stations = [Station(repository, folder / f"station-{number}") for number in range(count)]
    for administrator in administrators:
        administrator.start()
    with concurrent.futures.ThreadPoolExecutor(count) as pool:
        start = time.perf_counter()
        results = list(pool.map(Station.load, stations))
        last = time.perf_counter() - start
    for administrator in administrators:
        administrator.is_over.set()
        administrator.join()
    revisions, first, newest, head = map(int, postgres.run(
        "SELECT count(*), min(number), max(number), (SELECT revision FROM fleet.head) "
        "FROM fleet.revision", services.DATABASE).split("|"))
    fleet = Fleet(
        stations=count, seconds=sorted(seconds for seconds, _, _ in results), last=last,
        failures=sum(not is_well for _, _, is_well in results) +
        sum(administrator.failures for administrator in administrators),
        mixed=sum(not station.has_one_call() for station, (_, _, is_well)
                  in zip(stations, results) if is_well),
        revisions=revisions,
        acknowledged=sum(administrator.acknowledged for administrator in administrators),
        gapless=first == 1 and newest == revisions == head,
        memory=max(memory for _, memory, _ in results))
    repository.drop()
    return fleet


def text(fleet):
    percentile = statistics.quantiles(fleet.seconds, n=20)[-1]
    rows = [["half of them were through, s", f"{statistics.median(fleet.seconds):.2f}"],
            ["95 % of them, s", f"{percentile:.2f}"],
            ["the last one, s", f"{fleet.last:.2f}"],
            ["loads and sendings that failed", str(fleet.failures)],
            ["loads that hold parts of two sendings", str(fleet.mixed)],
            ["sendings that were acknowledged", str(fleet.acknowledged)],
            ["revisions", f"{fleet.revisions}, {'without' if fleet.gapless else 'WITH'} gaps"],
            ["highest memory of one, MB", f"{fleet.memory:.0f}"]]
    return f"""## {fleet.stations} workstations that load at once

{fleet.stations} processes of `zebx pull`, started together, each with an empty folder and an
empty cache; {FILES} files of {FILE_BYTES // 1000} kB. Meanwhile two administrators send all of
them again and again, with other contents each time.

{table(["", ""], rows)}"""
