#!/usr/bin/env bash
# Copies every table through COM under Wine, in full and by change, and calendars on request. Compares the rows, the calls in
# the traces, the messages and the reports of failures with those of the program on Linux over the same file.
#
#   com.sh [LINUX-BUILD [WINDOWS-BUILD]]       (default: build/debug and build/windows)
set -euo pipefail
cd "$(dirname "$0")/../.."
linux=$(realpath "${1:-build/debug}")
windows=$(realpath "${2:-build/windows}")
folder=$(mktemp -d)
export WINEPREFIX=$folder/prefix WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
# The server of this prefix ends with its last process, and writes into the prefix until then.
trap 'wineserver -k || true; wineserver -w || true; rm -rf "$folder"' EXIT

wine_path() { printf 'Z:%s' "${1//\//\\}"; }

mkdir "$folder/none" "$folder/linux" "$folder/windows"
wineboot --init >/dev/null 2>&1
wine regsvr32 /s "$(wine_path "$windows/components/orvan_com.dll")"
echo "The sandbox's component servers are registered in COM."

erp=$folder/orvan.db
"$linux/bin/orvan-sandbox" make "$erp" --seed 1 --employees 8 --orders 40 >/dev/null
"$linux/bin/qmxadmin" init "Provider=SQLite;Mode=Create;Data Source=$folder/linux/local.db" "" >/dev/null
cp "$folder/linux/local.db" "$folder/windows/local.db"
cp "$folder/linux/local.db" "$folder/new.db"

run=0
# copy REQUEST [ERP-FILE]: on both systems, each with its own local database, trace and message board.
copy() {
  run=$((run + 1))
  local name expected=0 status=0 file=${2:-$erp}
  name=$(printf '%03d' $run)
  QMX_COMPONENTS=$linux/components QMX_MESSAGE_BOARD=$folder/linux/board QMX_TRACE=$folder/linux/$name.trace LC_ALL=C \
    "$linux/bin/qmxdatacopy" "Provider=SQLite;Data Source=$folder/linux/local.db,,$1,$folder/linux,OrvanSandbox,$file,7" \
    2>"$folder/linux/$name.err" || expected=$?
  QMX_COMPONENTS=$(wine_path "$folder/none") QMX_MESSAGE_BOARD=$(wine_path "$folder/windows/board") \
    QMX_TRACE=$(wine_path "$folder/windows/$name.trace") LC_ALL=C \
    wine "$windows/bin/qmxdatacopy.exe" \
    "Provider=SQLite;Data Source=$(wine_path "$folder/windows/local.db"),,$1,$(wine_path "$folder/windows"),OrvanSandbox,$(wine_path "$file"),7" \
    2>"$folder/windows/$name.err" || status=$?
  if [ "$status" != "$expected" ] || [ "$expected" != "${wanted:-0}" ]; then
    echo "$1: exit status $status, on Linux $expected" >&2
    cat "$folder/windows/$name.err" >&2
    exit 1
  fi
}

tables=(tsmdm030 tsmdm100 tsmdm105 tsmdm130 tsmdm135 tsmdm140 tsclm020 tsclm024 tccom130 tcccp030 tcccp001 tscfg200 tscfg220 tssoc200
        tssoc205 tssoc210 tsspc200)
for table in "${tables[@]}"; do copy "$table"; done
python3 tests/windows/same_copies.py "$folder" in full

# The trail says that the company worked yesterday, after the last update time of all tables.
python3 tests/windows/same_copies.py "$folder" --by-change
"$linux/bin/orvan-sandbox" work "$erp" --seed 2 --from "$(date -d 'yesterday 00:00:01' '+%F %T')" >/dev/null
for table in "${tables[@]}"; do copy "$table"; done
python3 tests/windows/same_copies.py "$folder" by change

employee=$(python3 tests/windows/same_copies.py "$folder" --employee)
copy "tcccp030=$employee=E"
copy "tcccp030=$(python3 tests/windows/same_copies.py "$folder" --calendar)=C"
python3 tests/windows/same_copies.py "$folder" on request

# Failures of the component: its file is missing, and its tables are.
wanted=1 copy tsmdm030 "$folder/none.db"
: >"$folder/empty.db"
wanted=1 copy tscfg200 "$folder/empty.db"
python3 tests/windows/same_copies.py "$folder" when the ERP fails

# Components that end the process in a call over COM.
wine regsvr32 /u /s "$(wine_path "$windows/components/orvan_com.dll")"
mkdir "$folder/ending"
cp "$windows/components/orvan_com.dll" "$windows"/tests/startup/servers/ending.* "$folder/ending"
wine regsvr32 /s "$(wine_path "$folder/ending/orvan_com.dll")"
call="during getServiceType of ServiceTypes.ServiceTypesManager: the table stays in progress: qmxadmin release tsmdm030"
# ends WHAT TEXT: the run ends at the fifth call of a getter, and standard error begins with the text.
ends() {
  local first
  rm -f "$folder"/ending/local.db*
  cp "$folder/new.db" "$folder/ending/local.db"
  first=$(QMX_COMPONENTS=$(wine_path "$folder/none") QMX_TEST_AT=getServiceType QMX_TEST_CALL=5 QMX_TEST_DO=$1 LC_ALL=C \
    wine "$windows/bin/qmxdatacopy.exe" \
    "Provider=SQLite;Data Source=$(wine_path "$folder/ending/local.db"),,tsmdm030,$(wine_path "$folder/ending"),a,b,7" \
    2>&1 >/dev/null | head -1 | tr -d '\r') || true
  if [ "$first" != "$2 $call" ]; then
    echo "$1: standard error begins with: $first" >&2
    exit 1
  fi
}
ends 'exit 0' 'exit was called by something other than the program'
ends fault 'An access violation ended the run'
ends 'raise 22' 'abort ended the run'
echo "Components that end the process in a call over COM are reported."
