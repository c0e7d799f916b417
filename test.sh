#!/usr/bin/env bash
# The demo, then every test under AddressSanitizer and UndefinedBehaviorSanitizer. Installs what is missing.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/packages.sh

install_packages "${testPackages[@]}"
./demo.sh
build_preset debug
tests/servers/with_servers.sh ctest --preset debug
