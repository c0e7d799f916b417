#!/usr/bin/env bash
# long_tests.sh: runs the tests that ./test.sh leaves out because they take long: the faults and the whole mode of all copies over PostgreSQL
# and MariaDB, and everything over a cluster. They have the label "long".
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages "${testPackages[@]}"
build_preset debug
tests/servers/with_servers.sh ctest --preset debug --label-regex '^long$'
