#!/usr/bin/env bash
# mutants.sh [--servers] [WORD...]: plants the faults of tests/mutants/ one at a time, and prints those that no test of their room catches.
# With words, only the faults whose line ("copy/full_copy.cpp: ...") contains one of them. See docs/tests.md.
#
# mutants.sh --check: only looks whether every fault can still be planted. Builds nothing.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

if [ "${1:-}" = --check ]; then exec python3 -B scripts/mutants.py --check; fi
install_packages "${testPackages[@]}"
if [ "${1:-}" = --servers ]; then
  shift
  exec tests/servers/with_servers.sh python3 -B scripts/mutants.py "$@"
fi
exec python3 -B scripts/mutants.py "$@"
