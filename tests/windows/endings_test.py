#!/usr/bin/env python3
"""Ends of runs under Wine that something else asks for: keys at the console, the end of the session, and crashes."""

import shutil
import subprocess
import tempfile
import time
import unittest
from pathlib import Path

from programs import LINUX, TREE, WINDOWS, Site, wine
from terminal import Terminal

ENDING = TREE / "build/windows/tests/startup/servers"
LONG = 60  # seconds
ENDS = "the copy ends at its next call to the ERP."


class Endings(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.place = Path(tempfile.mkdtemp(prefix="qmx-endings-"))
        cls.addClassCleanup(shutil.rmtree, cls.place)
        (cls.place / "orvan.db").touch()  # the components of these tests need no ERP
        subprocess.run([*LINUX.program("qmxadmin"), "init", f"Provider=SQLite;Data Source={cls.place / 'local.db'};Mode=Create", "local"],
                       check=True, stdout=subprocess.DEVNULL)

    def setUp(self):
        self.site = Site(WINDOWS, Path(tempfile.mkdtemp(dir=self.place)) / "site", self.place / "orvan.db", self.place / "local.db")
        self.waiting = self.site.folder / "waiting"
        self.waiting.mkdir()

    def do_at_the_fifth_record(self, what):
        self.site.environment |= {"QMX_COMPONENTS": WINDOWS.path(ENDING), "QMX_TEST_AT": "getServiceType", "QMX_TEST_CALL": "5", "QMX_TEST_DO": what}

    def in_use(self):
        return self.site.sql("select in_use from tstables")

    def last_record(self):
        return self.site.log("QMXRuns.jsonl").decode().splitlines()[-1]

    def admin_copy(self):
        """qmxadmin copy in a terminal, at the fifth record of its copy."""
        self.do_at_the_fifth_record("wait waiting")
        terminal = Terminal(self.site, *WINDOWS.program("qmxadmin"), "copy", "Provider=SQLite;Data Source=local.db", "local", "tsmdm030",
                            "--logs", "log", "--component", "OrvanSandbox, orvan.db")
        terminal.wait_for(self.waiting / "reached")
        return terminal

    def test_the_first_ctrl_c_of_qmxadmin_copy_ends_its_copies_and_releases_their_tables(self):
        terminal = self.admin_copy()
        terminal.press_ctrl_c()
        terminal.wait_for_text("Ctrl+C: no further copy is started.")
        time.sleep(1)  # the copy hears of it on a thread of its own, and what it says is shown at its end only
        (self.waiting / "go").touch()
        self.assertEqual(terminal.end(), 1)
        self.assertIn("tsmdm030: interrupted", terminal.text())
        self.assertIn(f"qmxadmin: {ENDS}", terminal.text())
        self.assertIn("The table is released, so the next copy can start.", terminal.text())
        self.assertEqual(self.in_use(), [(0,)])
        self.assertIn('"outcome":"failed","status":1', self.last_record())

    def test_the_second_ctrl_c_of_qmxadmin_copy_ends_its_copies_at_once(self):
        terminal = self.admin_copy()
        terminal.press_ctrl_c()
        terminal.wait_for_text("Ctrl+C: no further copy is started.")
        terminal.press_ctrl_c()
        self.assertEqual(terminal.end(), 1)
        self.assertIn("tsmdm030: ended by an interruption", terminal.text())
        self.assertEqual(self.in_use(), [(1,)])

    def test_the_end_of_the_session_releases_the_table(self):
        self.do_at_the_fifth_record("wait waiting")
        run = self.site.start("qmxdatacopy", self.site.line("tsmdm030"))
        self.wait_for(self.waiting / "reached")
        end = subprocess.Popen(["wineboot", "--end-session"], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        said = run.error_line()
        (self.waiting / "go").touch()
        self.assertEqual(run.end()[0], 1)
        self.assertEqual((said.split(": ")[0] in ("CTRL_LOGOFF", "CTRL_SHUTDOWN"), said.split(": ")[1].startswith(ENDS)), (True, True), said)
        self.assertEqual(self.in_use(), [(0,)])
        self.assertIn('"outcome":"failed","status":1', self.last_record())
        end.wait(timeout=LONG)

    def test_wm_close_releases_the_table(self):
        self.do_at_the_fifth_record("wait waiting")
        run = self.site.start("qmxdatacopy", self.site.line("tsmdm030"))
        self.wait_for(self.waiting / "reached")
        wine("taskkill", "/im", "qmxdatacopy.exe")
        self.assertEqual(run.error_line().partition(":")[0], "WM_CLOSE")
        (self.waiting / "go").touch()
        status, _, err = run.end()
        self.assertEqual(status, 1)
        self.assertIn("WM_CLOSE asked the program to end.", err)
        self.assertEqual(self.in_use(), [(0,)])

    def test_a_crash_shows_no_window(self):
        self.do_at_the_fifth_record("error_mode")
        status, _, err = self.site.copy("tsmdm030")
        self.assertEqual((status, err), (0, f"error mode {0x8003}\n"))

    def wait_for(self, path):
        end = time.monotonic() + LONG
        while not path.exists():
            self.assertLess(time.monotonic(), end, path)
            time.sleep(0.01)

    def test_a_stack_overflow_of_a_component_is_reported_and_ends_the_run(self):
        self.do_at_the_fifth_record("overflow")
        status, _, err = self.site.copy("tsmdm030")
        self.assertNotIn(status, (0, 1, 2, 3, 4))
        self.assertEqual(err.partition("\n")[0], "A stack overflow ended the run during getServiceType of ServiceTypes.ServiceTypesManager: the table "
                         "stays in progress: qmxadmin release tsmdm030")
        self.assertIn('"outcome":"crashed","status":139', self.last_record())


if __name__ == "__main__":
    unittest.main(verbosity=2)
