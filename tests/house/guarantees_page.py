#!/usr/bin/env python3
"""Each test that docs/guarantees.md names is there, and runs on the systems of its column. Each cell names a test, or the
cell that it repeats, or says why it concerns no system.

Run from the root of the tree. With --print, prints the systems of each named test."""
import fnmatch
import pathlib
import re
import sys

PAGE = pathlib.Path("docs/guarantees.md")
LEAST_TESTS = 30
SERVERS = frozenset({"PostgreSQL", "MariaDB"})
SQLITE = frozenset({"SQLite"})
EVERY = SERVERS | SQLITE
DRIVERS = ("SQLite", "SQLiteInBatches", "SQLiteOverOdbc", "PostgreSQL", "MariaDB")
COLUMNS = {"SQLite": SQLITE, "PostgreSQL, MariaDB": SERVERS}

# What plays a server's driver, and needs no server.
PLAYED = {"AStuckDriver.IsNotWaitedForFiveSecondsAfterTheEndOfItsConnection"}

REPEATS_THE_ROW = re.compile(r"^The same\b")
REPEATS = re.compile(r"\b(The same|As for|[Aa]s after a kill)\b")
NO_CONCERN = re.compile(r"\b(Does not concern|Cannot happen)\b")
NO_TEST = re.compile(r"\b(no test|without a test)\b", re.IGNORECASE)


def systems_of_condition(condition):
    """The systems whose drivers a condition on driver.name selects."""
    python = re.sub(r"\w+\.name\.starts_with\((\"\w+\")\)", r"name.startswith(\1)", condition)
    python = re.sub(r"\w+\.name (==|!=)", r"name \1", python)
    python = python.replace("||", " or ").replace("&&", " and ").replace("!name", "not name")
    found = [name for name in DRIVERS if eval(python, {"name": name})]  # pylint: disable=eval-used
    return frozenset("SQLite" if name.startswith("SQLite") else name for name in found)


def systems_of_values(values):
    """The systems of a suite's instantiation; nothing where it does not go over systems."""
    condition = re.search(r"DriversUnderTest\(\[\]\([^)]*\) \{\s*return (.*?);\s*\}", values, re.DOTALL)
    if condition:
        return systems_of_condition(" ".join(condition.group(1).split()))
    if re.search(r"\bServers\w+\(\)", values):
        return SERVERS
    if "OnlySqlite()" in values:
        return SQLITE
    if "DriversUnderTest()" in values or "SystemsUnderTest()" in values:
        return EVERY
    return None


class Tests:
    """The tests of the tree, and the systems on which they run."""

    def __init__(self):
        self.files = {}  # by "Suite.Name"
        self.instantiated = {}  # systems by suite
        for path in sorted(pathlib.Path("tests").rglob("*.cpp")):
            text = path.read_text()
            for suite, name in re.findall(r"^TEST(?:_F|_P)?\((\w+),\s*(\w+)\)", text, re.MULTILINE):
                self.files[f"{suite}.{name}"] = path
            for suite, values in re.findall(r"INSTANTIATE_TEST_SUITE_P\(\s*\w+,\s*(\w+),(.*?)\);\n", text, re.DOTALL):
                systems = systems_of_values(values)
                if systems is not None:
                    self.instantiated[suite] = self.instantiated.get(suite, frozenset()) | systems
        self.read_selections(pathlib.Path("tests/copy/CMakeLists.txt").read_text())

    def read_selections(self, text):
        """The tests of copies that also run over the servers."""
        def words(name):
            found = re.search(rf"set\({name}\s+([^)]*)\)", text)
            return re.sub(r"#.*", "", found.group(1)).replace('"', " ").split() if found else []
        literal = re.search(r'string\(APPEND leftOut ":([^"]*)"\)\n', text).group(1).split(":")
        self.left_out = {system: words("sqlitesOwn") + words(f"{system}_leaves_out") + literal for system in SERVERS}
        # PATTERN/PARAMETER: the middle is the test's own name.
        self.selected = [pattern.rsplit("/", 1)[0] for pattern in words("faultsOfEachKind")]

    def over_servers(self, test):
        found = set()
        for system in SERVERS:
            left_out = any(fnmatch.fnmatchcase(test, pattern) for pattern in self.left_out[system])
            if not left_out or any(fnmatch.fnmatchcase(test, pattern) for pattern in self.selected):
                found.add(system)
        return found

    def systems(self, test):
        suite = test.split(".")[0]
        if suite in self.instantiated:
            return self.instantiated[suite]
        if test in PLAYED:
            return EVERY
        of_copies = str(self.files[test]).startswith("tests/copy/")
        return SQLITE | (self.over_servers(test) if of_copies else set())


def named(text):
    """The tests in a text, and what stands behind each until the next one."""
    return re.findall(r"`([A-Z]\w+\.[A-Z]\w+)`([^`]*)", text)


def cells():
    """Line, heading of the column, text, and the text of the row's first system."""
    headings = []
    for number, line in enumerate(PAGE.read_text().splitlines(), 1):
        if not line.startswith("|"):
            headings = []
            continue
        row = [cell.strip() for cell in line.strip().strip("|").split("|")]
        if not headings:
            headings = [""] + row[1:]
        elif not set(line) <= set("|-"):
            row += [""] * (len(headings) - len(row))
            for heading, text in list(zip(headings, row))[1:]:
                yield number, heading, text, row[1]


def problems(tests):
    mentioned = {test for test, _ in named(PAGE.read_text())}
    missing = sorted(test for test in mentioned if test not in tests.files)
    for test in missing:
        yield f"names {test}, which is no test"
    if len(mentioned) < LEAST_TESTS:
        yield f"names only {len(mentioned)} tests: this check looks at too little"
    seen = 0
    for number, heading, text, first in cells():
        if heading not in COLUMNS:
            continue
        seen += 1
        where = f"line {number}, column {heading}"
        if NO_TEST.search(text):
            yield f"{where}, leaves something without a test: {text}"
        wanted = COLUMNS[heading]
        proofs = named(text)
        if not proofs and REPEATS_THE_ROW.search(text) and heading != "SQLite":
            proofs = named(first)
        elif not proofs and not REPEATS.search(text) and not NO_CONCERN.search(text):
            yield f"{where}, is without a test: {text}"
        for test, behind in proofs:
            if test in missing:
                continue
            alone = re.match(r",? on (SQLite|PostgreSQL|MariaDB)\b", behind)
            lacking = (frozenset({alone.group(1)}) if alone else wanted) - tests.systems(test)
            if lacking:
                yield f"{where}, names {test}, which does not run on {' and '.join(sorted(lacking))}"
    if seen < 2 * LEAST_TESTS:
        yield f"has only {seen} cells: this check looks at too little"


def main():
    tests = Tests()
    if sys.argv[1:] == ["--print"]:
        for test in sorted({test for test, _ in named(PAGE.read_text())} & set(tests.files)):
            print(f"{test}: {', '.join(sorted(tests.systems(test)))}")
        return 0
    found = list(problems(tests))
    for problem in found:
        print(f"{PAGE} {problem}")
    return 1 if found else 0


sys.exit(main())
