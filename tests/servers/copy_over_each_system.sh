#!/usr/bin/env bash
# copy_over_each_system.sh QMXDATACOPY TOOLS COMPONENTS: copies tables in full, and after a working day in the ERP by change, over SQLite,
# PostgreSQL and MariaDB. Fails where a copy fails or copies nothing. tests/servers/with_servers.sh runs it.
#
# TOOLS is the folder of qmxadmin and orvan-sandbox, COMPONENTS that of the component servers. There are some thousand activities of
# orders (tssoc210): several batches, each made while another is sent.
set -euo pipefail

program=$1
tools=$2
export QMX_COMPONENTS=$3
tables=(tsmdm140 tssoc210)

folder=$(mktemp --directory "${TMPDIR:-/tmp}/qmx-copies-XXXXXX")
trap 'rm -rf "$folder"' EXIT
mkdir "$folder/log"
export QMX_MESSAGE_BOARD=$folder/messages.txt

# copy SYSTEM CONNECTION METHOD: one run for each table. The scheduling server is told the numbers of records.
copy() {
  local system=$1 connection=$2 method=$3 table result
  for table in "${tables[@]}"; do
    rm -f "$QMX_MESSAGE_BOARD"
    "$program" "$connection, , $table, $folder/log, OrvanSandbox, $folder/$system-orvan.db, 17"
    result=$(grep -o "($table) : Copy result.*" "$QMX_MESSAGE_BOARD" || true)
    echo "$system, $method: $result"
    if ! grep -q '[1-9]' <<<"${result#*result}"; then
      echo "$system, $method: $table was not copied" >&2
      exit 1
    fi
  done
}

# copy_over SYSTEM CONNECTION: both ways, into an empty database.
copy_over() {
  local system=$1 connection=$2
  cp "$folder/orvan.db" "$folder/$system-orvan.db"
  "$tools/qmxadmin" init "$connection" '' >"$folder/init.txt"
  copy "$system" "$connection" full
  "$tools/orvan-sandbox" work "$folder/$system-orvan.db" >"$folder/work.txt"
  "$tools/qmxadmin" method "$connection" '' "${tables[@]}" changed >"$folder/method.txt"
  copy "$system" "$connection" changed
}

"$tools/orvan-sandbox" make "$folder/orvan.db" --seed 1 --orders 2000 --activities 4 >"$folder/make.txt"
echo 'create database copies character set utf8mb4 collate utf8mb4_nopad_bin' | isql -b -k "$QMX_TEST_MARIADB" >"$folder/isql.txt"

copy_over SQLite "Provider=SQLite;Mode=Create;Data Source=$folder/local.db"
copy_over PostgreSQL "$QMX_TEST_POSTGRESQL"
copy_over MariaDB "$QMX_TEST_MARIADB;DATABASE=copies"
