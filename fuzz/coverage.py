#!/usr/bin/env python3
"""coverage.py TARGET SOURCE... < EXPORT: prints how many lines of each source llvm-cov saw reached. Fails below 90 % of all of them."""

import json
import os
import sys

LEAST = 90
target, *sources = sys.argv[1:]
# The names that llvm-cov knows depend on how the compiler was called.
build = os.path.join("build", "fuzz")
root = os.getcwd()
summaries = {}
for file in json.load(sys.stdin)["data"][0]["files"]:
    for folder in (root, os.path.join(root, build)):
        name = os.path.relpath(os.path.join(folder, file["filename"]), root)
        summaries.setdefault(name, file["summary"]["lines"])

count = covered = 0
for source in sources:
    if source not in summaries:
        sys.exit(f"{target}: llvm-cov does not know {source}, so the target cannot reach it")
    lines = summaries[source]
    count += lines["count"]
    covered += lines["covered"]
    missed = lines["count"] - lines["covered"]
    print(f"{target:20} {source:44} {lines['percent']:6.1f} %  {missed:3} of {lines['count']} lines missed")
if covered < count * LEAST / 100:
    sys.exit(f"{target} reaches {100 * covered / count:.1f} % of its sources' lines, which is less than {LEAST} %")
