#!/usr/bin/env bash
# Builds the program and the references, makes the data, and measures; see ./bench.sh --help. Installs missing packages.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/packages.sh

install_packages "${benchPackages[@]}"
build_preset release all bench_programs
# Debian's Python has the plotting library.
exec /usr/bin/python3 -B bench/run.py "$@"
