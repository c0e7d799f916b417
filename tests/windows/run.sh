#!/usr/bin/env bash
# Builds the programs for Windows and tests them under Wine, in a prefix of their own: the suites of the rooms as Windows
# programs, then whole runs beside the Linux program. Installs missing packages.
set -euo pipefail
cd "$(dirname "$0")/../.."
source scripts/packages.sh

install_packages "${windowsPackages[@]}" "${demoPackages[@]}" "${serverPackages[@]}" libsqliteodbc
scripts/windows_libraries.sh
build_preset windows
build_preset release qmxdatacopy qmxadmin orvan-sandbox orvan_sandbox qmx_sandbox_server

export WINEPREFIX=$PWD/build/windows/wine WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml='
trap 'wineserver -k || true' EXIT
wineboot --init >/dev/null 2>&1
# A crash ends the process, instead of starting Wine's debugger.
wine reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug' /v Debugger /t REG_SZ /d '' /f >/dev/null
# Hidden windows need no display. Wine reads this when it starts.
wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /t REG_SZ /d null /f >/dev/null
wineserver -k && wineserver -w

# Left out: SQLite's ODBC driver, which is a library of Linux, and paths that are absolute on Linux only. The example in C
# ends its lines as the system does.
leftOut='*SQLiteOverOdbc*:Manifests.MayNameAnAbsoluteLibrary:ComponentFolderList.*'
leftOut+=':Examples.InCWriteMessagesAndStatus'
failed=
try() {  # NAME COMMAND...
  echo "== $1"
  timeout 300 "${@:2}" || failed+=" $1"
}
for suite in build/windows/bin/*_tests.exe; do
  try "$(basename "$suite" .exe)" wine "$suite" --gtest_brief=1 --gtest_filter="-$leftOut"
done
try whole_runs_test python3 -B tests/windows/whole_runs_test.py
try endings_test python3 -B tests/windows/endings_test.py
try qmxadmin_test python3 -B tests/windows/qmxadmin_test.py build/release
try com tests/windows/com.sh build/release
try zip_test python3 -B tests/windows/zip_test.py
try odbc tests/servers/with_servers.sh tests/windows/odbc.sh
if [ -n "$failed" ]; then
  echo "Failed:$failed"
  exit 1
fi
