#!/usr/bin/env python3
"""coverage_table.py BUILD: prints reached lines and branches by room, from the counts that the programs of a build left.

A line counts once, however often templates and inlined functions repeat it. A branch that only an exception takes does not count.
Writes the missed lines to BUILD/missed.txt.
"""

import json
import os
import subprocess
import sys
from collections import defaultdict
from pathlib import Path

ROOMS = ("startup", "handler", "copy", "calendar", "platform", "schema", "bridges", "sandbox", "tools")
DEEPER = {"platform": 2, "copy": 2, "bridges": 2, "tools": 3}  # folders that make a room


def room_of(source):
    folders = source.parent.parts
    return "/".join(folders[: DEEPER.get(folders[0], 1)])


def counts(build):
    """Returns for each source its lines' counts, and its branches' counts by line."""
    lines = defaultdict(lambda: defaultdict(int))
    branches = defaultdict(dict)
    root = Path.cwd()
    for notes in build.rglob("*.gcno"):
        data = notes.with_suffix(".gcda")
        # Without counts of its own, a source was linked into no program that ran.
        output = subprocess.run(["gcov", "--branch-probabilities", "--json-format", "--stdout", data if data.exists() else notes],
                                stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True).stdout
        for report in filter(None, output.splitlines()):
            for file in json.loads(report)["files"]:
                path = Path(os.path.normpath(build / file["file"] if not file["file"].startswith("/") else file["file"]))
                if not path.is_relative_to(root) or path.relative_to(root).parts[0] not in ROOMS:
                    continue
                source = path.relative_to(root)
                for line in file["lines"]:
                    number = line["line_number"]
                    lines[source][number] += line["count"]
                    taken = [branch["count"] for branch in line["branches"] if not branch["throw"]]
                    known = branches[source].get(number, [])
                    if len(known) == len(taken):
                        branches[source][number] = [one + other for one, other in zip(known, taken)]
                    elif len(taken) > len(known):
                        branches[source][number] = taken
    return lines, branches


def percent(reached, count):
    return f"{100 * reached / count:5.1f} %" if count else "      –"


def main():
    build = Path(sys.argv[1]).resolve()
    lines, branches = counts(build)
    if not lines:
        sys.exit(f"{build} has no counts: no program of this build has run")
    rooms = defaultdict(lambda: [0, 0, 0, 0])
    with open(build / "missed.txt", "w") as missed:
        for source in sorted(lines):
            for total in (rooms[room_of(source)], rooms["all"]):
                total[0] += sum(count > 0 for count in lines[source].values())
                total[1] += len(lines[source])
                for taken in branches[source].values():
                    total[2] += sum(count > 0 for count in taken)
                    total[3] += len(taken)
            text = source.read_text().splitlines()
            for number, count in sorted(lines[source].items()):
                if count == 0:
                    print(f"{source}:{number}: {text[number - 1].strip()}", file=missed)
    print("| room | lines | of | branches | of |\n|---|---:|---:|---:|---:|")
    for room in sorted(rooms, key=lambda room: (room == "all", room)):
        reached, count, taken, ways = rooms[room]
        print(f"| {'all' if room == 'all' else f'`{room}/`'} | {percent(reached, count)} | {count} | {percent(taken, ways)} | {ways} |")


main()
