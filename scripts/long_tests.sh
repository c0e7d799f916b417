#!/usr/bin/env bash
# long_tests.sh: runs the tests that ./test.sh leaves out because they take long: the whole suite of the copies, their faults and their whole
# mode once more over ODBC, PostgreSQL and MariaDB, a fault at each statement of a run, and everything over a cluster. They have the label "long".
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages "${testPackages[@]}"
build_preset debug
find build/debug -name '*_tests.cmake' -delete  # which tests there are depends on the servers
tests/servers/with_servers.sh ctest --preset debug --label-regex '^long$'
