#!/usr/bin/env bash
# tsan.sh: runs the tests of the batches, and full and changed copies over SQLite, PostgreSQL and MariaDB, under ThreadSanitizer. Exits with
# 66 if it finds a data race.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages "${testPackages[@]}"
build_preset debug qmxadmin orvan-sandbox
build_preset tsan qmxdatacopy orvan_sandbox qmx_sandbox_server batches_tests
program=build/tsan/bin/qmxdatacopy

# ThreadSanitizer of g++ 12 does not start if the kernel randomises addresses too much.
plain=()
if "$program" --version 2>&1 | grep -q 'unexpected memory mapping'; then plain=(setarch --addr-no-randomize); fi

export TSAN_OPTIONS="halt_on_error=1:exitcode=66"  # the drivers need no suppressions
look() { "${plain[@]}" tests/servers/with_servers.sh "$@"; }

look build/tsan/bin/batches_tests --gtest_brief=1
look tests/servers/copy_over_each_system.sh "$program" build/debug/bin build/tsan/components
echo "ThreadSanitizer found no race."
