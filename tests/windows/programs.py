"""The programs of both systems, each run in a folder of its own: Linux's as they are, those for Windows under Wine."""

import os
import shutil
import sqlite3
import subprocess
import tempfile
from pathlib import Path

TREE = Path(__file__).resolve().parents[2]
TABLES = ("tsmdm030", "tsmdm100", "tsmdm105", "tsmdm130", "tsmdm140", "tsmdm135", "tsclm020", "tsclm024", "tccom130", "tcccp001",
          "tcccp030", "tscfg220", "tscfg200", "tssoc200", "tssoc210", "tssoc205", "tsspc200")


class System:
    """Where a system's programs are, and how they are run."""

    def __init__(self, build, ending, separator):
        self.bin = TREE / "build" / build / "bin"
        self.components = TREE / "build" / build / "components"
        self.ending = ending
        self.separator = separator

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


LINUX = System(os.environ.get("QMX_LINUX_PRESET", "release"), "", ":")
WINDOWS = Wine("windows", ".exe", ";")


class Site:
    """A folder with a sandbox ERP, an empty local database and the logs of one system's program."""

    def __init__(self, system, folder, erp, local):
        self.system = system
        self.folder = Path(folder)
        (self.folder / "log").mkdir(parents=True)
        shutil.copy(erp, self.folder / "orvan.db")
        shutil.copy(local, self.folder / "local.db")
        self.environment = {"QMX_COMPONENTS": system.path(system.components), "QMX_MESSAGE_BOARD": "messages.txt"}

    def start(self, name, *arguments, stdout=subprocess.PIPE, stderr=subprocess.PIPE, **variables):
        environment = os.environ | self.system.variables() | self.environment | variables
        return subprocess.Popen([*self.system.program(name), *arguments], cwd=self.folder, env=environment, stdin=subprocess.DEVNULL,
                                stdout=stdout, stderr=stderr)

    def run(self, name, *arguments, **variables):
        """Returns the exit status, standard output and standard error."""
        with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:  # Wine's services would keep a pipe open
            status = self.start(name, *arguments, stdout=out, stderr=err, **variables).wait(timeout=120)
            out.seek(0)
            err.seek(0)
            return status, *(file.read().decode("utf-8", "backslashreplace") for file in (out, err))

    def line(self, table, logs="log", erp="orvan.db", database="local.db"):
        return f"Provider=SQLite;Data Source={database}, local, {table}, {logs}, OrvanSandbox, {erp}, 17"

    def copy(self, table, **variables):
        return self.run("qmxdatacopy", self.line(table), **variables)

    def sql(self, statement):
        database = sqlite3.connect(self.folder / "local.db")
        with database:
            rows = database.execute(statement).fetchall()
        database.close()
        return rows

    def dump(self):
        """Every row of every table. The last update times are those of the clock."""
        tables = [name for (name,) in self.sql("select name from sqlite_master where type = 'table' order by name")]
        rows = {table: sorted(self.sql(f"select * from {table}"), key=repr) for table in tables if table != "tstables"}
        rows["tstables"] = self.sql("select TableName, in_use, freq, reqd, syme, lutm is not null from tstables order by 1")
        return rows

    def log(self, name):
        return (self.folder / "log" / name).read_bytes()
