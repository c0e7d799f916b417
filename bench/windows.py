#!/usr/bin/env python3
"""Copies under Wine beside the same copies on Linux, from the same file: how many times as long they take, from start to exit.

    bench/windows.py [ROUNDS]     (default: 7; needs the release build and that for Windows)

In each round the ways take turns, and each ratio is one of a round. Prints the medians.
"""

import datetime
import os
import shutil
import sqlite3
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "tests/windows"))
from programs import LINUX, WINDOWS, Site, wine  # pylint: disable=wrong-import-position

SIZES = ["--orders", "20000", "--configurations", "20000", "--calendar-days", "3000"]
COM = {"QMX_COMPONENTS": "none"}  # no manifest is found there
WAYS = {"linux": (LINUX, {}), "servers": (WINDOWS, {}), "com": (WINDOWS, COM)}


class Work:
    """A copy, the local database before it, and the rows that it must leave."""

    def __init__(self, name, table, local, counted):
        self.name, self.table, self.local, self.counted = name, table, local, counted

    def seconds(self, site, variables):
        shutil.copy(self.local, site.folder / "local.db")
        for rest in site.folder.glob("local.db-*"):
            rest.unlink()
        begin = time.perf_counter()
        answer = site.copy(self.table, **variables)
        took = time.perf_counter() - begin
        rows = site.sql(self.counted)[0][0]
        if answer != (0, "", "") or rows == 0:
            sys.exit(f"{self.name}: {answer}, {rows} rows")
        return took, rows


def prepare(site, place):
    """Makes the ERP and the local databases, and returns the works."""
    yesterday = datetime.date.today() - datetime.timedelta(days=1)
    site.run("orvan-sandbox", "make", *SIZES, "orvan.db")
    site.run("qmxadmin", "init", "Provider=SQLite;Data Source=local.db;Mode=Create", "local")
    shutil.copy(site.folder / "local.db", place / "empty.db")
    for table in ("tsmdm100", "tsmdm140", "tcccp001", "tssoc200"):  # the calendars are those of the copied employees
        assert site.copy(table)[0] == 0
    site.run("orvan-sandbox", "work", "--from", f"{yesterday} 08:00:00", "orvan.db")
    site.sql(f"update tstables set syme = 2, lutm = '{yesterday} 00:00:00'")
    shutil.copy(site.folder / "local.db", place / "copied.db")  # calendars have no record there yet, so they are copied in full
    erp = sqlite3.connect(site.folder / "orvan.db")
    for name, count in (("orders", "select count(*) from tssoc200"), ("configurations", "select count(*) from tscfg200")):
        print(f"{erp.execute(count).fetchone()[0]:,} {name}")
    erp.close()
    return [Work("service orders in full", "tssoc200", place / "empty.db", "select count(*) from tssoc200"),
            Work("configurations in full", "tscfg200", place / "empty.db", "select count(*) from tscfg200"),
            Work("service orders by change", "tssoc200", place / "copied.db", "select count(*) from tssoc200"),
            Work("calendars with their expansion", "tcccp030", place / "copied.db", "select count(*) from tcccp030")]


def measure(work, sites, rounds):
    times, rows = {way: [] for way in WAYS}, set()
    for turn in range(rounds + 1):
        for way, site in sites.items():
            took, found = work.seconds(site, WAYS[way][1])
            rows.add(found)
            if turn:  # the first one warms up
                times[way].append(took)
    if len(rows) != 1:
        sys.exit(f"{work.name}: the ways leave {sorted(rows)} rows")
    ratio = {way: statistics.median(one / linux for one, linux in zip(times[way], times["linux"])) for way in WAYS}
    print(f"| {work.name}, {rows.pop():,} rows | {statistics.median(times['linux']):.3f} s | {ratio['servers']:.2f} | {ratio['com']:.2f} |", flush=True)


def main():
    rounds = int(sys.argv[1]) if len(sys.argv) > 1 else 7
    place = Path(tempfile.mkdtemp(prefix="qmx-bench-windows-"))
    (place / "prefix").mkdir()
    os.environ |= {"WINEPREFIX": str(place / "prefix"), "WINEDEBUG": "-all", "WINEDLLOVERRIDES": "mscoree,mshtml="}
    try:
        # Its server stays, so no program starts Wine's services.
        subprocess.run(["wineserver", "--persistent"], check=True)
        subprocess.run(["wineboot", "--init"], check=True, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        wine("regsvr32", "/s", WINDOWS.path(WINDOWS.components / "orvan_com.dll"))
        made = Site(LINUX, place / "made")
        works = prepare(made, place)
        sites = {way: Site(system, place / way, made.folder / "orvan.db") for way, (system, _) in WAYS.items()}
        (sites["com"].folder / "none").mkdir()
        print("\n| copy | Linux | through component servers | through COM |\n|---|---|---|---|")
        for work in works:
            measure(work, sites, rounds)
    finally:
        for end in ("--kill", "--wait"):
            subprocess.run(["wineserver", end], check=False)
        shutil.rmtree(place)


if __name__ == "__main__":
    main()
