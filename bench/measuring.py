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
ENVIRONMENT = {**os.environ, "QMX_COMPONENTS": str(ROOT / "build/release/components")}

# A server has the last processor for itself, and what talks to it the first one.
LAST = os.cpu_count() - 1
EVERY, CLIENT, SERVER = f"0-{LAST}", "0", str(LAST)


@dataclass(frozen=True)
class Measurement:
    seconds: float
    peak: float  # MiB


def run(*command, **options):
    """Runs a program that must end well, and returns what it printed."""
    command = [str(word) for word in command]
    done = subprocess.run(command, env=ENVIRONMENT, capture_output=True, text=True, check=False, **options)
    if done.returncode != 0:
        sys.exit(f"{' '.join(command)}\nended with status {done.returncode}:\n{done.stdout}{done.stderr}")
    return done.stdout


def copying(connection, erp):
    """The command that copies the service orders."""
    logs = FOLDER / "logs"
    logs.mkdir(exist_ok=True)
    return [PROGRAMS / "qmxdatacopy", f"{connection},,tssoc200,{logs},OrvanSandbox,{erp}"]


def copying_into_file(erp):
    return copying(f"Provider=SQLite;Data Source={LOCAL}", erp)


def measured(command, processors=EVERY):
    """The same on some of the machine's processors, with its time from start to exit and the most memory that it held.

    A program that prints "seconds N" knows better which part of its time counts.
    """
    took = FOLDER / "took"
    output = run("taskset", "--cpu-list", processors, BENCH_PROGRAMS / "measured", took, *command, cwd=FOLDER)
    seconds, kibibytes = took.read_text().split()
    own = re.fullmatch(r"seconds (\S+)\n", output)
    return Measurement(float(own[1] if own else seconds), int(kibibytes) / 1024)
