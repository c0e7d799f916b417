"""The data of the cases, made with a fixed seed. It is kept in build/bench until the sandbox changes."""

import os
import random
import shutil
import sqlite3
import sys
from datetime import date, timedelta
from pathlib import Path

from measuring import BENCH_PROGRAMS, FOLDER, JAVA_MEMORY, PROGRAMS, run

TODAY = "2026-11-20"
LONG_AGO = "2000-01-01 00:00:00"


def made(path, make):
    """The file. Makes it if it is missing or older than the sandbox."""
    sandbox = PROGRAMS / "orvan-sandbox"
    if not path.exists() or path.stat().st_mtime < sandbox.stat().st_mtime:
        FOLDER.mkdir(parents=True, exist_ok=True)
        unfinished = path.with_suffix(".unfinished")
        remove(unfinished)
        make(unfinished)
        if path.suffix == ".db":
            _into_one_file(unfinished)
        unfinished.rename(path)
    return path


def _into_one_file(path):
    """The last connection removes the journal when it closes."""
    file = sqlite3.connect(path)
    file.execute("pragma wal_checkpoint(truncate)")
    file.close()


def remove(path):
    for end in ("", "-wal", "-shm"):
        Path(f"{path}{end}").unlink(missing_ok=True)


def copy_file(source, target):
    """Copies a database and flushes it to disk, so that this is not measured."""
    remove(target)
    shutil.copyfile(source, target)
    with open(target, "rb") as file:
        os.fsync(file)
    return target


def _report(text):
    print(text, file=sys.stderr, flush=True)


def erp(orders):
    """The ERP's file with this number of service orders and an empty audit trail."""
    def make(path):
        _report(f"making {orders:,} service orders")
        run(PROGRAMS / "orvan-sandbox", "make", path, "--seed", 1, "--today", TODAY, "--orders", orders, "--activities", 0)

    return made(FOLDER / f"erp-{orders}.db", make)


def changed_erp(orders, changes):
    """The same after this number of changes in the audit trail: half updates, a quarter inserts, a quarter deletes, in random order."""
    def make(path):
        _report(f"making {changes:,} changes of {orders:,} service orders")
        shutil.copyfile(erp(orders), path)
        change_orders(path, changes)

    return made(FOLDER / f"erp-{orders}-{changes}.db", make)


def change_orders(path, changes):
    dice = random.Random(1)
    file = sqlite3.connect(path, isolation_level=None)
    columns = [row[1] for row in file.execute("pragma table_info(tssoc200)")][1:]
    insert = f"insert into tssoc200 select 'SN' || substr(orno, 3), {', '.join(columns)} from tssoc200 where orno = ?"
    orders = [row[0] for row in file.execute("select orno from tssoc200 order by orno")]
    file.execute("begin")
    for place, order in enumerate(dice.sample(orders, changes)):
        day = f"2026-12-{dice.randint(1, 30):02}"
        if place % 4 == 0:
            file.execute("delete from tssoc200 where orno = ?", [order])
        elif place % 4 == 1:
            file.execute(insert, [order])
        elif place % 40 == 2:
            partner = f"BP{dice.randint(1, 99):05}"
            file.execute("update tssoc200 set ofbp = ?, stna = ? where orno = ?", [partner, f"Customer {partner}", order])
        else:
            file.execute("update tssoc200 set osta = ?, pstm = ?, pftm = ? where orno = ?",
                         [dice.randint(1, 5), f"{day} 08:15:00", f"{day} 10:45:00", order])
    file.execute("commit")
    file.close()


def empty_local():
    """A local database with empty tables."""
    path = FOLDER / "empty.db"
    remove(path)
    run(PROGRAMS / "qmxadmin", "init", f"Provider=SQLite;Data Source={path};Mode=Create", "")
    return path


def java_memory(option):
    """A folder with the manifest of the ERP in memory in Java and an option for the JVM."""
    manifest = JAVA_MEMORY / "memory_erp_java.component"
    folder = FOLDER / "components-java"
    folder.mkdir(parents=True, exist_ok=True)
    text = manifest.read_text()
    for relative in ("../../components/qmx_java.so", "memory-erp.jar"):
        text = text.replace(relative, str((JAVA_MEMORY / relative).resolve()))
    (folder / manifest.name).write_text(f"{text}setting option = {option}\n")
    return folder


def local_before_changes(orders):
    """A local database after a full copy, whose next copy of the service orders is by change."""
    def make(path):
        shutil.copyfile(empty_local(), path)
        run(BENCH_PROGRAMS / "sqlite_full_copy", erp(orders), path)
        file = sqlite3.connect(path)
        file.execute("insert into tstables (TableName, in_use, syme, lutm) values ('tssoc200', 0, 2, ?)", [LONG_AGO])
        file.commit()
        file.close()

    return made(FOLDER / f"local-{orders}.db", make)


def orders_as_csv(orders):
    """The rows of a full copy, for SQLite's shell to import."""
    def make(path):
        with open(path, "w") as file:
            file.write(run("sqlite3", "-csv", local_before_changes(orders), "select * from tssoc200"))

    return made(FOLDER / f"orders-{orders}.csv", make)


def local_with_calendars(calendars, years):
    """A local database with calendars that have a morning and an afternoon from Monday to Friday, every week."""
    def make(path):
        shutil.copyfile(empty_local(), path)
        add_calendars(path, calendars, 52 * years)

    return made(FOLDER / f"calendars-{calendars}-{years}.db", make)


def add_calendars(path, calendars, weeks):
    """Each with two intervals a day."""
    file = sqlite3.connect(path)
    mondays = [date(2026, 1, 5) + timedelta(weeks=week) for week in range(weeks)]
    for code in (f"C{1000 + calendar}" for calendar in range(calendars)):
        file.execute("insert into tsmdm140 (emno, ccal) values (?, ?)", [f"E{code}", code])
        file.executemany(
            "insert into tcccp030 (ccal, ract, stdt, sttm, endt, entm) values (?, 'WRK', ?, ?, ?, ?)",
            [(code, f"{monday} 00:00:00", start, f"{monday + timedelta(days=4)} 00:00:00", end)
             for monday in mondays for start, end in ((800, 1200), (1230, 1630))])
    file.commit()
    file.close()


def expanded(calendars, years):
    """The same, expanded."""
    def make(path):
        shutil.copyfile(local_with_calendars(calendars, years), path)
        run(BENCH_PROGRAMS / "expand_calendars", path)

    return made(FOLDER / f"expanded-{calendars}-{years}.db", make)
