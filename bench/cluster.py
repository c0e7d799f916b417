"""./bench.sh cluster: copies into MariaDB on one node and on three, over the private cluster of tests/servers/with_cluster.sh."""

import os
import statistics
import subprocess
import sys
import time
from concurrent.futures import ThreadPoolExecutor

import data
import servers
from measuring import EVERY, FOLDER, PROGRAMS, ROOT, copying, logs, measured, run

SCRIPT = ROOT / "tests/servers/with_cluster.sh"
NODES = "QMX_CLUSTER_NODES"  # how many the script starts
TEN = ["tssoc200", "tssoc205", "tssoc210", "tsspc200", "tscfg200", "tscfg220", "tccom130", "tsmdm135", "tsmdm140", "tsmdm030"]


def main(sizes, rounds):
    if NODES in os.environ:
        return within(sizes, rounds)
    print("| nodes | what | time | rows/s |\n|---|---|---|---|", flush=True)
    for nodes in (1, 3):
        print(f"cluster of {nodes} ...", file=sys.stderr, flush=True)
        subprocess.run([SCRIPT, sys.executable, "-B", *sys.argv], check=True,
                       env={**os.environ, NODES: str(nodes), "QMX_SERVERS_AS_DELIVERED": "yes"})
    return None


def within(sizes, rounds):
    nodes = int(os.environ[NODES])
    FOLDER.mkdir(parents=True, exist_ok=True)
    server = servers.mariadb()
    texts = [os.environ[f"QMX_TEST_NODE_{node}"] + ";DATABASE=bench" for node in range(1, nodes + 1)]
    for what, rows, seconds in [*one_table(server, texts, sizes, rounds), *ten_tables(server, texts, sizes, rounds)]:
        middle = statistics.median(seconds)
        print(f"| {nodes} | {what} | {middle:.2f} s ({min(seconds):.2f} to {max(seconds):.2f}) | {rows / middle:,.0f} |", flush=True)


def one_table(server, texts, sizes, rounds):
    """Full copies into an empty and into a full table, then changed copies, through the first node."""
    orders, changes = sizes.server_orders, sizes.server_changes
    erp, changed = data.erp(orders), data.changed_erp(orders, changes)
    empty, again, by_change, behind = [], [], [], []
    for _ in range(rounds):
        server.sql("truncate table tssoc200", "truncate table tstables")
        empty.append(measured(copying(texts[0], erp)).seconds)
        again.append(measured(copying(texts[0], erp)).seconds)
        behind.append(seconds_until_equal(texts, orders))
        server.sql(f"update tstables set syme = 2, lutm = '{data.LONG_AGO}'")
        by_change.append(measured(copying(texts[0], changed)).seconds)
    yield f"full copy of {orders:,} orders into an empty table", orders, empty
    yield f"the same with the delete of {orders:,} rows before", orders, again
    if len(texts) > 1:
        yield "until another node can read all of it", orders, behind
    yield f"copy of {changes:,} changes", changes, by_change


def seconds_until_equal(texts, orders):
    begin = time.monotonic()
    found = client(texts[-1], "set session wsrep_sync_wait = 1; select count(*) from tssoc200")
    if int(found) != orders:
        sys.exit(f"the last node has {found} of {orders} orders")
    return time.monotonic() - begin


def client(text, statement):
    at = servers.parts(text)
    return run("env", "MYSQL_PWD=" + at["PWD"], "mariadb", "--no-defaults", "--batch", "--skip-column-names", "--host=" + at["SERVER"],
               "--port=" + at["PORT"], "--user=" + at["UID"], "--database=bench", "--execute", statement).strip()


def ten_tables(server, texts, sizes, rounds):
    """Ten programs at once, through one node and, if there are more, each through the next one."""
    size = max(1, sizes.server_orders // 10)
    erp = erp_of_all(size)
    for name, through in [("through one node", texts[:1]), *([("spread over the nodes", texts)] if len(texts) > 1 else [])]:
        seconds = []
        for _ in range(rounds):
            server.sql(*(f"truncate table {table}" for table in [*TEN, "tstables"]))
            commands = [copying_table(through[place % len(through)], table, erp) for place, table in enumerate(TEN)]
            begin = time.monotonic()
            with ThreadPoolExecutor(len(commands)) as programs:
                list(programs.map(lambda command: run(*command, cwd=FOLDER), commands))
            seconds.append(time.monotonic() - begin)
        rows = sum(int(client(texts[0], f"select count(*) from {table}")) for table in TEN)
        yield f"ten tables at once, {rows:,} rows, {name}", rows, seconds


def copying_table(text, table, erp):
    return ["taskset", "--cpu-list", EVERY, PROGRAMS / "qmxdatacopy", f"{text},,{table},{logs()},OrvanSandbox,{erp}"]


def erp_of_all(size):
    def make(path):
        run(PROGRAMS / "orvan-sandbox", "make", path, "--seed", 1, "--today", data.TODAY, "--orders", size, "--activities", 3,
            "--addresses", size, "--configurations", size, "--employees", max(1, size // 10))

    return data.made(FOLDER / f"erp-all-{size}.db", make)
