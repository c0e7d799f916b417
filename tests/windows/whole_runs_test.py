#!/usr/bin/env python3
"""Whole runs of the program for Windows under Wine: statuses, logs, paths, consoles and sudden ends."""

import re
import shutil
import subprocess
import unittest
from pathlib import Path

from programs import TREE, WINDOWS, BothSystems, wine
from terminal import Terminal

TODAY = "2025-03-03"
ENDING = TREE / "build/windows/tests/startup/servers"
EVENT_SOURCE = r"HKLM\SYSTEM\CurrentControlSet\Services\EventLog\Application\qmxdatacopy"


class WholeRuns(BothSystems):
    def test_a_copy_as_one_transaction_leaves_the_rows_of_linux(self):
        for site in self.sites:
            self.assertEqual(site.copy("tscfg200", QMX_COPY="whole"), (0, "", ""))
        self.assertEqual(self.linux.dump(), self.windows.dump())

    def test_the_sandbox_makes_the_same_company(self):
        for site in self.sites:
            self.assertEqual(site.run("orvan-sandbox", "make", "--today", TODAY, "--seed", "7", "made.db")[0], 0)
        dumps = [subprocess.run(["sqlite3", site.folder / "made.db", ".dump"], check=True, capture_output=True).stdout for site in self.sites]
        self.assertGreater(len(dumps[0]), 100000)
        self.assertTrue(dumps[0] == dumps[1])

    def test_each_ending_has_its_exit_status(self):
        def statuses(site):
            yield site.run("qmxdatacopy")[0]
            yield site.run("qmxdatacopy", "--version")[0]
            yield site.copy("tsmdm030")[0]
            yield site.copy("tsmdm03")[0]
            yield site.run("qmxdatacopy", site.line("tsmdm100", erp="none.db"))[0]
            yield site.run("qmxdatacopy", site.line("tsmdm100", database="none.db"))[0]
            site.sql("update tstables set in_use = 1")
            yield site.copy("tsmdm030")[0]

        for site in self.sites:
            self.assertEqual(list(statuses(site)), [2, 0, 0, 4, 1, 2, 3], site.system.bin)

    def test_a_failed_copy_says_what_it_says_on_linux(self):
        answers = [site.run("qmxdatacopy", site.line("tsmdm100", erp="none.db")) for site in self.sites]
        self.assertIn("none.db", answers[0][2])
        self.assertIn("because of error", answers[0][2])
        self.assertEqual(answers[0], answers[1])

    def test_logs_have_crlf_and_the_dates_of_windows(self):
        self.windows.copy("tsmdm030")
        log = self.windows.log("tsmdm030.log")
        self.assertRegex(log.decode(), r'^"Date-Time :\d+/\d+/\d{4} : \d+:\d{2}:\d{2} [AP]M"\r\n"Table : tsmdm030 - 12 records Inserted"\r\n$')

    def test_without_an_event_source_the_entry_is_in_the_file(self):
        self.windows.run("qmxdatacopy", self.windows.line("tsmdm030", erp="none.db"))
        entry = self.windows.log("evtlog.txt").decode()
        self.assertRegex(entry, r"^\d+/\d+/\d{4} \d+:\d{2}:\d{2} [AP]M Error qmxdatacopy\[\d+\]: \r\n")
        self.assertIn("Description : DataCopy Failed, see logfile 'log\\tsmdm030.log' for details\r\n", entry)

    def test_with_an_event_source_the_entry_is_in_the_event_log(self):
        wine("reg", "add", EVENT_SOURCE, "/f")
        self.addCleanup(wine, "reg", "delete", EVENT_SOURCE, "/f")
        # Wine keeps no event log. It prints entries, which its own channel shows.
        status, _, err = self.windows.run("qmxdatacopy", self.windows.line("tsmdm030", erp="none.db"), WINEDEBUG="-all,err+eventlog")
        self.assertEqual(status, 1)
        self.assertIn("Description : DataCopy Failed, see logfile", err)
        self.assertFalse((self.windows.folder / "log" / "evtlog.txt").exists())

    def test_paths_have_drives_and_letters_of_any_script(self):
        drive = Path(wine("winepath", "-u", "C:\\").strip())
        place = drive / "Größe Δ"
        shutil.rmtree(place, ignore_errors=True)
        (place / "日誌").mkdir(parents=True)
        self.addCleanup(shutil.rmtree, place)
        shutil.copy(self.local, place / "local.db")
        shutil.copy(self.erp, place / "größe.db")
        line = self.windows.line("tsmdm030", "C:\\Größe Δ\\日誌", "C:\\Größe Δ\\größe.db", "C:\\Größe Δ\\local.db")
        self.assertEqual(self.windows.run("qmxdatacopy", line, QMX_TRACE="C:\\Größe Δ\\trace Ж.jsonl"), (0, "", ""))
        self.assertIn(b"12 records Inserted", (place / "日誌" / "tsmdm030.log").read_bytes())
        self.assertIn("größe.db", (place / "trace Ж.jsonl").read_text(encoding="utf-8"))

    def test_devices_in_the_place_of_a_trace_are_refused(self):
        for device in ("CON", "NUL", "COM1"):
            status, _, err = self.windows.copy("tsmdm030", QMX_TRACE=device)
            self.assertEqual(status, 2, device)
            self.assertIn(f'The trace file "{device}" that QMX_TRACE names cannot be written', err)

    def end_at(self, member, what, **variables):
        """A run with a component that ends the process at its fifth call of the member."""
        self.windows.sql("delete from tstables")
        return self.windows.copy("tsmdm030", QMX_COMPONENTS=WINDOWS.path(ENDING), QMX_TEST_AT=member, QMX_TEST_CALL="5", QMX_TEST_DO=what,
                                 **variables)

    def test_an_exit_of_a_component_is_reported_and_ends_the_run_with_two(self):
        for what in ("exit 0", "exit 3", "exit 0 on a thread", "quick_exit 0", "quick_exit 0 on a thread"):
            status, _, err = self.end_at("getServiceType", what)
            self.assertEqual((status, err), (2, "exit was called by something other than the program during getServiceType of "
                                                "ServiceTypes.ServiceTypesManager: the table stays in progress: qmxadmin release tsmdm030\n"))
            self.assertIn('"outcome":"ended","status":2', self.windows.log("QMXRuns.jsonl").decode().splitlines()[-1])

    def test_a_crash_of_a_component_is_reported(self):
        for what, said, signal in (("fault", "An access violation", 11), ("raise 22", "abort", 6)):
            status, _, err = self.end_at("getServiceType", what)
            self.assertNotIn(status, (0, 1, 2, 3, 4), what)
            self.assertTrue(err.startswith(f"{said} ended the run during getServiceType of ServiceTypes.ServiceTypesManager: the table stays in "
                                           "progress: qmxadmin release tsmdm030\n"), (what, err))
            self.assertIn(f'"outcome":"crashed","status":{128 + signal}', self.windows.log("QMXRuns.jsonl").decode().splitlines()[-1])

    def test_an_end_in_the_terminal_releases_the_table(self):
        waiting = self.windows.folder / "waiting"
        waiting.mkdir()
        self.windows.environment |= {"QMX_COMPONENTS": WINDOWS.path(ENDING), "QMX_TEST_AT": "getServiceType", "QMX_TEST_CALL": "5",
                                     "QMX_TEST_DO": "wait waiting"}
        terminal = Terminal(self.windows, *WINDOWS.program("qmxdatacopy"), self.windows.line("tsmdm030"))
        terminal.wait_for(waiting / "reached")
        terminal.press_ctrl_c()
        terminal.wait_for_text("CTRL_C: the copy ends at its next call to the ERP.")
        (waiting / "go").touch()
        self.assertEqual(terminal.end(), 1)
        self.assertEqual(self.windows.sql("select in_use from tstables"), [(0,)])

    def test_a_console_of_another_code_page_shows_the_texts(self):
        program = WINDOWS.path(WINDOWS.bin / "qmxdatacopy.exe")
        terminal = Terminal(self.windows, "wine", "cmd", "/c", f"chcp 437 & {program} {self.windows.line('Größe Δ')}")
        terminal.end()
        self.assertIn('There is no table "Größe Δ" that can be copied', terminal.text())
        self.assertIn("437", terminal.text())

    def test_records_of_concurrent_runs_are_whole(self):
        tables = ("tsmdm100", "tsmdm105", "tsmdm130", "tsclm020")
        for _ in range(3):
            for run in [self.windows.start("qmxdatacopy", self.windows.line(table)) for table in tables]:
                self.assertEqual(run.end(), (0, "", ""))
        records = [line for line in self.windows.log("QMXRuns.jsonl").decode().split("\n") if line]
        self.assertEqual(len(records), 24)
        self.assertTrue(all(re.fullmatch(r'\{"v":1,.*\}', record) for record in records))


if __name__ == "__main__":
    unittest.main(verbosity=2)
