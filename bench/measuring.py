"""Running programs: what they take, and that they end well."""

import os
import subprocess
import sys
from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
PROGRAMS = ROOT / "build/release/bin"
BENCH_PROGRAMS = ROOT / "build/release/bench"
FOLDER = ROOT / "build/bench"
ENVIRONMENT = {**os.environ, "QMX_COMPONENTS": str(ROOT / "build/release/components")}


@dataclass(frozen=True)
class Measurement:
    seconds: float
    peak: float  # MiB
    output: str


def run(*command, **options):
    """Runs a program that must end well, and returns what it printed."""
    command = [str(word) for word in command]
    done = subprocess.run(command, env=ENVIRONMENT, capture_output=True, text=True, check=False, **options)
    if done.returncode != 0:
        sys.exit(f"{' '.join(command)}\nended with status {done.returncode}:\n{done.stdout}{done.stderr}")
    return done.stdout


def measured(command, processors):
    """The same from start to exit on some of the machine's processors, with its time and the most memory that it held."""
    took = FOLDER / "took"
    output = run("taskset", "--cpu-list", processors, BENCH_PROGRAMS / "measured", took, *command, cwd=FOLDER)
    seconds, kibibytes = took.read_text().split()
    return Measurement(float(seconds), int(kibibytes) / 1024, output)
