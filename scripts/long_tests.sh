#!/usr/bin/env bash
# long_tests.sh: runs the tests that ./test.sh leaves out because they take long: the whole suite of the copies, their faults and their whole
# mode once more over ODBC, PostgreSQL and MariaDB, a fault at each statement of a run and at each call of a JVM, the packages in a clean root,
# the ceilings of instructions, and everything over a cluster. They have the label "long".
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages "${testPackages[@]}"
build_preset release  # what is packed and counted
build_preset debug
tests/servers/with_servers.sh tests/run.sh --label-regex '^long$'
