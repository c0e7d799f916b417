"""Measurements without a reference to compare with. Each returns lines of name, figure and target."""

import json
import re
import statistics
import sys

import data
import servers
from measuring import (BENCH_PROGRAMS, CLIENT, ENVIRONMENT, EVERY, FOLDER, JAVA_MEMORY, LOCAL, copying, copying_from_memory,
                       copying_into_file, measured, run)


def verdict(target, is_met):
    return target + (", met" if is_met else ", **missed**")


def nothing_to_do(sizes, rounds):
    """A changed copy without changes, from start to exit."""
    data.copy_file(data.local_before_changes(sizes.server_orders), LOCAL)
    command = copying_into_file(data.erp(sizes.server_orders))
    seconds = [measured(command).seconds * 1000 for _ in range(rounds)]
    middle = statistics.median(seconds)
    calls, read = _system_calls(command)
    return [
        ["start to exit, nothing to do, SQLite", f"{middle:.1f} ms ({min(seconds):.1f} to {max(seconds):.1f})",
         verdict("under 20 ms", middle < 20)],
        ["its system calls", f"{calls:,}", ""],
        ["bytes that it reads", f"{read:,}", ""],
    ]


def _system_calls(command):
    log = FOLDER / "system_calls"
    run("strace", "--follow-forks", "--output", log, *command, cwd=FOLDER)
    return calls_and_bytes(log.read_text())


def calls_and_bytes(log):
    """The number of finished system calls in strace's output, and of the bytes that they read."""
    ended = re.compile(r"\d+ +(?:<\.\.\. )?(\w+)(?:\(| resumed>).* = (-?\w+|\?)")
    calls = [found.groups() for found in map(ended.match, log.splitlines()) if found]
    reads = [int(result) for name, result in calls if name in ("read", "pread64", "readv", "recvfrom", "recvmsg")]
    return len(calls), sum(size for size in reads if size > 0)


def start_java(sizes, rounds):
    """The same from an ERP in Java whose audit reader lists no entries."""
    data.copy_file(data.local_before_changes(sizes.server_orders), LOCAL)
    command = copying_from_memory(sizes.server_orders)
    seconds = [measured(command, components=JAVA_MEMORY).seconds * 1000 for _ in range(rounds)]
    middle = statistics.median(seconds)
    return [["start to exit, nothing to do, through Java", f"{middle:.0f} ms ({min(seconds):.0f} to {max(seconds):.0f})",
             verdict("at most 200 ms", middle <= 200)]]


def getters_java(_, rounds):
    """Medians of the times that java_getters.cpp reports."""
    medians = _medians(BENCH_PROGRAMS / "java_getters", rounds, env={**ENVIRONMENT, "QMX_COMPONENTS": str(JAVA_MEMORY)})
    return [[name, f"{ns:,.0f} ns", verdict("at most 150 ns", ns <= 150) if name.startswith("Java getter") else ""]
            for name, ns in medians]


def memory_java(sizes, _):
    """With the bridge's own options, and constant in a small heap."""
    small, few, many = data.java_memory("-Xmx64m"), max(1, sizes.few // 2), max(1, sizes.many // 2)
    own, small_few, small_many = (_peak_java(JAVA_MEMORY, sizes.few), _peak_java(small, few), _peak_java(small, many))
    name = "peak memory, full copy, SQLite, from Java"
    return [
        [f"{name}, {sizes.few:,} rows", f"{own:.1f} MiB", verdict("at most 110 MiB", own <= 110)],
        [f"{name}, `-Xmx64m`, {few:,} rows", f"{small_few:.1f} MiB", ""],
        [f"{name}, `-Xmx64m`, {many:,} rows", f"{small_many:.1f} MiB",
         verdict("same within 8 MiB", abs(small_many - small_few) <= 8)],
    ]


def _peak_java(components, rows):
    data.copy_file(data.empty_local(), LOCAL)
    peak = measured(copying_from_memory(rows), components=components).peak
    if int(run("sqlite3", LOCAL, "select count(*) from tssoc200")) != rows:
        sys.exit(f"from Java: not {rows:,} rows were copied")
    return peak


def _memory(system, sizes, limit, prepare, copy, count, processors=EVERY):
    """One run per size, because peak memory hardly differs between runs."""
    peaks = []
    for rows in (sizes.few, sizes.many):
        prepare()
        peaks.append(measured(copy(data.erp(rows)), processors).peak)
        if int(count()) != rows:
            sys.exit(f"{system}: not {rows:,} rows were copied")
    few, many = peaks
    name = "peak memory, full copy, " + system
    return [
        [f"{name}, {sizes.few:,} rows", f"{few:.2f} MiB", verdict(f"under {limit} MiB", few < limit)],
        [f"{name}, {sizes.many:,} rows", f"{many:.2f} MiB",
         verdict(f"under {limit} MiB, same within 1 MiB", many < limit and abs(many - few) <= 1)],
    ]


def memory_sqlite(sizes, mode="", in_mode=lambda command: command):
    empty = data.empty_local()
    return _memory("SQLite" + mode, sizes, 16, lambda: data.copy_file(empty, LOCAL), lambda erp: in_mode(copying_into_file(erp)),
                   lambda: run("sqlite3", LOCAL, "select count(*) from tssoc200"))


def memory_server(server, sizes, mode="", in_mode=lambda command: command):
    return _memory(server.name + mode, sizes, 24, lambda: server.sql("truncate table tssoc200", "truncate table tstables"),
                   lambda erp: in_mode(copying(server.connection, erp)), lambda: server.sql("select count(*) from tssoc200"), CLIENT)


def parts(sizes, rounds):
    """Parts of a copy: medians of the times that parts.cpp reports."""
    return [[name, f"{ns:,.0f} ns", ""] for name, ns in _medians(BENCH_PROGRAMS / "parts", rounds, data.erp(sizes.few))]


def _medians(program, rounds, *arguments, **options):
    report = json.loads(run(
        program, *arguments, "--benchmark_format=json", "--benchmark_min_time=0.1",
        f"--benchmark_repetitions={max(rounds, 2)}", "--benchmark_report_aggregates_only", **options))
    return [(one["run_name"], one["cpu_time"]) for one in report["benchmarks"] if one["aggregate_name"] == "median"]


ALONE = {
    "nothing-to-do": nothing_to_do,
    "memory-sqlite": lambda sizes, _: memory_sqlite(sizes),
    "memory-postgresql": lambda sizes, _: memory_server(servers.postgresql(), sizes),
    "memory-mariadb": lambda sizes, _: memory_server(servers.mariadb(), sizes),
    "java-start": start_java,
    "java-getters": getters_java,
    "java-memory": memory_java,
    "parts": parts,
}
