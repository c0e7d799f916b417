#!/usr/bin/env python3
"""Measures the program beside the bare interfaces of the databases; ./bench.sh builds everything and calls this."""

import argparse
import os
import statistics
import sys
from dataclasses import dataclass

import servers
from cases import CASES, ON_SERVERS
from measuring import FOLDER, measured

# A server has one processor for itself, and what talks to it has another.
LAST = os.cpu_count() - 1
ALL_PROCESSORS, CLIENT, SERVER = f"0-{LAST}", "0", str(LAST)


@dataclass(frozen=True)
class Sizes:
    orders: int
    changes: int
    server_orders: int
    server_changes: int

    @staticmethod
    def scaled(scale):
        return Sizes(*(int(usual * scale) for usual in (1_000_000, 200_000, 200_000, 20_000)))


def measure(case, rounds, processors):
    """The measurements of each way, by name, round after round: A B C A B C ..."""
    taken = {way.name: [] for way in case.ways}
    for _ in range(rounds):
        contents = {}
        for way in case.ways:
            case.prepare()
            taken[way.name].append(measured(way.command, processors))
            way.finish()
            contents[way.name] = case.content()
        if len(set(contents.values())) != 1:
            sys.exit(f"{case.title}: the ways do not leave the same content.\n" +
                     "\n".join(f"{name}: {content}" for name, content in contents.items()))
    return taken


def lines(case, taken):
    """A line of the table for each way. Ratios are those of the program's time to the way's time in the same round."""
    program = taken[case.ways[0].name]
    for way in case.ways:
        seconds = statistics.median(one.seconds for one in taken[way.name])
        peak = max(one.peak for one in taken[way.name])
        ratio = target = ""
        if way.most is not None:
            ratios = [ours.seconds / theirs.seconds for ours, theirs in zip(program, taken[way.name])]
            middle = statistics.median(ratios)
            ratio = f"{middle:.2f} ({min(ratios):.2f} to {max(ratios):.2f})"
            target = f"{way.most:.2f}" + (" met" if middle <= way.most else " **missed**")
        yield [case.title, way.name, f"{seconds:.3f} s", f"{case.rows / seconds:,.0f}", ratio, target, f"{peak:.1f} MiB"]


HEAD = ["case", "way", "time", "rows/s", "program's time to it (from, to)", "target", "peak memory"]


def table(rows):
    rows = [HEAD, ["---"] * len(HEAD)] + rows
    return "\n".join("| " + " | ".join(row) + " |" for row in rows)


def main():
    options = argparse.ArgumentParser(prog="bench.sh", description="Measures the program beside the bare databases.")
    options.add_argument("cases", metavar="CASE", nargs="*", help=f"of {', '.join(CASES)}; all where none is named")
    options.add_argument("--scale", type=float, default=1, help="a part of the usual sizes, such as 0.1")
    options.add_argument("--rounds", type=int, default=5)
    options.add_argument("--quick", action="store_true", help="the same as --scale 0.02 --rounds 2")
    given = options.parse_args()
    if unknown := set(given.cases) - set(CASES):
        options.error(f"no such case: {', '.join(sorted(unknown))}")
    if given.quick:
        given.scale, given.rounds = 0.02, 2

    if ON_SERVERS & set(given.cases or CASES) and not servers.are_running():
        os.execvp("taskset", ["taskset", "--cpu-list", SERVER, str(servers.SCRIPT), sys.executable, "-B", *sys.argv])

    FOLDER.mkdir(parents=True, exist_ok=True)
    sizes = Sizes.scaled(given.scale)
    rows = []
    for name in given.cases or CASES:
        print(f"{name} ...", file=sys.stderr)
        case = CASES[name](sizes)
        rows += lines(case, measure(case, given.rounds, CLIENT if name in ON_SERVERS else ALL_PROCESSORS))
    print(table(rows))


if __name__ == "__main__":
    main()
