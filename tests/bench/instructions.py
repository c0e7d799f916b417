#!/usr/bin/env python3
"""Copies and the expansion must not come to take more instructions unnoticed: times differ from run to run, instructions do not.

Only the program's own thread is counted, which reads the ERP and fills the batches; how many rows the thread beside it
sends at once depends on the time. Against the optimised build.
"""

import os
import re
import shutil
import sqlite3
import sys
import tempfile
from contextlib import closing
from dataclasses import dataclass
from pathlib import Path
from typing import Callable

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "bench"))

import data
from measuring import PROGRAMS, run

SKIPPED = 77


def require(there, what):
    if there:
        return
    if os.environ.get("CI") == "true":
        sys.exit(f"{what} is missing.")
    print(f"SKIPPED: {what} is missing.")
    sys.exit(SKIPPED)


def sqlite(path, *arguments):
    with closing(sqlite3.connect(path)) as file:
        answer = file.execute(*arguments).fetchall()
        file.commit()
    return answer


def connection(local):
    return f"Provider=SQLite;Data Source={local}"


def make_local(folder):
    local = folder / "local.db"
    run(PROGRAMS / "qmxadmin", "init", f"{connection(local)};Mode=Create", "")
    return local


def make_erp(folder, orders):
    erp = folder / "erp.db"
    run(PROGRAMS / "orvan-sandbox", "make", erp, "--seed", 1, "--today", data.TODAY, "--orders", orders, "--activities", 0)
    return erp


def copying(erp, local):
    return [PROGRAMS / "qmxdatacopy", f"{connection(local)},,tssoc200,{local.parent},OrvanSandbox,{erp}"]


def counted(folder, *command):
    """The instructions of the command's first thread, and of all its threads."""
    counts = folder / "counts"
    run("valgrind", "--tool=callgrind", "--separate-threads=yes", f"--callgrind-out-file={counts}", *command)
    totals = [next(int(line.removeprefix("totals: ")) for line in file.read_text().splitlines() if line.startswith("totals: "))
              for file in sorted(folder.glob("counts-*"))]
    return totals[0], sum(totals)


def require_equal(found, expected, what):
    if found != expected:
        sys.exit(f"{found} {what}, not {expected}.")


def full_copy(folder, rows):
    erp, local = make_erp(folder, rows), make_local(folder)
    counts = counted(folder, *copying(erp, local))
    require_equal(sqlite(local, "select count(*) from tssoc200")[0][0], rows, "rows were copied")
    return counts


def changed_copy(folder, changes):
    orders = 8_000
    erp, local = make_erp(folder, orders), make_local(folder)
    run(*copying(erp, local))
    data.change_orders(erp, changes)
    sqlite(local, "update tstables set syme = 2, lutm = ?", [data.LONG_AGO])
    counts = counted(folder, *copying(erp, local))
    logged = re.findall(r"(\d+) records (\w+)", (folder / "tssoc200.log").read_text())[-3:]
    require_equal(logged, [(str(changes // 4), "Inserted"), (str(changes // 2), "Updated"), (str(changes // 4), "Deleted")],
                  "records were logged")
    return counts


def expansion(folder, calendars):
    weeks = 520
    local = make_local(folder)
    data.add_calendars(local, calendars, weeks)
    counts = counted(folder, PROGRAMS / "qmxadmin", "expand", connection(local), "")
    require_equal(sqlite(local, "select count(*) from tscalender")[0][0], 10 * weeks * calendars, "intervals were written")
    return counts


@dataclass(frozen=True)
class Measured:
    what: str
    count: Callable[[Path, int], tuple]  # in that folder, for so many
    few: int
    many: int
    each: int  # of what is counted, for one of few and many
    ceiling: int  # measured with g++ 12 on x86-64 where the program's thread commits every group, and some more


MEASURED = {
    "full-copy": Measured("A row of a full copy", full_copy, 1, 10_001, 1, 37_000),
    "changed-copy": Measured("A change", changed_copy, 40, 4_040, 1, 101_500),
    "expansion": Measured("An interval of an expansion", expansion, 1, 2, 5_200, 13_500),
}


def instructions_of_one(measured):
    with tempfile.TemporaryDirectory() as few, tempfile.TemporaryDirectory() as many:
        counts = zip(measured.count(Path(many), measured.many), measured.count(Path(few), measured.few))
    return [(many - few) // ((measured.many - measured.few) * measured.each) for many, few in counts]


def main():
    measured = MEASURED[sys.argv[1]]
    require(shutil.which("valgrind"), "valgrind")
    require((PROGRAMS / "qmxdatacopy").exists(), f"the optimised build in {PROGRAMS}")
    own, together = instructions_of_one(measured)
    for _ in range(2):  # on a busy machine the program's thread sends rows and commits groups that the helper thread would
        if own > measured.ceiling:
            own, together = min([own, together], instructions_of_one(measured))
    found = f"{measured.what} takes {own:,} instructions, {together:,} with the helper thread's; the ceiling is {measured.ceiling:,}."
    if own > measured.ceiling:
        sys.exit(f"{found}\nFind out what takes them: valgrind --tool=callgrind --separate-threads=yes, then callgrind_annotate "
                 "on the first thread's file. If they are worth it, raise the ceiling knowingly.")
    print(found)


if __name__ == "__main__":
    main()
