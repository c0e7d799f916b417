#!/usr/bin/env python3
"""Measures the program and the bare interfaces of the databases. ./bench.sh builds everything and calls this."""

import argparse
import os
import statistics
import sys
from dataclasses import dataclass

import cluster
import page
import servers
import whole
from alone import ALONE, verdict
from measuring import CLIENT, EVERY, FOLDER, SERVER, measured
from races import RACES

RACES = RACES | whole.RACES
ALONE = ALONE | whole.ALONE
CASES = [*RACES, *ALONE]
ON_SERVERS = {name for name in CASES if "postgresql" in name or "mariadb" in name}


@dataclass(frozen=True)
class Sizes:
    orders: int
    changes: int
    server_orders: int
    server_changes: int
    calendars: int
    few: int  # rows, to measure memory
    many: int
    years: int = 10  # of a calendar

    @staticmethod
    def scaled(scale):
        usual = (1_000_000, 200_000, 200_000, 20_000, 200, 200_000, 2_000_000)
        return Sizes(*(max(1, int(size * scale)) for size in usual))


def run_race(race, rounds, processors):
    """The measurements of each way, by name. Each round begins with the next way: A B C, B C A, C A B, ..."""
    taken = {way.name: [] for way in race.ways}
    contents = {}
    for number in range(rounds):
        first = number % len(race.ways)
        for way in race.ways[first:] + race.ways[:first]:
            if way.once and number > 0:
                continue
            race.prepare()
            taken[way.name].append(measured(way.command, processors, way.components))
            way.finish()
            contents[way.name] = race.content()
        if len(set(contents.values())) != 1:
            sys.exit(f"{race.title}: the ways do not leave the same content.\n" +
                     "\n".join(f"{name}: {content}" for name, content in contents.items()))
    return taken


def lines(race, taken):
    """One line per way. A ratio is the program's time divided by the way's time in the same round."""
    program = taken[race.ways[0].name]
    for way in race.ways:
        seconds = statistics.median(one.seconds for one in taken[way.name])
        processor = statistics.median(one.processor for one in taken[way.name])
        peak = max(one.peak for one in taken[way.name])
        ratio = target = ""
        if way is not race.ways[0]:
            ratios = [ours.seconds / theirs.seconds for ours, theirs in zip(program, taken[way.name])]
            middle = statistics.median(ratios)
            ratio = f"{middle:.2f} ({min(ratios):.2f} to {max(ratios):.2f})"
            if way.most is not None:
                target = verdict(f"{way.most:.2f}", middle <= way.most)
        yield [race.title, way.name, f"{seconds:.2f} s", f"{processor:.2f} s", f"{race.rows / seconds:,.0f}", ratio, target,
               f"{peak:.1f} MiB"]


def bars(race, taken):
    """For the chart: each way's median time."""
    return race.title, [(way.name, statistics.median(one.seconds for one in taken[way.name])) for way in race.ways]


def options():
    parser = argparse.ArgumentParser(prog="bench.sh", description="Compares the program with the bare databases.")
    parser.add_argument("cases", metavar="CASE", nargs="*", help=f"one of {', '.join(CASES)}; default: all. Or, by itself, cluster: one node beside three")
    parser.add_argument("--scale", type=float, default=1, help="factor on the usual sizes, such as 0.1")
    parser.add_argument("--rounds", type=int, default=5)
    parser.add_argument("--quick", action="store_true", help="same as --scale 0.02 --rounds 2")
    parser.add_argument("--smoke", action="store_true", help="one round of tiny sizes without servers, to test this script")
    parser.add_argument("--page", action="store_true", help="write docs/benchmarks.md even if the sizes are not the usual ones")
    given = parser.parse_args()
    if given.cases != ["cluster"] and (unknown := set(given.cases) - set(CASES)):
        parser.error(f"no such case: {', '.join(sorted(unknown))}")
    if given.quick:
        given.scale, given.rounds = 0.02, 2
    if given.smoke:
        given.scale, given.rounds = 0.001, 1
        given.cases = [name for name in CASES if name not in ON_SERVERS]
    return given


def main():
    given = options()
    if given.cases == ["cluster"]:
        cluster.main(Sizes.scaled(given.scale), given.rounds)
        return
    cases = given.cases or CASES
    if ON_SERVERS & set(cases) and not servers.are_running():
        os.environ["QMX_SERVERS_AS_DELIVERED"] = "yes"
        os.execvp("taskset", ["taskset", "--cpu-list", SERVER, str(servers.SCRIPT), sys.executable, "-B", *sys.argv])

    FOLDER.mkdir(parents=True, exist_ok=True)
    sizes = Sizes.scaled(given.scale)
    report = page.Report(given.rounds, given.scale)
    for name in cases:
        print(f"{name} ...", file=sys.stderr, flush=True)
        if name in RACES:
            race = RACES[name](sizes)
            taken = run_race(race, given.rounds, CLIENT if name in ON_SERVERS else EVERY)
            report.races += lines(race, taken)
            report.ways += [[race.title, way.name, way.reads, way.writes] for way in race.ways]
            report.bars.append(bars(race, taken))
        else:
            report.alone += ALONE[name](sizes, given.rounds)
    print(report.text(), end="")
    if given.page or (cases == CASES and given.scale == 1):
        report.write()


if __name__ == "__main__":
    main()
