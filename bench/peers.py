"""Debian tools that users could take instead of the program, with the commands that copy all service orders."""

import sys

import data
from measuring import FOLDER, LOCAL, ROOT, run
from way import Way


def _query():
    """The ERP's service orders as the local table has them."""
    def column(name, kind):
        return f"{name} = 1 as {name}" if kind == "smallint" else name

    described = run("sqlite3", "-separator", " ", data.empty_local(), "select name, type from pragma_table_info('tssoc200')")
    columns = [column(*line.split(" ", 1)) for line in described.splitlines()]
    return f"select {', '.join(columns)} from tssoc200 order by orno"


def executemany(erp):
    return [sys.executable, ROOT / "bench/reference/sqlite_executemany.py", erp, LOCAL, _query()]


def shell_import(csv):
    settings = ("pragma journal_mode=wal", "pragma synchronous=normal", "pragma wal_autocheckpoint=16000")
    return ["sqlite3", *(word for setting in settings for word in ("-cmd", setting)), LOCAL, f".import --csv '{csv}' tssoc200"]


def _pgloader(erp, at):
    """Moments and texts need no conversion. A function in Lisp converts the flags."""
    flags = run("sqlite3", data.empty_local(), "select name from pragma_table_info('tssoc200') where type = 'smallint'").split()
    casts = ", ".join(f"column tssoc200.{name} to smallint using qmx-flag" for name in flags)
    function, load = FOLDER / "flags.lisp", FOLDER / "orders.load"
    function.write_text('(in-package #:pgloader.transforms)\n(defun qmx-flag (code) (if (eql code 1) "1" "0"))\n')
    load.write_text(
        f"load database from sqlite://{erp} into postgresql://{at['UID']}@{at['SERVER']}:{at['PORT']}/bench\n"
        "with data only, create no tables, include no drop, create no indexes, no foreign keys, reset no sequences\n"
        f"cast {casts}\nincluding only table names like 'tssoc200';\n")
    return ["env", "PGPASSWORD=" + at["PWD"], "pgloader", "--quiet", "--root-dir", FOLDER / "pgloader", "--load-lisp-file", function,
            load]


def _ogr2ogr(erp, *target):
    return ["ogr2ogr", "-append", *target, erp, "-nln", "tssoc200", "-sql", _query()]


def of_postgresql(erp, at):
    target = f"PG:host={at['SERVER']} port={at['PORT']} user={at['UID']} dbname=bench"
    ogr2ogr = _ogr2ogr(erp, "-f", "PostgreSQL", "--config", "PG_USE_COPY", "YES", target)
    return [
        Way("pgloader", _pgloader(erp, at), reads="the ERP's file with pgloader's own reader",
            writes="COPY of 25,000 rows, one transaction each"),
        Way("ogr2ogr", ["env", "PGPASSWORD=" + at["PWD"], *ogr2ogr], reads="the ERP's file, one select",
            writes="COPY, one transaction per 100,000 rows"),
    ]


def of_mariadb(erp, at):
    target = f"MySQL:bench,host={at['SERVER']},port={at['PORT']},user={at['UID']},password={at['PWD']}"
    return [Way("ogr2ogr", _ogr2ogr(erp, "-f", "MySQL", target), once=True, reads="the ERP's file, one select",
                writes="one statement and one commit per row; it has no other form there")]
