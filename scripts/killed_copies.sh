#!/usr/bin/env bash
# killed_copies.sh [KILLS]: kills copies in whole mode at random moments, in full and by change, over SQLite, PostgreSQL and MariaDB: 200 times
# each by default. Another connection counts the rows all the time. Fails if it ever sees anything but all old or all new rows.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages "${testPackages[@]}"
build_preset debug whole_tests
export QMX_TEST_KILLS=${1:-200}
tests/servers/with_servers.sh build/debug/bin/whole_tests --gtest_filter='*WholeMode.LeavesTheOldOrdersOrTheNewOnesWheneverItIsKilled*'
echo "$QMX_TEST_KILLS copies were killed each way over each system: every table was old or new."
