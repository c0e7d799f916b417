"""Running programs, the product's above all: what they take, and that they end well."""

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
LOCAL = FOLDER / "local.db"  # what is copied into
MEMORY, JAVA_MEMORY = BENCH_PROGRAMS / "components", BENCH_PROGRAMS / "components-java"  # ERPs in memory, in C and in Java
ENVIRONMENT = {**os.environ, "QMX_COMPONENTS": str(ROOT / "build/release/components")}

# A server has the last processor for itself, and what talks to it the first one.
LAST = os.cpu_count() - 1
EVERY, CLIENT, SERVER = f"0-{LAST}", "0", str(LAST)


@dataclass(frozen=True)
class Measurement:
    seconds: float
    processor: float  # seconds that processors worked
    peak: float  # MiB


def run(*command, env=ENVIRONMENT, **options):
    """Runs a program that must end well, and returns what it printed."""
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
    """The same on some of the machine's processors, with what it took from start to exit and the most memory that it held.

    A program that prints "seconds N of processor time M" knows better which part of its time counts. The components are
    the sandbox's where no other folder is named.
    """
    took = FOLDER / "took"
    environment = {**ENVIRONMENT, "QMX_COMPONENTS": str(components)} if components else ENVIRONMENT
    output = run("taskset", "--cpu-list", processors, BENCH_PROGRAMS / "measured", took, *command, cwd=FOLDER, env=environment)
    seconds, processor, kibibytes = took.read_text().split()
    if own := re.fullmatch(r"seconds (\S+) of processor time (\S+)\n", output):
        seconds, processor = own.groups()
    return Measurement(float(seconds), float(processor), int(kibibytes) / 1024)
