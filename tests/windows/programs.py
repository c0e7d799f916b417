"""The programs of both systems, each run in a folder of its own: Linux's as they are, those for Windows under Wine."""

import os
import re
import shutil
import sqlite3
import subprocess
import tempfile
import time
import unittest
from pathlib import Path

LONG = 300  # seconds
TREE = Path(__file__).resolve().parents[2]
TABLES = ("tsmdm030", "tsmdm100", "tsmdm105", "tsmdm130", "tsmdm140", "tsmdm135", "tsclm020", "tsclm024", "tccom130", "tcccp001",
          "tcccp030", "tscfg220", "tscfg200", "tssoc200", "tssoc210", "tssoc205", "tsspc200")


class System:
    """Where a system's programs are, and how they are run."""

    def __init__(self, build, ending):
        self.bin = TREE / "build" / build / "bin"
        self.components = TREE / "build" / build / "components"
        self.ending = ending

    def program(self, name):
        return [str(self.bin / (name + self.ending))]

    def path(self, path):
        return str(path)

    def variables(self):
        return {"LC_ALL": "C"}


class Wine(System):
    """Its prefix is that of tests/windows/run.sh."""

    def program(self, name):
        return ["wine", *super().program(name)]

    def path(self, path):
        return "Z:" + str(path).replace("/", "\\")

    def variables(self):
        return {"LC_ALL": "C.UTF-8"}  # for the names of files and the arguments


LINUX = System("release", "")
WINDOWS = Wine("windows", ".exe")


class Running:
    """A process whose outputs are files: Wine's services, which a program may start, keep a pipe open after its end."""

    def __init__(self, command, **more):
        self.outputs = [tempfile.TemporaryFile() for _ in range(2)]
        self.process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=self.outputs[0], stderr=self.outputs[1], **more)

    def error_line(self):
        """The first line of standard error."""
        end = time.monotonic() + LONG
        while time.monotonic() < end:
            line, end_of_line, _ = os.pread(self.outputs[1].fileno(), 65536, 0).partition(b"\n")
            if end_of_line:
                return line.decode()
            time.sleep(0.01)
        raise AssertionError("The program has written no line to standard error.")

    def end(self):
        """Returns the exit status, standard output and standard error."""
        try:
            status = self.process.wait(timeout=LONG)
        finally:
            self.process.kill()
        texts = []  # without Wine's own messages
        for output in self.outputs:
            with output:
                output.seek(0)
                texts.append(re.sub("wine client error:.*\n?", "", output.read().decode("utf-8", "backslashreplace")))
        return status, *texts


def wine(*arguments):
    """Runs one of Wine's programs, and returns its standard output."""
    status, out, err = Running(["wine", *arguments]).end()
    assert status == 0, (arguments, out, err)
    return out


class Site:
    """A folder with the files of a sandbox ERP and of a local database, and the logs of one system's program."""

    def __init__(self, system, folder, *files):
        self.system = system
        self.folder = Path(folder)
        (self.folder / "log").mkdir(parents=True)
        for file in files:
            shutil.copy(file, self.folder)
        self.environment = {"QMX_COMPONENTS": system.path(system.components), "QMX_MESSAGE_BOARD": "messages.txt", "QMX_SETTINGS": ""}

    def start(self, name, *arguments, **variables):
        environment = os.environ | self.system.variables() | self.environment | variables
        return Running([*self.system.program(name), *arguments], cwd=self.folder, env=environment)

    def run(self, name, *arguments, **variables):
        """Returns the exit status, standard output and standard error."""
        return self.start(name, *arguments, **variables).end()

    def line(self, table, logs="log", erp="orvan.db", database="local.db"):
        return f"Provider=SQLite;Data Source={database}, local, {table}, {logs}, OrvanSandbox, {erp}, 17"

    def copy(self, table, erp="orvan.db", **variables):
        return self.run("qmxdatacopy", self.line(table, erp=erp), **variables)

    def sql(self, statement):
        database = sqlite3.connect(self.folder / "local.db")
        with database:
            rows = database.execute(statement).fetchall()
        database.close()
        return rows

    def tables(self):
        """Every row of every table."""
        names = [name for (name,) in self.sql("select name from sqlite_master where type = 'table' order by name")]
        return {name: sorted(self.sql(f"select * from {name}"), key=repr) for name in names}

    def dump(self):
        """The same without the last update times, which are those of the clock."""
        return self.tables() | {"tstables": self.sql("select TableName, in_use, freq, reqd, syme, lutm is not null from tstables order by 1")}

    def log(self, name):
        return (self.folder / "log" / name).read_bytes()


class BothSystems(unittest.TestCase):
    """Each test has a site of each system, with the same ERP and the same empty local database."""

    maxDiff = 4000

    @classmethod
    def setUpClass(cls):
        cls.place = Path(tempfile.mkdtemp(prefix="qmx-windows-"))
        cls.addClassCleanup(shutil.rmtree, cls.place)
        made = Site(LINUX, cls.place / "made")
        cls.erp, cls.local = made.folder / "orvan.db", made.folder / "local.db"
        assert made.run("orvan-sandbox", "make", "orvan.db")[0] == 0
        assert made.run("qmxadmin", "init", "Provider=SQLite;Data Source=local.db;Mode=Create", "local")[0] == 0

    def setUp(self):
        folder = Path(tempfile.mkdtemp(dir=self.place))
        self.sites = [Site(system, folder / name, self.erp, self.local) for name, system in (("linux", LINUX), ("windows", WINDOWS))]
        self.linux, self.windows = self.sites
