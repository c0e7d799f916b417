"""Whole mode beside the usual one: the time, the size of the journal or of the undo log, and how long other writers wait."""

import sqlite3
import threading
import time
from pathlib import Path

import data
import servers
from measuring import BENCH_PROGRAMS, CLIENT, EVERY, LOCAL, copying, copying_into_file, measured, run
from races import EACH_CHANGE, ERP, ROW_BY_ROW, Race, _local_content
from way import Way

IN_WHOLE = "the same statements, committed once"


def whole(command):
    return ["env", "QMX_COPY=whole", *command]


def _ways(command, *others):
    return [Way("program, whole", whole(command), reads=ERP, writes=IN_WHOLE),
            Way("program, row by row", command, reads=ERP, writes="as every copy without whole mode"), *others]


def sqlite_full(sizes):
    empty = data.empty_local()
    return Race("full copy, whole, SQLite", sizes.orders, _ways(copying_into_file(data.erp(sizes.orders))),
                lambda: data.copy_file(empty, LOCAL), lambda: _local_content("tssoc200"))


def sqlite_changed(sizes):
    erp = data.changed_erp(sizes.orders, sizes.changes)
    before = data.local_before_changes(sizes.orders)
    loop = Way("prepared statements", [BENCH_PROGRAMS / "sqlite_changed_copy", erp, LOCAL], most=1.4, reads=EACH_CHANGE,
               writes=f"all columns; {ROW_BY_ROW}")
    return Race("changed copy, whole, SQLite", sizes.changes, _ways(copying_into_file(erp), loop),
                lambda: data.copy_file(before, LOCAL), lambda: _local_content("tssoc200"))


def server_full(server, sizes):
    return Race(f"full copy, whole, {server.name}", sizes.server_orders,
                _ways(copying(server.connection, data.erp(sizes.server_orders))),
                lambda: server.sql("truncate table tssoc200", "truncate table tstables", *server.settle),
                lambda: server.sql(server.hashes))


def server_changed(server, sizes):
    erp = data.changed_erp(sizes.server_orders, sizes.server_changes)
    server.sql("truncate table tssoc200")
    run(*server.load(data.erp(sizes.server_orders)))
    server.sql("create table orders_before_whole as select * from tssoc200")

    def prepare():
        server.sql("truncate table tssoc200", "insert into tssoc200 select * from orders_before_whole", "truncate table tstables",
                   f"insert into tstables (TableName, in_use, syme, lutm) values ('tssoc200', 0, 2, '{data.LONG_AGO}')",
                   *server.settle)

    return Race(f"changed copy, whole, {server.name}", sizes.server_changes, _ways(copying(server.connection, erp)), prepare,
                lambda: server.sql(server.hashes))


class Largest:
    """Looks at a size again and again while something runs."""

    def __init__(self, size):
        self.size, self.largest, self.ends = size, 0, threading.Event()
        self.thread = threading.Thread(target=self._look)

    def _look(self):
        while not self.ends.wait(0.01):
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
    return lines


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
    folder = Path(server.sql("select @@datadir"))
    undo = [folder / "ibdata1", *sorted(folder.glob("undo*"))]
    command = copying(server.connection, data.erp(sizes.server_orders))
    lines = []
    for name, ours in (("row by row", command), ("whole", whole(command))):
        server.sql("truncate table tssoc200", "truncate table tstables")
        run(*command)
        before = size_of(*undo)
        with Largest(lambda: size_of(*undo)) as log:
            measured(ours, CLIENT)
        grown = max(0, log.largest - before)
        lines.append([f"growth of the undo log, full copy of {sizes.server_orders:,} rows, MariaDB, {name}", _mib(grown), ""])
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


RACES = {
    "whole-sqlite-full": sqlite_full,
    "whole-sqlite-changed": sqlite_changed,
    "whole-postgresql-full": lambda sizes: server_full(servers.postgresql(), sizes),
    "whole-postgresql-changed": lambda sizes: server_changed(servers.postgresql(), sizes),
    "whole-mariadb-full": lambda sizes: server_full(servers.mariadb(), sizes),
    "whole-mariadb-changed": lambda sizes: server_changed(servers.mariadb(), sizes),
}

ALONE = {
    "whole-journal-sqlite": journal_sqlite,
    "whole-journal-postgresql": journal_postgresql,
    "whole-journal-mariadb": journal_mariadb,
    "whole-others-wait": others_wait,
}
