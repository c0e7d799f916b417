#!/usr/bin/env python3
"""qmxadmin for Windows under Wine: its commands say and do what those of Linux say and do with the same files."""

import datetime
import json
import os
import re
import unittest
from pathlib import Path

from programs import WINDOWS, BothSystems
from terminal import Terminal

TODAY = datetime.date.today().isoformat()  # an expansion has no intervals of the past
LAST_UPDATE = "2025-03-01 00:00:00"
TABLES = 17


class Commands(BothSystems):
    def database(self, name="local.db"):
        return [f"Provider=SQLite;Data Source={name}", ""]

    def admin(self, site, command, *arguments, database="local.db", **variables):
        return site.run("qmxadmin", command, *self.database(database), *arguments, **variables)

    def assert_same(self, command, *arguments, status=0, without=(), **more):
        """Both systems have that status and say the same; what the expressions match is left out."""
        answers = []
        for site in self.sites:
            answer = self.admin(site, command, *arguments, **more)
            self.assertEqual(answer[0], status, (site.system.bin, answer))
            texts = [text.replace("\r", "") for text in answer[1:]]
            for expression in without:
                texts = [re.sub(expression, "", text) for text in texts]
            answers.append(texts)
        self.assertEqual(*answers)
        return answers[1]

    def copy_all(self):
        """Returns the summaries without durations."""
        summaries = []
        for site in self.sites:
            status, out, err = self.admin(site, "copy", "--all", "--jobs", "2", "--json", "--logs", "log", "--component", "OrvanSandbox, orvan.db")
            self.assertEqual((status, err.count(": started")), (0, TABLES), err)
            summary = json.loads(out)
            for row in summary:
                self.assertIsNotNone(row.pop("milliseconds"))
            summaries.append(summary)
        self.assertEqual(*summaries)
        return summaries[1]

    def test_a_new_database_gets_the_tables_of_linux(self):
        out, _ = self.assert_same("init", database="new.db;Mode=Create")
        self.assertEqual(out.count(": created\n"), 19)
        out, _ = self.assert_same("status", database="new.db")
        self.assertIn("no record", out)

    def test_all_tables_are_copied_checked_verified_and_expanded(self):
        self.assertEqual({row["result"] for row in self.copy_all()}, {"copied"})
        self.assertEqual(self.linux.dump(), self.windows.dump())

        out, _ = self.assert_same("verify", "--all", "--component", "OrvanSandbox, orvan.db")
        self.assertEqual(out.count(": no difference\n"), TABLES)
        for site in self.sites:
            site.sql("delete from tsmdm030 where rowid = 1")
        out, _ = self.assert_same("verify", "tsmdm030", "--component", "OrvanSandbox, orvan.db", status=1)
        self.assertIn("11 here", out)

        out, _ = self.assert_same("check", "--logs", "log", "--component", "OrvanSandbox, orvan.db", "--records", without=[r"\d+ MiB free"])
        self.assertNotIn("wrong", out)
        self.assertIn("QMXServer20.ClientRequests: can be created", out)

        out, _ = self.assert_same("expand")
        self.assertRegex(out, r"CAL001: \d{2,} intervals")
        out, _ = self.assert_same("calendar", "CAL001", "--from", TODAY)
        self.assertIn("█", out)
        self.assert_same("calendar", "CAL001", "--from", TODAY, "--svg", "calendar.svg")
        self.assertEqual(*[(site.folder / "calendar.svg").read_bytes() for site in self.sites])
        self.assertEqual(self.linux.dump(), self.windows.dump())

    def test_control_records_are_changed_as_on_linux(self):
        self.copy_all()
        self.assert_same("method", "tsmdm030", "tssoc200", "changed")
        for site in self.sites:
            site.sql(f"update tstables set in_use = 1, lutm = '{LAST_UPDATE}'")
        self.assert_same("status", without=[r"\d+:\d+"])
        self.assert_same("release", "tsmdm030", status=2)
        out, _ = self.assert_same("release", "tsmdm030", "tssoc200", "--yes", without=[r"Process \d+ on .*"])
        self.assertIn("tsmdm030: released\n", out)
        self.assertEqual(self.linux.dump(), self.windows.dump())

    def test_a_release_is_confirmed_at_a_console(self):
        self.copy_all()
        for answer, status, left in ((b"y\r", 0, 0), (b"n\r", 1, 1)):
            self.windows.sql("update tstables set in_use = 1")
            terminal = Terminal(self.windows, *WINDOWS.program("qmxadmin"), "release", *self.database(), "tsmdm030")
            terminal.wait_for_text("[y/N]")
            terminal.type(answer)
            self.assertEqual(terminal.end(), status, terminal.text())
            self.assertEqual(self.windows.sql("select in_use from tstables where TableName = 'tsmdm030'"), [(left,)])

    def test_runs_are_listed(self):
        self.copy_all()
        for site in self.sites:
            status, out, _ = site.run("qmxadmin", "history", "--logs", "log", "--json")
            self.assertEqual((status, len(json.loads(out))), (0, TABLES))
            for command, file in (("metrics", "runs.prom"), ("report", "report.html")):
                answer = site.run("qmxadmin", command, "--logs", "log", "--output", file)
                self.assertEqual(answer[0], 0, answer)
                self.assertGreater((site.folder / file).stat().st_size, 1000)
                self.assertEqual(list(site.folder.glob(file + ".*")), [])

    def test_settings_come_from_a_file(self):
        for site in self.sites:
            for encoding in ("utf-8", "utf-8-sig"):  # Notepad writes either
                with self.subTest(site.system, encoding=encoding):
                    (site.folder / "settings.txt").write_text('QMX_CONNECTION="Provider=SQLite;Data Source=local.db"\r\nQMX_DATABASE=\r\n', encoding=encoding)
                    status, out, err = site.run("qmxadmin", "status", QMX_SETTINGS="settings.txt")
                    self.assertEqual((status, err), (0, ""))
                    self.assertIn("tsmdm030", out)

    def test_the_usual_settings_file_is_that_of_windows(self):
        self.assertIn(r"C:\ProgramData\qmxdatacopy\settings.txt", self.windows.run("qmxadmin", "--help")[1])

    def test_an_empty_drive_is_no_missing_folder(self):
        drive = Path(os.environ["WINEPREFIX"], "dosdevices", "q:")
        (self.windows.folder / "empty").mkdir()
        drive.symlink_to(self.windows.folder / "empty")
        try:
            status, out, err = self.windows.run("qmxadmin", "components", QMX_COMPONENTS="Q:\\")
        finally:
            drive.unlink()
        self.assertEqual((status, err), (0, ""))
        self.assertNotIn("No such file", out)

    def test_a_wrong_command_has_the_status_and_the_message_of_linux(self):
        self.assert_same("statsu", status=2)
        self.assert_same("status", "--no-such-option", status=2)
        self.assert_same("copy", "tsmdm03", "--logs", "log", "--component", "OrvanSandbox, orvan.db", status=2)


if __name__ == "__main__":
    unittest.main(verbosity=2)
