"""The page that a full run leaves, docs/benchmarks.md, and its chart."""

import os
import platform
import sqlite3
import time
from dataclasses import dataclass, field

import chart
from measuring import ROOT, run

PATH = ROOT / "docs/benchmarks.md"
CHART = ROOT / "docs/benchmarks.svg"

TEXT = """# Speed and memory

Measured by `./bench.sh` on {date}, on {machine}.{scaled}

![How long each way took](benchmarks.svg)

{races}

Each row shows one way to do the work of a case, the program's way first. All ways of a case start from the same rows, and after
each run the tables must have the same content. The ways take turns in {rounds} rounds, and each round begins with another way. *Time* is
the median of the rounds, from start to exit of the whole process. *Processor* is the CPU time of the way's own processes, without
the server's. The program works with two threads, and most other ways with one. *Ratio* is the program's time divided by
the way's time in the same round: median, minimum and maximum. *Peak memory* is that of the largest process.

*Rows after values* is the program with added rows in the plain form that all systems know, `insert ... values (...), (...)`. Its
ratio shows the gain from the server's own form: `unnest` in PostgreSQL and arrays of parameters in MariaDB.

{ways}

All ways write SQLite files with the program's settings: `journal_mode=wal`, `synchronous=normal`, `wal_autocheckpoint=16000`. A single
transaction is less work than many, but holds its locks to the end, and a failure rolls all of it back. The program commits more
often, so that other programs can write in between, and a failure keeps the rows that were saved before. In whole mode it commits
once: SQLite's log grows to about the size of the table, and its index, 8 bytes a page, counts as memory.

{alone}

Service orders have 32 columns. The changes of a changed copy are half updates, a quarter inserts and a quarter deletes, in random
order. A server has one processor and its client another. The servers run with their default settings.{once}
"""

RACES = ["case", "way", "time", "processor", "rows/s", "ratio", "target", "peak memory"]
WAYS = ["case", "way", "reads", "writes"]
ALONE = ["", "figure", "target"]
PACKAGES = {
    "PostgreSQL": "postgresql-15", "odbc-postgresql": "odbc-postgresql", "MariaDB": "mariadb-server-core",
    "odbc-mariadb": "odbc-mariadb", "unixODBC": "unixodbc", "pgloader": "pgloader", "ogr2ogr": "gdal-bin", "Python": "python3",
    "OpenJDK": "openjdk-17-jre-headless"}


def _table(head, rows):
    return "\n".join("| " + " | ".join(row) + " |" for row in [head, ["---"] * len(head), *rows]) if rows else ""


def _machine():
    gibibytes = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") / 2**30
    versions = [f"{name} {run('dpkg-query', '--show', '--showformat=${Version}', package)}"
                for name, package in PACKAGES.items()]
    return ", ".join([
        f"{os.cpu_count()} processors with {gibibytes:.0f} GiB of memory", platform.freedesktop_os_release()["PRETTY_NAME"],
        "g++ " + run("g++", "-dumpfullversion").strip(), f"SQLite {sqlite3.sqlite_version}", *versions])


@dataclass
class Report:
    rounds: int
    scale: float
    load: float = field(default_factory=lambda: os.getloadavg()[0])  # what others were doing when it began
    races: list = field(default_factory=list)
    ways: list = field(default_factory=list)
    alone: list = field(default_factory=list)
    bars: list = field(default_factory=list)

    def text(self):
        scaled = "" if self.scale == 1 else f" Sizes are {self.scale:g} times the usual ones."
        if self.load > os.cpu_count() / 2:
            scaled += (f" **The machine was busy with other work** (load {self.load:.1f} on {os.cpu_count()} processors when the run "
                       "began): times are too long, and ratios vary.")
        once = " Ways that commit\neach row separately ran in the first round only." if self.rounds > 1 else ""
        return TEXT.format(
            date=time.strftime("%Y-%m-%d"), machine=_machine(), rounds=self.rounds, races=_table(RACES, self.races),
            ways=_table(WAYS, self.ways), alone=_table(ALONE, self.alone), scaled=scaled, once=once)

    def write(self):
        PATH.write_text(self.text())
        chart.draw(self.bars, CHART)
