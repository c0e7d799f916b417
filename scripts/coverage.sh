#!/usr/bin/env bash
# coverage.sh [REGEX]: builds the rooms so that reached lines and branches are counted, runs the tests (or those that match), and prints a
# table of the rooms. `build/coverage/missed.txt` has every line that no test reached.
#
# The tests run without database servers, over SQLite and its ODBC driver, because with servers they take several times as long. Run
# tests/servers/with_servers.sh scripts/coverage.sh to have them too.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

install_packages "${testPackages[@]}"
build_preset coverage
find build/coverage -name '*.gcda' -delete
export GCOV_ERROR_FILE=/dev/null  # a test's process may be unable to write its counts, and must not say so
# Tests of the packages and of speed build the product in their own way. The last one runs commands as another user, who may not write counts.
leftOut='^(House|Packages|Bench)|NeedNoRightToWrite'
[ -n "${QMX_TEST_POSTGRESQL:-}" ] || leftOut+='|Over(PostgreSQL|MariaDB)$|^Cluster'
ctest --test-dir build/coverage --output-on-failure -j "$(nproc)" --exclude-regex "$leftOut" --tests-regex "${1:-.}" \
  >build/coverage/tests.log || { grep -A 40 'tests failed' build/coverage/tests.log >&2; echo "The table counts what the failed tests reached, too." >&2; }
exec python3 -B scripts/coverage_table.py build/coverage
