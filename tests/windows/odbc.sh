#!/usr/bin/env bash
# ODBC of Windows under Wine, whose odbc32 hands each call to this machine's driver manager. tests/servers/with_servers.sh runs it,
# in the prefix of tests/windows/run.sh.
set -euo pipefail
cd "$(dirname "$0")/../.."
export LC_ALL=C.UTF-8  # for the letters in names of files and in statements
bin=$PWD/build/windows/bin
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
wineserver -p || true  # until the prefix ends; starting it for each program takes seconds

# Left out: data sources of the user (Wine's ODBC looks for them in Linux' odbc.ini, and a program of Windows cannot name another
# one), and the copy of a file whose name is Windows' for the test and Linux' for the driver.
leftOut='*.ADataSourceOfTheUsersServes/*:*.TheDefaultDatabaseIsTheOneThatIsRead/SQLiteOverOdbc'
# Wide texts have another size, and reach connections whose narrow texts are not UTF-8.
leftOut+=':*.MakeNoArrayWiderThanMemoryAllows/*:*.UseValuesIfTheConnectionsTextsAreNotUtf8/MariaDB'
status=0
suite() {  # NAME FILTER
  # SQLite's driver takes a path of Windows for the name of a file in the current folder.
  (cd "$folder" && wine "$bin/$1.exe" --gtest_brief=1 --gtest_filter="$2-$leftOut") || status=1
}
suite wide_texts_tests '*'
suite odbc_tests '*'
filter=
for tests in RecordsetReading RecordsetValues UnitsOfWork; do  # all of them take more than a minute
  for system in SQLiteOverOdbc PostgreSQL MariaDB; do filter+="*$tests.*/$system:"; done
done
suite recordset_tests "${filter%:}"
python3 -B tests/windows/odbc_test.py || status=1
exit $status
