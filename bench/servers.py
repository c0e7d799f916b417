"""The private servers of tests/servers/with_servers.sh, reached through their own clients; each has a database "bench"."""

import functools
import os
import re
import shlex
from dataclasses import dataclass
from pathlib import Path
from typing import Callable

import peers
from measuring import BENCH_PROGRAMS, PROGRAMS, ROOT, run

SCRIPT = ROOT / "tests/servers/with_servers.sh"
WANTED = ("QMX_TEST_POSTGRESQL", "QMX_TEST_MARIADB")


def are_running():
    return all(name in os.environ for name in WANTED)


def parts(text):
    """The parts of an ODBC connection text, braces taken off."""
    found = re.findall(r"(\w+)=(\{(?:[^}]|\}\})*\}|[^;]*)", text)
    return {name: value[1:-1].replace("}}", "}") if value.startswith("{") else value for name, value in found}


@dataclass(frozen=True)
class Server:
    name: str
    connection: str  # for ODBC
    client: list  # a command that takes a statement as its last argument
    bulk_name: str
    bulk_load: str  # from the client's standard input
    hashes: str  # a query for the number of orders and a checksum of their content
    settle: list  # statements after bulk writes
    row_form: str  # of the rows that the program adds
    peers: Callable[[Path], list]  # further ways to copy all orders from the ERP's file

    def sql(self, *statements):
        """Runs each statement in its own transaction and returns the last one's result."""
        for statement in statements:
            output = run(*self.client, statement)
        return output.strip()

    def load(self, erp):
        """The command that reads the orders from the ERP's file and loads them in bulk."""
        writer = shlex.join([str(BENCH_PROGRAMS / "orders_as_text"), str(erp)])
        loader = shlex.join([str(word) for word in self.client] + [self.bulk_load])
        return ["bash", "-c", f"set -o pipefail; {writer} | {loader}"]


@functools.cache
def postgresql():
    text = os.environ["QMX_TEST_POSTGRESQL"]
    at = parts(text)
    program = sorted(Path("/usr/lib/postgresql").glob("*/bin"))[-1] / "psql"

    def client(database):
        address = f"host={at['SERVER']} port={at['PORT']} user={at['UID']} dbname={database}"
        return ["env", "PGPASSWORD=" + at["PWD"], program, "-XqAt", "-v", "ON_ERROR_STOP=1", address, "-c"]

    run(*client("postgres"), "create database bench")
    server = Server(
        "PostgreSQL", text.replace("DATABASE=postgres", "DATABASE=bench"), client("bench"),
        bulk_name="COPY, text", bulk_load="copy tssoc200 from stdin",
        hashes="select count(*), sum(hashtextextended(t::text, 0)) from tssoc200 t",
        settle=["vacuum analyze tssoc200", "checkpoint"], row_form="one array per column, expanded by unnest",
        peers=lambda erp: peers.of_postgresql(erp, at))
    run(PROGRAMS / "qmxadmin", "init", server.connection, "")
    return server


@functools.cache
def mariadb():
    text = os.environ["QMX_TEST_MARIADB"]
    at = parts(text)
    client = ["env", "MYSQL_PWD=" + at["PWD"], "mariadb", "--no-defaults", "--local-infile=1", "--batch", "--skip-column-names",
              "--host=" + at["SERVER"], "--port=" + at["PORT"], "--user=" + at["UID"]]
    run(*client, "--execute", "create database bench character set utf8mb4")
    client += ["--database=bench", "--execute"]
    connection = text + ";DATABASE=bench"
    run(PROGRAMS / "qmxadmin", "init", connection, "")
    quoted = run(*client, "select group_concat('quote(', column_name, ')') from information_schema.columns "
                          "where table_schema = 'bench' and table_name = 'tssoc200'").strip()
    return Server(
        "MariaDB", connection, client,
        bulk_name="LOAD DATA LOCAL", bulk_load="load data local infile '/dev/stdin' into table tssoc200 character set utf8mb4",
        hashes=f"select count(*), sum(cast(conv(left(md5(concat_ws(',', {quoted})), 15), 16, 10) as unsigned)) from tssoc200",
        settle=["analyze table tssoc200"], row_form="one array per parameter", peers=lambda erp: peers.of_mariadb(erp, at))
