#!/usr/bin/env python3
"""Copies through Wine's odbc32, which hands them to this machine's ODBC drivers: the rows and failures of the Linux program.

To be run by tests/servers/with_servers.sh, in the prefix of tests/windows/run.sh.
"""

import datetime
import os
import re
import shutil
import socket
import subprocess
import tempfile
import unittest
from pathlib import Path

from programs import LINUX, TABLES, TREE, WINDOWS, Site

COPIED = ("tsmdm030", "tsmdm140", "tsmdm135", "tcccp030", "tssoc200")
LETTERS = "Zürich Łódź Ωμέγα Жук שלום 東京 🙂"
PASSWORD = "wild;{}rose"  # as tests/servers/private_servers.sh has it


def output(*command, **more):
    return subprocess.run(command, check=True, capture_output=True, **more).stdout.decode()


class Sqlite:
    def __init__(self, folder):
        self.folder = folder

    def create(self, name):
        return f"Driver=SQLite3;Timeout=30000;Database={self.folder / name}.db"

    def sql(self, name, statement):
        return output("sqlite3", self.folder / f"{name}.db", statement).splitlines()


class Postgresql:
    def __init__(self, _):
        self.server = os.environ["QMX_TEST_POSTGRESQL"]
        self.port = re.search(r"PORT=(\d+)", self.server)[1]

    def create(self, name):
        self.sql("postgres", f"create database {name}")
        return self.server.replace("DATABASE=postgres", f"DATABASE={name}")

    def sql(self, name, statement):
        return output("psql", "--host=127.0.0.1", f"--port={self.port}", "--username=qmx", f"--dbname={name}", "--tuples-only", "--no-align",
                      f"--command={statement}", env=os.environ | {"PGPASSWORD": PASSWORD}).splitlines()


class Mariadb:
    def __init__(self, _):
        self.server = os.environ["QMX_TEST_MARIADB"]
        self.port = re.search(r"PORT=(\d+)", self.server)[1]

    def create(self, name):
        self.sql("", f"create database {name} character set utf8mb4 collate utf8mb4_nopad_bin")
        return f"{self.server};Database={name}"

    def sql(self, name, statement):
        return output("mariadb", "--no-defaults", "--host=127.0.0.1", f"--port={self.port}", "--user=qmx", "--skip-column-names", "--batch",
                      "--default-character-set=utf8mb4", f"--execute={statement}", name, env=os.environ | {"MYSQL_PWD": PASSWORD}).splitlines()


class CopiesOverOdbc:
    @classmethod
    def setUpClass(cls):
        cls.place = Path(tempfile.mkdtemp(prefix="qmx-odbc-"))
        cls.addClassCleanup(shutil.rmtree, cls.place)
        cls.erp = cls.place / "orvan.db"
        output(*LINUX.program("orvan-sandbox"), "make", cls.erp, "--employees", "8", "--orders", "60")
        output("sqlite3", cls.erp, f"update tsmdm030 set \"desc\" = '{LETTERS}' where cstp = 'ADV'")
        cls.database = cls.kind(cls.place)
        cls.sites, cls.names = [], []
        for system, name in ((LINUX, "qmx_linux"), (WINDOWS, "qmx_windows")):
            site = Site(system, cls.place / name, cls.erp, cls.erp)
            site.connection = cls.database.create(name)
            cls.sites.append(site)
            cls.names.append(name)
        cls.linux, cls.windows = cls.sites

    def setUp(self):
        for site in self.sites:
            self.assertEqual(site.run("qmxadmin", "init", site.connection, "", "--quiet"), (0, "", ""))

    def pairs(self):
        """The keywords and values of the connection text."""
        return re.findall(r"([^=;]+)=(\{(?:[^}]|\}\})*\}|[^;]*);?", self.windows.connection)

    def copy(self, site, table, connection=None):
        return site.run("qmxdatacopy", f"{connection or site.connection},,{table},log,OrvanSandbox,orvan.db,17")

    def copy_all(self):
        for table in COPIED:
            for site in self.sites:
                self.assertEqual(self.copy(site, table), (0, "", ""), (site.system.bin, table))

    def rows(self, name):
        return {table: sorted(self.database.sql(name, f"select * from {table}")) for table in TABLES}

    def assert_same_rows(self):
        linux, windows = (self.rows(name) for name in self.names)
        for table in COPIED:
            self.assertGreater(len(linux[table]), 5, table)
        self.assertEqual(linux, windows)
        return windows

    def test_copies_in_full_and_by_change_leave_the_rows_of_linux(self):
        self.copy_all()
        full = self.assert_same_rows()
        self.assertTrue(any(LETTERS in row for row in full["tsmdm030"]), full["tsmdm030"])
        yesterday = datetime.date.today() - datetime.timedelta(days=1)
        output(*LINUX.program("orvan-sandbox"), "work", "--from", f"{yesterday} 08:00:00", self.linux.folder / "orvan.db")
        changed = f"update tsmdm030 set \"desc\" = '{LETTERS[::-1]}' where cstp = 'CAL'"
        output("sqlite3", self.linux.folder / "orvan.db", changed)
        shutil.copy(self.linux.folder / "orvan.db", self.windows.folder)
        for name in self.names:
            self.database.sql(name, f"update tstables set syme = 2, lutm = '{yesterday} 00:00:00'")
        self.copy_all()
        after = self.assert_same_rows()
        self.assertTrue(any(LETTERS[::-1] in row for row in after["tsmdm030"]), after["tsmdm030"])
        self.assertNotEqual(full["tssoc200"], after["tssoc200"])

        status, said, _ = self.windows.run("qmxadmin", "verify", self.windows.connection, "", "tsmdm030", "tssoc200", "--after-changed", "--component",
                                           "OrvanSandbox, orvan.db")
        self.assertEqual(status, 0, said)

    def test_a_failure_says_what_it_says_on_linux(self):
        for name in self.names:
            self.database.sql(name, "drop table tsmdm100")
        (status, out, err), (windows_status, windows_out, windows_err) = (self.copy(site, "tsmdm100") for site in self.sites)
        self.assertEqual((windows_status, windows_out), (status, out))
        self.assertEqual(status, 1)
        self.assertIn("tsmdm100", err)
        self.assertIn("SQLSTATE", err)
        for name in self.names:
            err, windows_err = err.replace(name, "DATABASE"), windows_err.replace(name, "DATABASE")
        self.assertEqual(windows_err, err)

    def test_a_data_source_serves(self):
        """It is one of Linux, where Wine looks for it."""
        names = {"SERVER": "Servername", "UID": "Username"} if isinstance(self.database, Postgresql) else {}
        lines = "".join(f"{names.get(keyword, keyword)} = {value}\n" for keyword, value in self.pairs() if keyword != "PWD")
        (self.place / "odbc.ini").write_text(f"[local]\n{lines}", encoding="utf-8")
        password = "".join(f";PWD={value}" for keyword, value in self.pairs() if keyword == "PWD")
        line = f"DSN=local{password},,tsmdm030,log,OrvanSandbox,orvan.db,17"
        self.assertEqual(self.windows.run("qmxdatacopy", line, ODBCINI=str(self.place / "odbc.ini")), (0, "", ""))

    def test_the_file_of_a_data_source_serves(self):
        folder = self.windows.folder / "Größe Ж"
        folder.mkdir(exist_ok=True)
        lines = "".join(f"{keyword} = {value}\r\n" for keyword, value in self.pairs())
        (folder / "örtlich Δ.dsn").write_text(f"[ODBC]\r\n; for the copies\r\n{lines}", encoding="utf-8", newline="")
        for path in (r"Größe Ж\örtlich Δ.dsn", WINDOWS.path(folder / "örtlich Δ.dsn")):
            self.assertEqual(self.copy(self.windows, "tsmdm030", f"FILEDSN={path}"), (0, "", ""))
        status, _, err = self.copy(self.windows, "tsmdm030", r"FILEDSN=Größe Ж\keine.dsn")
        self.assertEqual(status, 2)
        self.assertIn(r"The data source file Größe Ж\keine.dsn cannot be read or has no section [ODBC].", err)


    def test_a_driver_that_is_not_installed_is_reported_with_where_the_names_are(self):
        advice = {LINUX: "Check Driver= against the names in odbcinst.ini, or DSN= against those in odbc.ini.",
                  WINDOWS: "Check Driver= and DSN= against the names in the 64-bit ODBC administrator (odbcad32)."}
        for site in self.sites:
            for text in ("Driver=No Such Driver;UID=qmx", "DSN=no_such_source"):
                status, _, err = self.copy(site, "tsmdm030", text)
                self.assertEqual(status, 2)
                self.assertIn(advice[site.system], err)

    def test_the_file_of_a_data_source_may_begin_with_a_byte_order_mark_and_is_not_utf_16(self):
        lines = "".join(f"{keyword} = {value}\r\n" for keyword, value in self.pairs())
        (self.windows.folder / "notepad.dsn").write_text(f"[odbc]\r\n# for the copies\r\n{lines}", encoding="utf-8-sig", newline="")
        self.assertEqual(self.copy(self.windows, "tsmdm030", "FILEDSN=notepad.dsn"), (0, "", ""))
        (self.windows.folder / "unicode.dsn").write_text(f"[ODBC]\r\n{lines}", encoding="utf-16", newline="")
        status, _, err = self.copy(self.windows, "tsmdm030", "FILEDSN=unicode.dsn")
        self.assertEqual(status, 2)
        self.assertIn("The data source file unicode.dsn, line 1: the text is UTF-16. Save it as UTF-8.", err)


class OverSqlite(CopiesOverOdbc, unittest.TestCase):
    kind = Sqlite


@unittest.skipUnless("QMX_TEST_POSTGRESQL" in os.environ, "no PostgreSQL server")
class OverPostgresql(CopiesOverOdbc, unittest.TestCase):
    kind = Postgresql

    def test_a_silent_server_ends_the_run(self):
        with socket.create_server(("127.0.0.1", 0)) as server:
            connection = re.sub(r"PORT=\d+", f"PORT={server.getsockname()[1]}", self.windows.connection)
            line = f"{connection},,tsmdm030,log,OrvanSandbox,orvan.db,17"
            status, _, err = self.windows.run("qmxdatacopy", line, QMX_SILENCE_LIMIT="1")
        self.assertEqual(status, 2, err)
        self.assertIn("The server did not answer for 6 seconds while the program logged in, and the driver did not return when its connection was ended.",
                      err)


@unittest.skipUnless("QMX_TEST_MARIADB" in os.environ, "no MariaDB server")
class OverMariadb(CopiesOverOdbc, unittest.TestCase):
    kind = Mariadb


if __name__ == "__main__":
    unittest.main(verbosity=2)
