#!/usr/bin/env bash
# java_runs.sh [RUNS]: copies a table from the ERP in Java, 1,000 times by default. Each run starts and ends a JVM. Fails at the first run
# that hangs, fails, or leaves its table in progress.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh

runs=${1:-1000}
install_packages "${demoPackages[@]}" default-jdk-headless libxerial-sqlite-jdbc-java
build_preset release
bin=build/release/bin
work=$(mktemp --directory)
trap 'rm -rf "$work"' EXIT
local_database="Provider=SQLite;Data Source=$work/local.db"

"$bin/orvan-sandbox" make "$work/orvan.db" >/dev/null
"$bin/qmxadmin" init "$local_database;Mode=Create" local >/dev/null
mkdir "$work/log"
started=$SECONDS
for ((run = 1; run <= runs; run++)); do
  status=0
  QMX_COMPONENTS=build/release/components-java timeout --kill-after=5 60 "$bin/qmxdatacopy" \
    "$local_database, local, tsmdm030, $work/log, OrvanSandbox, $work/orvan.db" 2>"$work/said" || status=$?
  state=$(sqlite3 "$work/local.db" "select in_use from tstables where TableName = 'tsmdm030'" 'select count(*) from tsmdm030' | xargs)
  if [ $status -ne 0 ] || [ -s "$work/said" ] || [ "$state" != '0 12' ]; then
    echo "Run $run ended with status $status; the table's flag and rows: $state. $(cat "$work/said")" >&2
    exit 1
  fi
done
echo "$runs runs in $((SECONDS - started)) s: each copied 12 rows, printed nothing and released its table."
