#!/usr/bin/env python3
"""Copies under Wine leave the rows, calls, messages and failures that the Linux program leaves from the same file: through
component servers of the C interface, and through COM."""

import datetime
import json
import re
import shutil
import unittest
from pathlib import Path

from programs import LINUX, TABLES, TREE, WINDOWS, BothSystems, wine
from traces import Clock

BUILT_IN = "built in\n  java:java.util.Date\n"
PROG_IDS = sorted(re.findall(r"^progid = (.*)$", "".join(file.read_text() for file in LINUX.components.glob("*.component")), re.MULTILINE))
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

    def check(self, site, *arguments):
        """Returns the exit status and standard output."""
        status, out, _ = site.run("qmxadmin", "check", "Provider=SQLite;Data Source=local.db", "", "--logs", "log",
                                  "--component", "OrvanSandbox, orvan.db", *arguments)
        return status, re.sub(r"\d+ MiB free", "", out.replace("\r", ""))

    def components(self):
        status, out, _ = self.windows.run("qmxadmin", "components")
        return status, out.replace("\r", "")

    def test_qmxadmin_finds_all_components(self):
        out = self.assert_same(lambda site: self.check(site, "--records"))
        self.assertEqual(out[0], 0, out)
        self.assertNotIn("wrong", out[1])
        self.assertIn("tsmdm030, ServiceTypes.ServiceTypesManager: answers and has records\n", out[1])
        self.assertIn("QMXServer20.ClientRequests: can be created\n", out[1])
        self.assertEqual(self.components(), (0, "COM\n" + "".join(f"  {name}\n" for name in PROG_IDS) + BUILT_IN))
        listed = json.loads(self.windows.run("qmxadmin", "components", "--json")[1])
        self.assertEqual(listed[0], {"progid": "Addresses.Addresses", "manifest": None, "library": None, "loads": True, "serves": True,
                                     "server": "COM", "problem": None})

    def test_qmxadmin_lists_a_class_of_com_that_a_manifest_serves_before_it(self):
        for file in WINDOWS.components.glob("qmx_sandbox_server.*"):
            shutil.copy(file, self.windows.folder / "none")
        self.assertEqual(self.check(self.windows)[0], 0)
        status, out = self.components()
        self.assertEqual(status, 0)
        self.assertRegex(out, r"\nCOM\n(  .*\n)*  QMXServer20\.ClientRequests  \(served by .*none.qmx_sandbox_server\.component\)\n")

    def test_qmxadmin_finds_classes_that_are_registered_and_cannot_be_created(self):
        other = Path(shutil.copytree(WINDOWS.components, self.windows.folder / "other"))
        wine("regsvr32", "/s", "/u", REGISTRATION)
        wine("regsvr32", "/s", WINDOWS.path(other / "orvan_com.dll"))
        self.addCleanup(wine, "regsvr32", "/s", REGISTRATION)
        self.addCleanup(wine, "regsvr32", "/s", "/u", REGISTRATION)
        (other / "orvan_com.dll").unlink()
        missing = r"COM: its library .*other\\orvan_com\.dll is missing: 0x[0-9A-F]{8}.*; install the component again"
        status, out = self.check(self.windows)
        self.assertEqual(status, 1)
        self.assertRegex(out, r"\nwrong        tsmdm030, ServiceTypes\.ServiceTypesManager: error 429, .*; " + missing)
        self.assertRegex(out, r"\nwrong        QMXServer20\.ClientRequests: error 429, .*; " + missing)
        self.assertIn("java:java.util.Date: can be created\n", out)
        status, out = self.components()
        self.assertEqual(status, 1)
        self.assertRegex(out, "^COM\n" + "".join(f"  {name}: {missing}\n" for name in PROG_IDS) + BUILT_IN)

    def test_qmxadmin_finds_classes_that_are_nowhere(self):
        wine("regsvr32", "/s", "/u", REGISTRATION)
        self.addCleanup(wine, "regsvr32", "/s", REGISTRATION)
        status, out = self.check(self.windows)
        self.assertEqual(status, 1)
        self.assertIn("\nwrong        tsmdm030, ServiceTypes.ServiceTypesManager: ServiceTypes.ServiceTypesManager is not registered. One of the "
                      "manifests must name it, or it must be registered in COM. \"qmxadmin components\" lists them.\n", out)
        self.assertIn("\nnot checked  QMXServer20.ClientRequests: it is not registered; only copies with a REQUEST need it\n", out)
        self.assertEqual(self.components(), (0, BUILT_IN))

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
