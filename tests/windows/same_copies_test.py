#!/usr/bin/env python3
"""Copies under Wine leave the rows, calls, messages and failures that the Linux program leaves from the same file: through
component servers of the C interface, and through COM."""

import datetime
import shutil
import unittest

from programs import TABLES, TREE, WINDOWS, BothSystems, wine
from traces import Clock

REGISTRATION = WINDOWS.path(WINDOWS.components / "orvan_com.dll")


class SameCopies(BothSystems):
    """What both ways have in common."""

    def setUp(self):
        super().setUp()
        self.clock = Clock()
        self.calls = 0

    def assert_same(self, read):
        """Returns what both sites have."""
        linux, windows = (read(site) for site in self.sites)
        self.assertEqual(windows, linux)
        return linux

    def copy(self, table, suffix, erp="orvan.db"):
        """Returns the exit status and standard error."""
        trace = f"{table}.{suffix}"
        status, _, err = self.assert_same(lambda site: self.clock.plain(site.copy(table, erp, QMX_TRACE=trace)))
        calls = self.assert_same(lambda site: self.clock.calls(site.folder / trace))
        self.assertGreater(len(calls), 20, table)
        self.calls += len(calls)
        return status, err

    def copy_all(self, suffix):
        """Returns the rows of all tables."""
        for table in TABLES:
            self.assertEqual(self.copy(table, suffix), (0, ""), table)
        self.assert_same(lambda site: self.clock.plain((site.folder / "messages.txt").read_text(encoding="utf-8").splitlines()))
        return self.assert_same(lambda site: self.clock.plain(site.tables()))


class Copies:
    """The tests of both ways."""

    def test_all_tables_in_full_and_by_change_and_calendars_on_request_are_copied_as_on_linux(self):
        full = self.copy_all("full")
        self.assertEqual([table for table in TABLES if not full[table]], [])

        # The trail says that the company worked yesterday, after the last update time of all tables.
        yesterday = datetime.date.today() - datetime.timedelta(days=1)
        self.assertEqual(self.linux.run("orvan-sandbox", "work", "--from", f"{yesterday} 08:00:00", "orvan.db")[0], 0)
        shutil.copy(self.linux.folder / "orvan.db", self.windows.folder)
        for site in self.sites:
            site.sql(f"update tstables set syme = 2, lutm = '{yesterday} 00:00:00'")
        changed = self.copy_all("changed")
        self.assertGreater(len([table for table in TABLES if changed[table] != full[table]]), 5)

        employee = self.windows.sql("select min(emno) from tsmdm140 where ccal <> ''")[0][0]
        calendar = self.windows.sql("select min(ccal) from tcccp030")[0][0]
        for request in (f"tcccp030={employee}=E", f"tcccp030={calendar}=C"):
            self.assertEqual(self.copy(request, "request"), (0, ""))
        self.assert_same(lambda site: self.clock.plain(site.tables()))
        self.assertGreater(self.calls, 100000)

    def test_an_erp_without_a_file_or_tables_fails_as_on_linux(self):
        for site in self.sites:
            (site.folder / "empty.db").touch()
        for table, erp in (("tsmdm030", "none.db"), ("tscfg200", "empty.db")):
            status, err = self.copy(table, "failed", erp)
            self.assertEqual(status, 1)
            self.assertIn("because of error", err)


class ThroughComponentServers(Copies, SameCopies):
    pass


class ThroughCom(Copies, SameCopies):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        wine("regsvr32", "/s", REGISTRATION)
        cls.addClassCleanup(wine, "regsvr32", "/s", "/u", REGISTRATION)

    def setUp(self):
        super().setUp()
        (self.windows.folder / "none").mkdir()
        self.windows.environment["QMX_COMPONENTS"] = "none"

    def test_nothing_is_copied_without_the_registration(self):
        wine("regsvr32", "/s", "/u", REGISTRATION)
        self.addCleanup(wine, "regsvr32", "/s", REGISTRATION)
        status, _, err = self.windows.copy("tsmdm030")
        self.assertEqual(status, 2)
        self.assertIn("QMXServer20.", err)

    def test_a_component_that_ends_the_process_is_reported(self):
        wine("regsvr32", "/s", "/u", REGISTRATION)
        self.addCleanup(wine, "regsvr32", "/s", REGISTRATION)
        ending = self.windows.folder / "ending"
        ending.mkdir()
        for file in (WINDOWS.components / "orvan_com.dll", *(TREE / "build/windows/tests/startup/servers").glob("ending.*")):
            shutil.copy(file, ending)
        registration = WINDOWS.path(ending / "orvan_com.dll")
        wine("regsvr32", "/s", registration)
        self.addCleanup(wine, "regsvr32", "/s", "/u", registration)
        for what, said in (("exit 0", "exit was called by something other than the program"), ("fault", "An access violation ended the run"),
                           ("raise 22", "abort ended the run")):
            self.windows.sql("delete from tstables")
            status, _, err = self.windows.copy("tsmdm030", QMX_TEST_AT="getServiceType", QMX_TEST_CALL="5", QMX_TEST_DO=what)
            self.assertNotIn(status, (0, 1), what)
            self.assertEqual(err.splitlines()[0], f"{said} during getServiceType of ServiceTypes.ServiceTypesManager: the table stays in progress: "
                             "qmxadmin release tsmdm030")


if __name__ == "__main__":
    unittest.main(verbosity=2)
