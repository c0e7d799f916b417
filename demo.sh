#!/usr/bin/env bash
# Installs what is missing, builds, and shows the program at work: a sandbox ERP with data, an empty local database, every table
# copied in full, one working day in the ERP, every table copied by change. Everything is left in demo/ to look at.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/packages.sh

install_packages "${demoPackages[@]}"
build_preset release

bin=build/release/bin
export QMX_COMPONENTS=build/release/components
export QMX_MESSAGE_BOARD=demo/messages.txt
rm -rf demo
mkdir -p demo/log

step() { printf '\n== %s\n' "$*"; }

connection='Provider=SQLite;Data Source=demo/local.db'

# copy TABLE [EXTENDED-FORM]: one run of qmxdatacopy, and its line in the results.
copy() {
  local table=$1 argument=${2:-$1} method started milliseconds
  method=$(sqlite3 demo/local.db "select case syme when 2 then 'changed' else 'full' end from tstables where TableName = '$table'")
  [ "$argument" = "$table" ] || method="one $argument"
  started=$(date +%s%N)
  if ! $bin/qmxdatacopy "$connection, local, $argument, demo/log, OrvanSandbox, demo/orvan.db, 17"; then
    echo "The copy of $table failed:" >&2
    cat "demo/log/$table.log" >&2
    exit 1
  fi
  milliseconds=$((($(date +%s%N) - started) / 1000000))
  # The scheduling server was told: "Service Types (tsmdm030) : Copy result. Added - 12;   Updated - 0;   Removed - 0"
  grep -F "($table) : Copy result." demo/messages.txt | tail -n 1 |
    sed -E "s/^.*\" *//; s/^.*  *([A-Z][A-Za-z ]*) \($table\) : Copy result\. Added - ([0-9]+);   Updated - ([0-9]+);   Removed - ([0-9]+).*$/$table,\1,${method:-full},\2,\3,\4,$milliseconds/" >>demo/results.csv
}

results() {
  sqlite3 -box demo/results.db -cmd 'create table if not exists results(code, description, method, added, updated, removed, milliseconds)' \
    -cmd '.import --csv demo/results.csv results' 'select * from results; delete from results'
  rm -f demo/results.csv demo/results.db
}
