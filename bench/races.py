"""What the program does, and ways to do the same with nothing but the database's own interface."""

from dataclasses import dataclass
from typing import Callable, Optional

import data
import servers
from measuring import BENCH_PROGRAMS, LOCAL, copying, copying_into_file, run


@dataclass(frozen=True)
class Way:
    name: str
    command: list
    most: Optional[float] = None  # what the program may take, as a multiple of this way
    finish: Callable[[], None] = lambda: None  # not measured


@dataclass(frozen=True)
class Race:
    """The ways are taken in turn, the program's first, each from the same beginning, and must leave the same content."""

    title: str
    rows: int  # that are added or changed
    ways: list
    prepare: Callable[[], None]
    content: Callable[[], str]


def _local_content(table):
    return run(BENCH_PROGRAMS / "table_content", LOCAL, table).strip()


def _empty_texts_to_null():
    """SQLite's shell imports no null; in the program's rows a moment is null or a time."""
    moments = run("sqlite3", LOCAL, "select name from pragma_table_info('tssoc200') where type = 'datetime'").split()
    run("sqlite3", LOCAL, "update tssoc200 set " + ", ".join(f"{name} = nullif({name}, '')" for name in moments))


def sqlite_full(sizes):
    erp = data.erp(sizes.orders)
    empty = data.empty_local()
    csv = data.orders_as_csv(sizes.orders)
    shell = ["sqlite3", "-cmd", "pragma journal_mode=wal", "-cmd", "pragma synchronous=normal", LOCAL]
    return Race("full copy, SQLite", sizes.orders, [
        Way("program", copying_into_file(erp)),
        Way("prepared reads, prepared inserts", [BENCH_PROGRAMS / "sqlite_full_copy", erp, LOCAL], most=1.25),
        Way("sqlite3's .import of CSV", [*shell, f".import --csv '{csv}' tssoc200"], most=1 / 2, finish=_empty_texts_to_null),
    ], lambda: data.copy_file(empty, LOCAL), lambda: _local_content("tssoc200"))


def sqlite_changed(sizes):
    erp = data.changed_erp(sizes.orders, sizes.changes)
    before = data.local_before_changes(sizes.orders)
    reference = [BENCH_PROGRAMS / "sqlite_changed_copy", erp, LOCAL]
    return Race("changed copy, SQLite", sizes.changes, [
        Way("program", copying_into_file(erp)),
        Way("prepared statements", reference, most=1.3),
        Way("the same, a fresh select text per row", [*reference, "fresh"], most=1 / 3.5),
    ], lambda: data.copy_file(before, LOCAL), lambda: _local_content("tssoc200"))


def expansion(sizes):
    before = data.local_with_calendars(sizes.calendars, sizes.years)
    expanded = data.expanded(sizes.calendars, sizes.years)
    intervals = int(run("sqlite3", expanded, "select count(*) from tscalender"))
    return Race("expansion of calendars, SQLite", intervals, [
        Way("program", [BENCH_PROGRAMS / "expand_calendars", LOCAL]),
        Way("inserts of the same rows", [BENCH_PROGRAMS / "sqlite_intervals", expanded, LOCAL], most=1.3),
    ], lambda: data.copy_file(before, LOCAL), lambda: _local_content("tscalender"))


def _server_full(server, sizes, most):
    erp = data.erp(sizes.server_orders)

    def prepare():
        server.sql("truncate table tssoc200", "truncate table tstables", *server.settle)

    return Race(f"full copy, {server.name}", sizes.server_orders, [
        Way("program", copying(server.connection, erp)),
        Way(server.bulk_name, server.load(erp), most),
    ], prepare, lambda: server.sql(server.hashes))


def _server_changed(server, sizes):
    erp = data.changed_erp(sizes.server_orders, sizes.server_changes)
    server.sql("truncate table tssoc200")
    run(*server.load(data.erp(sizes.server_orders)))
    server.sql("create table orders_before as select * from tssoc200")

    def prepare():
        server.sql("truncate table tssoc200", "insert into tssoc200 select * from orders_before", "truncate table tstables",
                   f"insert into tstables (TableName, in_use, syme, lutm) values ('tssoc200', 0, 2, '{data.LONG_AGO}')",
                   *server.settle)

    return Race(f"changed copy, {server.name}", sizes.server_changes, [
        Way("program", copying(server.connection, erp)),
        Way("prepared statements, ODBC", [BENCH_PROGRAMS / "odbc_changed_copy", erp, server.connection], most=1.2),
    ], prepare, lambda: server.sql(server.hashes))


RACES = {
    "sqlite-full": sqlite_full,
    "sqlite-changed": sqlite_changed,
    "postgresql-full": lambda sizes: _server_full(servers.postgresql(), sizes, most=2.4),
    "postgresql-changed": lambda sizes: _server_changed(servers.postgresql(), sizes),
    "mariadb-full": lambda sizes: _server_full(servers.mariadb(), sizes, most=1.0),
    "mariadb-changed": lambda sizes: _server_changed(servers.mariadb(), sizes),
    "expansion": expansion,
}
