"""The page that a full run leaves: docs/benchmarks.md."""

import os
import platform
import sqlite3
import time

from measuring import ROOT, run

PATH = ROOT / "docs/benchmarks.md"

TEXT = """# Speed and memory

What `./bench.sh` measured on {date}, on {machine}.

{races}

A line of this table is a way to do the work of a case, the program's first. The others use nothing but the database's own
interface; they read the same rows from the same file of the sandbox ERP and write them into the same tables with the same journal. The
ways take turns, {rounds} rounds of them, and after each run the tables must have the same content. The times are of whole processes,
from start to exit: the median of the rounds. *Ratio* is the program's time divided by that way's time in the same round: the
median, the least and the greatest.

{alone}

Service orders have 32 columns. The changes of a changed copy are half updates, a quarter inserts and a quarter deletes, in random
order. A server and what talks to it have a processor each; the servers keep the settings that they are delivered with. The making
of the CSV file is not counted, nor the reading of the intervals that are inserted beside the expansion.{scaled}
"""

RACES = ["case", "way", "time", "rows/s", "ratio", "target", "peak memory"]
ALONE = ["", "figure", "target"]
PACKAGES = {"PostgreSQL": "postgresql-15", "odbc-postgresql": "odbc-postgresql", "MariaDB": "mariadb-server-core",
            "odbc-mariadb": "odbc-mariadb", "unixODBC": "unixodbc"}


def _table(head, rows):
    return "\n".join("| " + " | ".join(row) + " |" for row in [head, ["---"] * len(head), *rows]) if rows else ""


def _machine():
    gibibytes = os.sysconf("SC_PAGE_SIZE") * os.sysconf("SC_PHYS_PAGES") / 2**30
    versions = [f"{name} {run('dpkg-query', '--show', '--showformat=${Version}', package)}"
                for name, package in PACKAGES.items()]
    return ", ".join([
        f"{os.cpu_count()} processors with {gibibytes:.0f} GiB of memory", platform.freedesktop_os_release()["PRETTY_NAME"],
        "g++ " + run("g++", "-dumpfullversion").strip(), f"SQLite {sqlite3.sqlite_version}", *versions])


def written(races, alone, rounds, scale):
    return TEXT.format(
        date=time.strftime("%Y-%m-%d"), machine=_machine(), rounds=rounds,
        races=_table(RACES, races), alone=_table(ALONE, alone),
        scaled="" if scale == 1 else f"\nSizes are {scale:g} times the usual ones.")
