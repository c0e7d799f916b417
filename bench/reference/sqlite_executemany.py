"""sqlite_executemany.py ORVAN LOCAL QUERY: the rows of the query into the service orders, with Python's executemany."""

import sqlite3
import sys


def main():
    orvan, path, query = sys.argv[1:]
    erp = sqlite3.connect(orvan)
    local = sqlite3.connect(path)
    for setting in ("journal_mode=wal", "synchronous=normal", "wal_autocheckpoint=16000"):
        local.execute(f"pragma {setting}")
    rows = erp.execute(query)
    marks = ", ".join("?" for _ in rows.description)
    with local:
        local.executemany(f"insert into tssoc200 values ({marks})", rows)
    local.close()


if __name__ == "__main__":
    main()
