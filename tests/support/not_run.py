#!/usr/bin/env python3
"""not_run.py LOG: prints what a run of ctest left out, and why. LOG is its Testing/Temporary/LastTest.log.

With CI=true a server that the tests lacked makes it fail. What else must not be missing there fails in its own test."""
import os
import pathlib
import re
import sys

SERVERS = {"PostgreSQL": "QMX_TEST_POSTGRESQL", "MariaDB": "QMX_TEST_MARIADB"}


def reasons(log):
    """The names of skipped tests, by the reason that each gives."""
    found = {}
    for name, output in re.findall(r"^\d+/\d+ Test: (\S+)\n(.*?)\n<end of output>", log, re.DOTALL | re.MULTILINE):
        told = re.findall(r"^\S+:\d+: Skipped\n+(.*?)\n(?:\n|\[|$)", output, re.DOTALL | re.MULTILINE)
        told += re.findall(r"^SKIPPED: (.*)$", output, re.MULTILINE)
        told += re.findall(r"^NOT RUN: (.*)$", output, re.MULTILINE)
        told += re.findall(r"\bskipped ['\"](.*)['\"]$", output, re.MULTILINE)
        if not told and re.search(r"\[  SKIPPED \]|skipped=[1-9]|^Test Skipped", output, re.MULTILINE):
            told = ["it does not say why"]
        for reason in told:
            names = found.setdefault(" ".join(reason.split()).removeprefix("SKIPPED: "), [])
            if name not in names:
                names.append(name)
    return found


def report(log, environment):
    """The lines to print, and whether a server was missing."""
    lines = []
    for reason, names in sorted(reasons(log).items()):
        lines.append(f"  {names[0]}{f' and {len(names) - 1} more' if len(names) > 1 else ''}: {reason}")
    if not re.search(r"^\d+/\d+ Test: Java", log, re.MULTILINE):
        lines.append("  every test of the Java bridge: it was not built (default-jdk-headless)")
    missing = [server for server, variable in SERVERS.items() if not environment.get(variable)]
    for server in missing:
        lines.append(f"  every test over {server}: there is no server of it (see tests/servers/with_servers.sh)")
    return (["Not run:"] + lines if lines else ["Every test was run."]), bool(missing)


def main():
    lines, lacksServer = report(pathlib.Path(sys.argv[1]).read_text(errors="replace"), os.environ)
    print("\n".join(lines))
    return 1 if lacksServer and os.environ.get("CI") == "true" else 0


if __name__ == "__main__":
    sys.exit(main())
