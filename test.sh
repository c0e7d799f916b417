#!/usr/bin/env bash
# Runs the demo, then every test under AddressSanitizer and UndefinedBehaviorSanitizer. Installs missing packages.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/packages.sh

install_packages "${testPackages[@]}"
./demo.sh
build_preset debug
tests/servers/with_servers.sh tests/run.sh
