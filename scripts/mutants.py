#!/usr/bin/env python3
"""mutants.py [--check | WORD...]: plants the faults of tests/mutants/*.txt one at a time and runs the tests of their room.

Works on a copy of the tree in build/mutants/tree, so the tree itself never has a fault. The unchanged copy is built and tested first: a test
that fails without a fault, or that the fault is not to blame for, catches nothing. A fault that does not compile is an error in the list. A
test that hangs is a catch. Exits with 1 if a fault survives or cannot be planted. Run from the root of the tree.

A list has lines "run: PROGRAM [ARGUMENT...]", the tests that run one after the other until one fails, and then the faults:

    @ SOURCE: what is wrong now
    - the text as it stands, exactly once in the source
    + the text instead

Either text may have several lines. "@servers" instead of "@" is for a fault that only a database server can show: without one it is passed
over. A line with "#" at its beginning is a comment.
"""

import os
import re
import shutil
import signal
import subprocess
import sys
import time
from dataclasses import dataclass, field
from pathlib import Path

LISTS = Path("tests/mutants")
FOLDER = Path("build/mutants")
TREE = FOLDER / "tree"
BUILD = FOLDER / "build"
LOG = FOLDER / "output.txt"
LONG_SLEEP = 20  # seconds; no test sleeps as long
JOBS = os.environ.get("QMX_MUTANTS_JOBS", str(os.cpu_count()))


@dataclass
class Fault:
    source: str
    title: str
    runs: list
    needs_servers: bool = False
    before: list = field(default_factory=list)
    after: list = field(default_factory=list)

    def __str__(self):
        return f"{self.source}: {self.title}"

    def planted(self, tree=Path(".")):
        """Returns the source with the fault, or raises ValueError."""
        before, after = "\n".join(self.before), "\n".join(self.after)
        path = tree / self.source
        if not path.is_file():
            raise ValueError("there is no such source")
        text = path.read_text()
        if not before or text.count(before) != 1:
            raise ValueError(f"its text is {text.count(before) if before else 0} times in the source, not once")
        if before == after:
            raise ValueError("it changes nothing")
        return text.replace(before, after)


def read_list(path):
    runs, faults = [], []
    for number, line in enumerate(path.read_text().splitlines(), 1):
        kind, text = line[:2], line[2:]
        if not line or line.startswith("#"):
            continue
        if line.startswith("run: "):
            runs.append(line[5:].split())
        elif match := re.fullmatch(r"@(servers)? ([^ ]+): (.+)", line):
            faults.append(Fault(match[2], match[3], runs, bool(match[1])))
        elif kind.strip() in ("-", "+") and faults:
            (faults[-1].before if kind[0] == "-" else faults[-1].after).append(text)
        else:
            sys.exit(f"{path}:{number}: this line is neither a comment nor a part of a fault")
    if not runs or not faults:
        sys.exit(f"{path} has no tests or no faults")
    return faults


def check(faults):
    """Returns what is wrong with the list."""
    wrong, seen = [], set()
    for fault in faults:
        try:
            planted = fault.planted()
            if planted in seen:
                raise ValueError("it is in the list twice")
            seen.add(planted)
        except ValueError as error:
            wrong.append(f"{fault}: {error}")
    return wrong


def write(path, text):
    if not path.exists() or path.read_bytes() != text:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(text)


def copy_tree():
    names = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], stdout=subprocess.PIPE,
                           check=True).stdout.decode().split("\0")
    for name in filter(None, names):
        source, target = Path(name), TREE / name
        if source.is_file():
            write(target, source.read_bytes())
            shutil.copymode(source, target)


def activity(session):
    """Returns the processor time of the session's processes in seconds, and whether a thread of them runs or could."""
    used, active = 0, False
    for task in Path("/proc").glob("[0-9]*/task/[0-9]*/stat"):
        try:
            state = task.read_text().rpartition(")")[2].split()
        except OSError:  # it has just ended
            continue
        if int(state[3]) == session:
            used += int(state[11]) + int(state[12])
            active = active or state[0] != "S"
    return used / os.sysconf("SC_CLK_TCK"), active


def run(command, limit=None):
    """Returns the exit status, or None if it hangs: it has used more processor time than the limit, or all its threads sleep for long.

    A busy machine makes a program slow, and does neither. LOG has the output.
    """
    with open(LOG, "wb") as log:
        process = subprocess.Popen(command, stdout=log, stderr=subprocess.STDOUT, start_new_session=True)
        try:
            asleep = 0
            while True:
                try:
                    return process.wait(1)
                except subprocess.TimeoutExpired:
                    used, active = activity(process.pid)
                    asleep = 0 if active else asleep + 1
                    if limit is not None and (used > limit or asleep > LONG_SLEEP):
                        return None
        finally:
            try:  # what a test has started ends with it
                os.killpg(process.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            process.wait()


def output():
    return LOG.read_text(errors="replace")


def configure():
    # Warnings are not errors here: a fault may leave a name that nobody uses.
    return run(["cmake", "-S", TREE, "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0",
                "-DCMAKE_C_FLAGS_DEBUG=-O0", "-DCMAKE_CXX_COMPILER=g++", "-DCMAKE_C_COMPILER=gcc", "-DQMX_JOIN_SOURCES=tools;tests",
                "-DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=gold"]) == 0


def build(targets):
    return run(["cmake", "--build", BUILD, "-j", JOBS, "--target", *targets]) == 0


def program_of(test):
    return next(path for path in BUILD.glob(f"bin/{test[0]}"))


def tested(test, limit=None, more=()):
    return run([program_of(test), "--gtest_fail_fast", "--gtest_brief=1", *test[1:], *more], limit)


def failed_test():
    found = re.search(r"^\[  FAILED  \] ([^\s,]+)", output(), re.MULTILINE)
    return found.group(1) if found else None


def catch(fault, limits):
    """Returns what caught the fault, or None. Raises ValueError if it does not compile."""
    for test in fault.runs:
        if not build([test[0]]):
            raise ValueError("it does not compile:\n" + "\n".join(re.findall(r"^.*(?:error|undefined).*$", output(), re.MULTILINE)[:3]))
        for _ in range(3):
            status = tested(test, limits[tuple(test)])
            if status == 0:
                break
            if status is None:
                return f"{test[0]} hangs"
            name = failed_test()
            if not name:
                return f"{test[0]} ends with {status}"
            # Fails it again? Otherwise something else is to blame, and all are run once more.
            if tested([test[0]], limits[tuple(test)], [f"--gtest_filter={name}"]) != 0:
                return name
    return None


def main():
    words = sys.argv[1:]
    faults = [fault for path in sorted(LISTS.glob("*.txt")) for fault in read_list(path)]
    wrong = check(faults)
    if wrong or words == ["--check"]:
        print("\n".join(wrong) or f"All {len(faults)} faults can be planted.")
        sys.exit(1 if wrong else 0)
    has_servers = "QMX_TEST_POSTGRESQL" in os.environ and "QMX_TEST_MARIADB" in os.environ
    wanted = [fault for fault in faults if not words or any(word in str(fault) for word in words)]
    chosen = [fault for fault in wanted if has_servers or not fault.needs_servers]
    if len(chosen) < len(wanted):
        print(f"{len(wanted) - len(chosen)} faults are passed over, because only --servers can show them.")
    if not chosen:
        sys.exit(f"No fault to plant for {' '.join(words)}.")

    signal.signal(signal.SIGTERM, lambda *_: sys.exit("ended by a signal"))  # so that what runs is ended
    begin = time.monotonic()
    FOLDER.mkdir(parents=True, exist_ok=True)
    copy_tree()
    runs = list(dict.fromkeys(tuple(test) for fault in chosen for test in fault.runs))
    print(f"Building {', '.join(dict.fromkeys(test[0] for test in runs))}", flush=True)
    if not configure() or not build(dict.fromkeys(test[0] for test in runs)):
        sys.exit(output())
    limits = {}
    for test in runs:
        before = sum(os.times()[2:4])
        if tested(test) != 0:
            sys.exit(output() + f"\n{' '.join(test)} fails without a fault.")
        limits[test] = 5 + 2 * (sum(os.times()[2:4]) - before)
    print(f"{len(chosen)} faults. The tests pass without one, after {time.monotonic() - begin:.0f} s.", flush=True)

    survivors, errors = [], []
    for number, fault in enumerate(chosen, 1):
        start = time.monotonic()
        target = TREE / fault.source
        intact = target.read_bytes()
        write(target, fault.planted(TREE).encode())
        try:
            caught = catch(fault, limits)
            if not caught:
                survivors.append(fault)
        except ValueError as error:
            caught = f"ERROR: {error}"
            errors.append(fault)
        write(target, intact)
        print(f"{number:3} {time.monotonic() - start:5.1f} s  {caught or 'SURVIVES':60}  {fault}", flush=True)
    minutes = (time.monotonic() - begin) / 60
    print(f"\n{len(chosen)} faults in {minutes:.0f} minutes: {len(chosen) - len(survivors) - len(errors)} caught, "
          f"{len(survivors)} survive, {len(errors)} do not compile.")
    for fault in survivors:
        print(f"survives: {fault}")
    for fault in errors:
        print(f"does not compile: {fault}")
    sys.exit(1 if survivors or errors else 0)


main()
