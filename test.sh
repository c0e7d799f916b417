#!/usr/bin/env bash
# Runs the demo, then every test under AddressSanitizer and UndefinedBehaviorSanitizer, but those of scripts/long_tests.sh. Installs missing
# packages.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/packages.sh

install_packages "${testPackages[@]}"
./demo.sh
build_preset debug
tests/servers/with_servers.sh tests/run.sh --label-exclude '^long$'
echo "scripts/long_tests.sh has the tests that take longer."
