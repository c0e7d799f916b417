#!/usr/bin/env python3
"""The tests of not_run.py."""
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.dirname(__file__))
import not_run  # pylint: disable=wrong-import-position

JAVA = "1/9 Testing: JavaValues.A\n1/9 Test: JavaValues.A\nOutput:\n<end of output>\n"
BOTH = {"QMX_TEST_POSTGRESQL": "x", "QMX_TEST_MARIADB": "y"}


def tested(number, name, output):
    return f"{number}/9 Testing: {name}\n{number}/9 Test: {name}\nCommand: x\nOutput:\n----\n{output}\n<end of output>\nTest time = 1\n"


def report(log, environment):
    return not_run.report(JAVA + log, environment)


class NotRun(unittest.TestCase):
    def test_prints_each_reason_once_with_the_tests_that_gave_it(self):
        said = "date_test.cpp:82: Skipped\nno Java is installed,\nso nothing is compared.\n\n[  SKIPPED ] A (0 ms)"
        log = tested(1, "Date.A", said) + tested(2, "Date.B", said) + tested(3, "Date.C", "[       OK ] Date.C")
        self.assertEqual(report(log, BOTH),
                         (["Not run:", "  Date.A and 1 more: no Java is installed, so nothing is compared."], False))

    def test_prints_what_scripts_and_python_leave_out(self):
        log = (tested(1, "Bench.X", "SKIPPED: valgrind is missing.") +
               tested(2, "Packages.X", "NOT RUN: the units are not checked: there is no systemd-analyze.") +
               tested(3, "Bench.Y", "test_plot (X) ... skipped 'needs python3-matplotlib'"))
        self.assertEqual(report(log, BOTH)[0][1:],
                         ["  Bench.Y: needs python3-matplotlib",
                          "  Packages.X: the units are not checked: there is no systemd-analyze.",
                          "  Bench.X: valgrind is missing."])

    def test_prints_a_test_that_says_no_reason(self):
        self.assertEqual(report(tested(1, "A.B", "[  SKIPPED ] A.B"), BOTH)[0],
                         ["Not run:", "  A.B: it does not say why"])

    def test_prints_the_servers_that_were_not_there(self):
        lines, lacks = report("", {"QMX_TEST_POSTGRESQL": "x"})
        self.assertEqual(lines, ["Not run:", "  every test over MariaDB: there is no server of it (see "
                                             "tests/servers/with_servers.sh)"])
        self.assertTrue(lacks)

    def test_prints_that_the_java_bridge_was_not_built(self):
        self.assertEqual(not_run.report("", BOTH)[0][1:],
                         ["  every test of the Java bridge: it was not built (default-jdk-headless)"])

    def test_prints_that_all_was_run(self):
        self.assertEqual(report(tested(1, "A.B", "[       OK ] A.B"), BOTH), (["Every test was run."], False))

    def test_fails_in_ci_only_and_only_without_a_server(self):
        with tempfile.TemporaryDirectory() as folder:
            log = pathlib.Path(folder) / "log"
            log.write_text("")
            for ci, servers, status in (("true", BOTH, 0), ("true", {}, 1), ("", {}, 0)):
                environment = {"PATH": os.environ["PATH"], "CI": ci} | servers
                run = subprocess.run([sys.executable, not_run.__file__, log], env=environment, check=False,
                                     capture_output=True)
                self.assertEqual(run.returncode, status, (ci, servers))


if __name__ == "__main__":
    unittest.main()
