#!/usr/bin/env python3
"""Every fuzz target is built, has seeds, names sources that exist, is on the page, and is run by the checks of a change."""

import re
import sys
from pathlib import Path

problems = []
lines = [line.split() for line in Path("fuzz/targets.txt").read_text().splitlines() if not line.startswith("#")]
listed = [line[0] for line in lines]
built = re.findall(r"^qmx_fuzz_target\((\w+) SOURCES (\w+)\.cpp", Path("fuzz/CMakeLists.txt").read_text(), re.MULTILINE)
sources = {path.stem for path in Path("fuzz").glob("*.cpp") if "LLVMFuzzerTestOneInput" in path.read_text()}
corpora = {path.name for path in Path("fuzz/corpus").iterdir()}
described = re.findall(r"^\| `(\w+)` \|", Path("docs/fuzzing.md").read_text(), re.MULTILINE)

if not listed:
    problems.append("fuzz/targets.txt lists no target")
for place, names in {
    "built by fuzz/CMakeLists.txt": {name for name, source in built if name == source},
    "a source with an entry for libFuzzer": sources,
    "a folder of fuzz/corpus": corpora,
    "described by docs/fuzzing.md": set(described),
}.items():
    for name in sorted(names ^ set(listed)):
        problems.append(f"{name} is " + (f"listed in fuzz/targets.txt, but is not {place}" if name in listed else f"{place}, but is not listed in fuzz/targets.txt"))
if listed != sorted(set(listed)) or described != sorted(set(described)):
    problems.append("the targets are not in the order of their names, or one is there twice")
for name, *reached in lines:
    if not any(path.is_file() for path in Path("fuzz/corpus", name).glob("*")):
        problems.append(f"{name} has no seed in fuzz/corpus/{name}")
    if not reached:
        problems.append(f"fuzz/targets.txt names no source that {name} must reach")
    problems += [f"{name} must reach {source}, which does not exist" for source in reached if not Path(source).is_file()]

commands = [line.strip() for line in Path(".ci/run").read_text().splitlines()]
for command in ("./fuzz.sh", "./fuzz.sh --coverage"):
    if command not in commands:
        problems.append(f".ci/run does not run {command}, without naming a target")
if problems:
    sys.exit("\n".join(problems))
