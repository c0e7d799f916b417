"""Whole mode beside the usual one: the time, the size of the journal or of the undo log, and how long other writers wait."""

import sqlite3
import threading
import time
from dataclasses import replace
from pathlib import Path

import alone
import data
import servers
from measuring import CLIENT, EVERY, LOCAL, copying, copying_into_file, measured, run
from races import ERP
from races import RACES as USUAL
from way import Way

IN_WHOLE = "the same statements, committed once"


def whole(command):
    return ["env", "QMX_COPY=whole", *command]


def _in_whole(name, loop_most=None):
    """The race of that name, between the modes alone; with its prepared loop if that has a target here."""

    def race_of(sizes):
        race = USUAL[name](sizes)
        command = race.ways[0].command
        loops = [replace(way, most=loop_most) for way in race.ways if loop_most and way.name == "prepared statements"]
        return replace(race, title=race.title.replace("copy,", "copy, whole,"), ways=[
            Way("program, whole", whole(command), reads=ERP, writes=IN_WHOLE),
            Way("program, row by row", command, reads=ERP, writes="as every copy without whole mode"), *loops])

    return race_of


class Largest:
    """Looks at a size again and again while something runs."""

    def __init__(self, size, pause=0.01):
        self.size, self.pause, self.largest, self.ends = size, pause, 0, threading.Event()
        self.thread = threading.Thread(target=self._look)

    def _look(self):
        while not self.ends.wait(self.pause):
            self.largest = max(self.largest, self.size())

    def __enter__(self):
        self.thread.start()
        return self

    def __exit__(self, *_):
        self.ends.set()
        self.thread.join()


def size_of(*paths):
    return sum(path.stat().st_size for path in map(Path, paths) if path.exists())


def _mib(size):
    return f"{size / 2**20:,.1f} MiB"


def journal_sqlite(sizes, _):
    """The largest log beside the file, without whole mode and with it, over a table that has as many rows before."""
    command = copying_into_file(data.erp(sizes.server_orders))
    lines = []
    for name, ours in (("row by row", command), ("whole", whole(command))):
        data.copy_file(data.empty_local(), LOCAL)
        run(*command)
        with Largest(lambda: size_of(f"{LOCAL}-wal")) as log:
            measured(ours)
        lines.append([f"largest -wal file, full copy of {sizes.server_orders:,} rows, SQLite, {name}", _mib(log.largest), ""])
    return [*lines, ["the file itself", _mib(size_of(LOCAL)), ""]]


def journal_postgresql(sizes, _):
    server = servers.postgresql()
    command = copying(server.connection, data.erp(sizes.server_orders))
    lines = []
    for name, ours in (("row by row", command), ("whole", whole(command))):
        server.sql("truncate table tssoc200", "truncate table tstables")
        run(*command)
        before = server.sql("select pg_current_wal_lsn()")
        measured(ours, CLIENT)
        written = int(float(server.sql(f"select pg_wal_lsn_diff(pg_current_wal_lsn(), '{before}')")))
        lines.append([f"written to the log, full copy of {sizes.server_orders:,} rows, PostgreSQL, {name}", _mib(written), ""])
    return lines


def journal_mariadb(sizes, _):
    server = servers.mariadb()
    server.sql("set global innodb_monitor_enable = 'trx_rseg_current_size'")
    page = int(server.sql("select @@innodb_page_size"))
    pages = "select count from information_schema.innodb_metrics where name = 'trx_rseg_current_size'"
    command = copying(server.connection, data.erp(sizes.server_orders))
    lines = []
    for name, ours in (("row by row", command), ("whole", whole(command))):
        server.sql("truncate table tssoc200", "truncate table tstables")
        run(*command)
        with Largest(lambda: int(server.sql(pages)) * page, pause=0.1) as undo:
            measured(ours, CLIENT)
        lines.append([f"largest undo log, full copy of {sizes.server_orders:,} rows, MariaDB, {name}", _mib(undo.largest), ""])
    return lines


def _longest_write(ends):
    """How long a writer of another table waited at most, in seconds."""
    longest = 0
    with sqlite3.connect(LOCAL, timeout=3600, isolation_level=None) as other:
        while not ends.wait(0.002):
            begin = time.monotonic()
            other.execute("insert or replace into tsmdm030 (cstp) values ('X')")
            longest = max(longest, time.monotonic() - begin)
    return longest


def others_wait(sizes, _):
    command = copying_into_file(data.erp(sizes.server_orders))
    lines = []
    for name, ours in (("row by row", command), ("whole", whole(command))):
        data.copy_file(data.empty_local(), LOCAL)
        waited, ends = [], threading.Event()
        writer = threading.Thread(target=lambda: waited.append(_longest_write(ends)))
        writer.start()
        try:
            measured(ours, EVERY)
        finally:
            ends.set()
            writer.join()
        lines.append([f"longest wait of another writer, full copy of {sizes.server_orders:,} rows, SQLite, {name}",
                      f"{waited[0] * 1000:,.0f} ms", ""])
    return lines


RACES = {f"whole-{name}": _in_whole(name) for name in ("sqlite-full", "postgresql-full", "postgresql-changed", "mariadb-full",
                                                        "mariadb-changed")}
RACES["whole-sqlite-changed"] = _in_whole("sqlite-changed", loop_most=1.4)

ALONE = {
    "whole-journal-sqlite": journal_sqlite,
    "whole-journal-postgresql": journal_postgresql,
    "whole-journal-mariadb": journal_mariadb,
    "whole-others-wait": others_wait,
    "whole-memory-sqlite": lambda sizes, _: alone.memory_sqlite(sizes, ", whole", whole),
    "whole-memory-postgresql": lambda sizes, _: alone.memory_server(servers.postgresql(), sizes, ", whole", whole),
    "whole-memory-mariadb": lambda sizes, _: alone.memory_server(servers.mariadb(), sizes, ", whole", whole),
}
