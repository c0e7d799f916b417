#!/usr/bin/env bash
# faults.sh [KIND] [RUNS]: tries so many faults (60) of each kind beneath the program, or of those whose names begin with KIND, in each
# way of copying and over each system. Prints what it tried, and fails if a run left anything that docs/guarantees.md rules out.
#
# Builds the program and the driver first. Installs missing packages.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/packages.sh

install_packages "${testPackages[@]}"
build_preset release qmxdatacopy orvan_sandbox qmx_sandbox_server
build_preset debug faults
# The servers are these runs' own.
tests/servers/with_servers.sh build/debug/bin/faults "$@"
