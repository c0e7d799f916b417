"""Runs and measures programs, and ends if one fails."""

import os
import re
import subprocess
import sys
from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
PROGRAMS = ROOT / "build/release/bin"
BENCH_PROGRAMS = ROOT / "build/release/bench"
FOLDER = ROOT / "build/bench"
LOCAL = FOLDER / "local.db"  # the target of the copies
MEMORY, JAVA_MEMORY = BENCH_PROGRAMS / "components", BENCH_PROGRAMS / "components-java"  # ERPs in memory, in C and in Java
ENVIRONMENT = {**os.environ, "QMX_COMPONENTS": str(ROOT / "build/release/components")}

# A server runs on the last processor, its client on the first.
LAST = os.cpu_count() - 1
EVERY, CLIENT, SERVER = f"0-{LAST}", "0", str(LAST)


@dataclass(frozen=True)
class Measurement:
    seconds: float
    processor: float  # seconds of CPU time
    peak: float  # MiB


def run(*command, env=ENVIRONMENT, **options):
    """Runs a program that must succeed, and returns its output."""
    command = [str(word) for word in command]
    done = subprocess.run(command, env=env, capture_output=True, text=True, check=False, **options)
    if done.returncode != 0:
        sys.exit(f"{' '.join(command)}\nended with status {done.returncode}:\n{done.stdout}{done.stderr}")
    return done.stdout


def logs():
    folder = FOLDER / "logs"
    folder.mkdir(exist_ok=True)
    return folder


def copying(connection, erp):
    """The command that copies the service orders."""
    return [PROGRAMS / "qmxdatacopy", f"{connection},,tssoc200,{logs()},OrvanSandbox,{erp}"]


def copying_from_memory(orders):
    """The same with an ERP in memory, into a file."""
    return [PROGRAMS / "qmxdatacopy", f"Provider=SQLite;Data Source={LOCAL},,tssoc200,{logs()},Memory,{orders}"]


def copying_into_file(erp):
    return copying(f"Provider=SQLite;Data Source={LOCAL}", erp)


def measured(command, processors=EVERY, components=None):
    """Runs a program on the given processors and measures its time from start to exit and its peak memory.

    A program that prints "seconds N of processor time M" has measured the part of its time that counts. `components` is the
    folder of the ERP's components; the sandbox's by default.
    """
    took = FOLDER / "took"
    environment = {**ENVIRONMENT, "QMX_COMPONENTS": str(components)} if components else ENVIRONMENT
    output = run("taskset", "--cpu-list", processors, BENCH_PROGRAMS / "measured", took, *command, cwd=FOLDER, env=environment)
    seconds, processor, kibibytes = took.read_text().split()
    if own := re.fullmatch(r"seconds (\S+) of processor time (\S+)\n", output):
        seconds, processor = own.groups()
    return Measurement(float(seconds), float(processor), int(kibibytes) / 1024)
