#!/usr/bin/env python3
"""A full copy must not come to take more instructions a row unnoticed: times differ from run to run, instructions do not.

Only the program's own thread is counted, which reads the ERP and fills the batches; how many rows the thread beside it
sends at once depends on the time. Against the optimised build, which the demo makes before the tests run.
"""

import os
import shutil
import sqlite3
import sys
import tempfile
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "bench"))

from measuring import PROGRAMS, run

ROWS = 10_000
CEILING = 40_000  # a tenth more than measured with g++ 12 on x86-64
SKIPPED = 77


def require(there, what):
    if there:
        return
    if os.environ.get("CI") == "true":
        sys.exit(f"{what} is missing.")
    print(f"SKIPPED: {what} is missing.")
    sys.exit(SKIPPED)


def instructions(rows, folder):
    """Of a whole run that copies that many service orders into an empty SQLite database."""
    erp, local, counts = folder / "erp.db", folder / "local.db", folder / "counts"
    run(PROGRAMS / "orvan-sandbox", "make", erp, "--seed", 1, "--today", "2026-11-20", "--orders", rows, "--activities", 0)
    run(PROGRAMS / "qmxadmin", "init", f"Provider=SQLite;Data Source={local};Mode=Create", "")
    run("valgrind", "--tool=callgrind", "--separate-threads=yes", f"--callgrind-out-file={counts}", PROGRAMS / "qmxdatacopy",
        f"Provider=SQLite;Data Source={local},,tssoc200,{folder},OrvanSandbox,{erp}")
    copied = sqlite3.connect(local).execute("select count(*) from tssoc200").fetchone()[0]
    if copied != rows:
        sys.exit(f"{copied} rows were copied, not {rows}.")
    lines = Path(f"{counts}-01").read_text().splitlines()
    return next(int(line.removeprefix("totals: ")) for line in lines if line.startswith("totals: "))


def instructions_a_row():
    with tempfile.TemporaryDirectory() as few, tempfile.TemporaryDirectory() as many:
        return (instructions(ROWS + 1, Path(many)) - instructions(1, Path(few))) // ROWS


def main():
    require(shutil.which("valgrind"), "valgrind")
    require((PROGRAMS / "qmxdatacopy").exists(), f"the optimised build in {PROGRAMS}")
    row = instructions_a_row()
    if row > CEILING:  # after a pause that a busy machine made, a row goes out in the program's thread
        row = min(row, instructions_a_row())
    found = f"A row takes {row:,} instructions; the ceiling is {CEILING:,}."
    if row > CEILING:
        sys.exit(f"{found}\nFind out what takes them: valgrind --tool=callgrind --separate-threads=yes, then callgrind_annotate "
                 "on the first thread's file. If they are worth it, raise the ceiling knowingly.")
    print(found)


if __name__ == "__main__":
    main()
