#!/usr/bin/env bash
# Installs missing packages, builds, and demonstrates the program: a sandbox ERP with data, an empty local database, every table
# copied in full, a working day in the ERP, every table copied by change, one employee's calendar, and the expansion of the
# calendars into working intervals. All files stay in demo/.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/packages.sh

install_packages "${demoPackages[@]}"
build_preset release

bin=build/release/bin
export QMX_COMPONENTS=build/release/components
export QMX_MESSAGE_BOARD=demo/messages.txt
connection='Provider=SQLite;Data Source=demo/local.db'
# Employees come before calendars: only calendars that employees use are copied.
tables=(tsmdm030 tsmdm100 tsmdm105 tsmdm130 tsmdm140 tsmdm135 tsclm020 tsclm024 tccom130 tcccp001 tcccp030
        tscfg220 tscfg200 tssoc200 tssoc210 tssoc205 tsspc200)

rm -rf demo
mkdir -p demo/log

step() { printf '\n== %s\n' "$*"; }

local_sql() { sqlite3 "$@" demo/local.db; }

run() { # run TABLE-OR-EXTENDED-FORM: one run of the program, as a scheduler starts it
  "$bin/qmxdatacopy" "$connection, local, $1, demo/log, OrvanSandbox, demo/orvan.db, 17"
}

# copy TABLE: one run, and a line in the results with the counts sent to the scheduling server and the duration.
copy() {
  local started=${EPOCHREALTIME/[.,]/} method
  method=$(echo "select coalesce((select case syme when 2 then 'changed' end from tstables where TableName = '$1'), 'full')" | local_sql)
  run "$1"
  awk -F ' [|] ' -v code="$1" -v method="$method" -v microseconds=$((${EPOCHREALTIME/[.,]/} - started)) '
    index($3, "(" code ") : Copy result.") { said = $3 }
    END {
      if (!said) { print code ": the scheduling server was told of no result" >"/dev/stderr"; exit 1 }
      gsub(/[A-Za-z]+ - /, "", said)
      split(said, part, / [(]| : Copy result[.] |; */)
      printf "%s,%s,%s,%s,%s,%s,%.0f ms\n", code, part[1], method, part[3], part[4], part[5], microseconds / 1000
    }' demo/messages.txt >>demo/results.csv
}

results() {
  sqlite3 -box -cmd 'create table results(code, description, method, added, updated, removed, time)' \
    -cmd '.import --csv demo/results.csv results' :memory: 'select * from results'
}

step 'A sandbox ERP with data, and an empty local database'
"$bin/orvan-sandbox" make demo/orvan.db
"$bin/qmxadmin" init 'Provider=SQLite;Data Source=demo/local.db;Mode=Create' local

step 'One run: service types (tsmdm030)'
echo "qmxdatacopy \"$connection, local, tsmdm030, demo/log, OrvanSandbox, demo/orvan.db, 17\""
run tsmdm030
step 'What the scheduling server was told (demo/messages.txt)'
cat demo/messages.txt
step 'The copy log (demo/log/tsmdm030.log)'
cat demo/log/tsmdm030.log
step 'The rows'
echo 'select * from tsmdm030 limit 5' | local_sql -box
step 'The control record'
echo "select * from tstables where TableName = 'tsmdm030'" | local_sql -box

for table in "${tables[@]}"; do copy "$table"; done

step 'A working day in the ERP'
"$bin/orvan-sandbox" work demo/orvan.db

echo 'update tstables set syme = 2' | local_sql
for table in "${tables[@]}"; do copy "$table"; done

step 'Every table in full, and after that day by change'
results

step "One employee's calendar on request, and the expansion of the calendars"
employee=$(echo "select emno from tsmdm140 where ccal <> '' order by emno limit 1" | local_sql)
run "tcccp030=$employee=E"
tail -n 2 demo/messages.txt
"$bin/qmxadmin" expand "$connection" local

step "The working week of employee $employee (tscalender)"
echo "select e.emno, e.ccal, c.sttm as \"from\", c.entm as \"to\" from tsmdm140 e join tscalender c on c.ccal = e.ccal
      where e.emno = '$employee' and c.sttm >= date('now') and c.sttm < date('now', '+7 days') order by c.sttm" | local_sql -box

# The same ERP in Java, if CMake found a JDK and a JVM starts. Its classes read the file through Debian's
# libxerial-sqlite-jdbc-java.
if [ -e "$QMX_COMPONENTS-java/orvan-sandbox.jar" ] && [ -e /usr/share/java/sqlite-jdbc.jar ] &&
  servers=$(QMX_COMPONENTS="$QMX_COMPONENTS-java" "$bin/qmxadmin" components 2>&1); then
  step 'Service orders (tssoc200) through the ERP in Java, into a local database of its own'
  grep -E '^ +(JVM|version|classpath):' <<<"$servers"
  "$bin/qmxadmin" init 'Provider=SQLite;Data Source=demo/java.db;Mode=Create' java >/dev/null
  QMX_COMPONENTS="$QMX_COMPONENTS-java" "$bin/qmxdatacopy" \
    'Provider=SQLite;Data Source=demo/java.db, java, tssoc200, demo/log, OrvanSandbox, demo/orvan.db'
  echo 'select orno, osta, emno, pstm, pftm from tssoc200 limit 5' | sqlite3 -box demo/java.db
  step 'The same rows as the native ERP over the same file lists (qmxadmin verify)'
  "$bin/qmxadmin" verify 'Provider=SQLite;Data Source=demo/java.db' java tssoc200 --component 'OrvanSandbox, demo/orvan.db'
fi

step 'Everything is in demo/ to look at: orvan.db, local.db, messages.txt, log/'
