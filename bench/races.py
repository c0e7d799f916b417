"""The program's copies, and other ways to do the same work."""

from dataclasses import dataclass
from typing import Callable

import data
import peers
import servers
from measuring import BENCH_PROGRAMS, JAVA_MEMORY, LOCAL, MEMORY, copying, copying_from_memory, copying_into_file, run
from way import Way


@dataclass(frozen=True)
class Race:
    """The ways take turns. Each starts from the same rows and must leave the same content. The first way is the program's."""

    title: str
    rows: int  # added or changed ones
    ways: list
    prepare: Callable[[], None]
    content: Callable[[], str]


ERP = "the ERP's file through a component: one object per record, one call per field"
OWN = "the ERP's file with SQLite's C interface, one select"
ROW_BY_ROW = "one statement per row, one transaction"
EACH_CHANGE = "the audit entries and each order with SQLite's C interface"


def _local_content(table):
    return run(BENCH_PROGRAMS / "table_content", LOCAL, table).strip()


def _empty_texts_to_null():
    """SQLite's shell imports empty texts instead of null. In the program's rows, a moment is null or a time."""
    moments = run("sqlite3", LOCAL, "select name from pragma_table_info('tssoc200') where type = 'datetime'").split()
    run("sqlite3", LOCAL, "update tssoc200 set " + ", ".join(f"{name} = nullif({name}, '')" for name in moments))


def sqlite_full(sizes):
    erp = data.erp(sizes.orders)
    empty = data.empty_local()
    csv = data.orders_as_csv(sizes.orders)
    return Race("full copy, SQLite", sizes.orders, [
        Way("program", copying_into_file(erp), reads=ERP,
            writes="many rows per statement, from a second thread; committed at most 50 ms after the first of them"),
        Way("prepared reads, prepared inserts", [BENCH_PROGRAMS / "sqlite_full_copy", erp, LOCAL], most=1.25, reads=OWN,
            writes=ROW_BY_ROW),
        Way("sqlite3's .import of CSV", peers.shell_import(csv), most=1 / 2, finish=_empty_texts_to_null,
            reads="a CSV file with the local table's rows; neither making it nor turning empty texts into null is measured",
            writes=ROW_BY_ROW),
        Way("Python's executemany", peers.executemany(erp), reads="the ERP's file through Python's sqlite3, one select",
            writes=ROW_BY_ROW),
    ], lambda: data.copy_file(empty, LOCAL), lambda: _local_content("tssoc200"))


def sqlite_changed(sizes):
    erp = data.changed_erp(sizes.orders, sizes.changes)
    before = data.local_before_changes(sizes.orders)
    reference = [BENCH_PROGRAMS / "sqlite_changed_copy", erp, LOCAL]
    return Race("changed copy, SQLite", sizes.changes, [
        Way("program", copying_into_file(erp), reads=f"{ERP}; twice for new orders and changed partners",
            writes="columns that differ; committed after 16 statements or 5 ms"),
        Way("prepared statements", reference, most=1.3, reads=EACH_CHANGE, writes=f"all columns; {ROW_BY_ROW}"),
        Way("the same, only differing columns", [*reference, "differences"], reads=EACH_CHANGE,
            writes="columns that differ, compared in the process; one transaction"),
        Way("prepared statements, a fresh select text per row", [*reference, "fresh"], most=1 / 3.5, reads=EACH_CHANGE,
            writes=f"all columns; {ROW_BY_ROW}"),
    ], lambda: data.copy_file(before, LOCAL), lambda: _local_content("tssoc200"))


def expansion(sizes):
    before = data.local_with_calendars(sizes.calendars, sizes.years)
    expanded = data.expanded(sizes.calendars, sizes.years)
    intervals = int(run("sqlite3", expanded, "select count(*) from tscalender"))
    return Race("expansion of calendars, SQLite", intervals, [
        Way("program", [BENCH_PROGRAMS / "expand_calendars", LOCAL], reads="the calendars",
            writes="the intervals of a calendar once it is expanded; 128 per statement and commit, from a second thread"),
        Way("inserts of the same rows", [BENCH_PROGRAMS / "sqlite_intervals", expanded, LOCAL], most=1.3,
            reads="the finished intervals, into memory, which is not measured",
            writes="one statement per row, one transaction per calendar"),
    ], lambda: data.copy_file(before, LOCAL), lambda: _local_content("tscalender"))


def from_java(sizes):
    """The same records in memory, once in a component in C and once in Java."""
    orders = sizes.server_orders
    empty = data.empty_local()
    command = copying_from_memory(orders)
    reads, writes = "a thousand records in memory, again and again", "as all full copies of the program into SQLite"
    return Race("full copy, SQLite, from memory", orders, [
        Way("from Java", command, reads=f"{reads}, through the Java bridge", writes=writes, components=JAVA_MEMORY),
        Way("from C", command, most=1.6, reads=f"{reads}, through a component in C", writes=writes, components=MEMORY),
    ], lambda: data.copy_file(empty, LOCAL), lambda: _local_content("tssoc200"))


def _full_ways(server, erp, most):
    program = copying(server.connection, erp)
    together = "sent from a second thread; committed with each statement, at most 50 ms after the first row"
    return [
        Way("program", program, reads=ERP, writes=f"{server.row_form}, {together}"),
        Way("program, rows after values", [BENCH_PROGRAMS / "copy_in_values", program[1]], reads=ERP,
            writes=f"128 rows after values, {together}"),
        Way(server.bulk_name, server.load(erp), most, writes="one statement, one transaction",
            reads="the ERP's file with SQLite's C interface, in a process that pipes lines to the client"),
        *server.peers(erp),
    ]


def _server_full(server, sizes, most):
    erp = data.erp(sizes.server_orders)

    def prepare():
        server.sql("truncate table tssoc200", "truncate table tstables", *server.settle)

    return Race(f"full copy, {server.name}", sizes.server_orders, _full_ways(server, erp, most), prepare,
                lambda: server.sql(server.hashes))


def _server_changed(server, sizes):
    erp = data.changed_erp(sizes.server_orders, sizes.server_changes)
    server.sql("truncate table tssoc200")
    run(*server.load(data.erp(sizes.server_orders)))
    server.sql("drop table if exists orders_before", "create table orders_before as select * from tssoc200")

    def prepare():
        server.sql("truncate table tssoc200", "insert into tssoc200 select * from orders_before", "truncate table tstables",
                   f"insert into tstables (TableName, in_use, syme, lutm) values ('tssoc200', 0, 2, '{data.LONG_AGO}')",
                   *server.settle)

    reference = [BENCH_PROGRAMS / "odbc_changed_copy", erp, server.connection]
    return Race(f"changed copy, {server.name}", sizes.server_changes, [
        Way("program", copying(server.connection, erp), reads=f"{ERP}; twice for new orders and changed partners",
            writes="columns that differ; committed after 500 statements or 40 ms"),
        Way("prepared statements, ODBC", reference, most=1.2, reads=EACH_CHANGE, writes=f"all columns; {ROW_BY_ROW}"),
        Way("the same, only differing columns", [*reference, "differences"], reads=EACH_CHANGE,
            writes="columns that differ, compared in the process; one transaction"),
    ], prepare, lambda: server.sql(server.hashes))


RACES = {
    "sqlite-full": sqlite_full,
    "sqlite-changed": sqlite_changed,
    "postgresql-full": lambda sizes: _server_full(servers.postgresql(), sizes, most=2.4),
    "postgresql-changed": lambda sizes: _server_changed(servers.postgresql(), sizes),
    "mariadb-full": lambda sizes: _server_full(servers.mariadb(), sizes, most=1.0),
    "mariadb-changed": lambda sizes: _server_changed(servers.mariadb(), sizes),
    "expansion": expansion,
    "java-full": from_java,
}
