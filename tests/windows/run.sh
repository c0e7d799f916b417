#!/usr/bin/env bash
# Builds the programs for Windows and tests them under Wine: the suites of the rooms as Windows programs, then whole runs
# beside the Linux program. Installs missing packages.
#
#   run.sh [--built] [NAME...]     --built builds nothing; names are those of suites and of *_test.py, or odbc
set -euo pipefail
cd "$(dirname "$0")/../.."
source scripts/packages.sh

if [ "${1:-}" = --built ]; then
  shift
else
  install_packages "${windowsPackages[@]}" "${demoPackages[@]}" "${serverPackages[@]}" libsqliteodbc
  scripts/windows_libraries.sh
  build_preset windows
  build_preset release qmxdatacopy qmxadmin orvan-sandbox orvan_sandbox qmx_sandbox_server
fi
names=("$@")
if [ ${#names[@]} -eq 0 ]; then
  suites=$(ls -S build/windows/bin/*_tests.exe)  # the largest take longest, so they begin
  for file in $suites tests/windows/*_test.py; do
    # tests/windows/odbc.sh runs these beside servers.
    case $file in */odbc_test*|*/wide_texts_tests*) ;; *) names+=("$(basename "${file%.*}")") ;; esac
  done
  names+=(odbc)
fi

# Left out: SQLite's ODBC driver, which is a library of Linux, and paths that are absolute on Linux only. The example in C
# ends its lines as the system does.
leftOut='*SQLiteOverOdbc*:Manifests.MayNameAnAbsoluteLibrary:ComponentFolderList.*'
leftOut+=':Examples.InCWriteMessagesAndStatus'

place=$PWD/build/windows/wine  # two prefixes, and the logs
lanes=(0 1)
export leftOut place WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml='
export LC_ALL=C.UTF-8  # Wine takes the names of files and the arguments in the locale's characters.

end_servers() {
  for lane in "${lanes[@]}"; do
    if [ -d "$place/$lane" ]; then
      WINEPREFIX=$place/$lane wineserver --kill || true  # none may run
      WINEPREFIX=$place/$lane wineserver --wait || true
    fi
  done
}
end_servers
rm -rf "$place"
trap end_servers EXIT

# Tests run two at a time, each in a prefix of its own. The server of a prefix stays until the end: otherwise each program
# starts Wine's services again, which takes seconds, and they write their own crashes to the program's standard error.
for lane in "${lanes[@]}"; do
  mkdir -p "$place/$lane"
  export WINEPREFIX=$place/$lane
  wineboot --init >"$place/boot.$lane.log" 2>&1
  # A crash ends the process, instead of starting Wine's debugger.
  wine reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\AeDebug' /v Debugger /t REG_SZ /d '' /f >/dev/null
  # Hidden windows need no display. Wine reads this when it starts.
  wine reg add 'HKCU\Software\Wine\Drivers' /v Graphics /t REG_SZ /d null /f >/dev/null
  wineserver --kill && wineserver --wait
  wineserver --persistent
  wineboot >>"$place/boot.$lane.log" 2>&1
done

# run_test NAME: prints how many tests passed and which were skipped, or all that a failed one said. No test is a failure.
run_test() {
  local name=$1 log=$place/$1.log status=0 began=$SECONDS
  # With CI=true a suite fails without database servers and Java. odbc.sh has the servers.
  local command=(env --unset=CI wine "build/windows/bin/$name.exe" "--gtest_filter=-$leftOut")
  [ ! -e "tests/windows/$name.py" ] || command=(python3 -B "tests/windows/$name.py")
  [ "$name" != odbc ] || command=(tests/servers/with_servers.sh tests/windows/odbc.sh)
  export WINEPREFIX=$place/$lane
  timeout 900 "${command[@]}" >"$log" 2>&1 </dev/null || status=$?
  sed -i 's/\r$//' "$log"
  if [ $status -ne 0 ] || ! grep -qE '^(\[  PASSED  \]|Ran) [1-9]' "$log"; then
    printf '%s FAILED with status %d:\n%s\n' "$name" "$status" "$(cat "$log")"
    return 1
  fi
  printf '%s, %d s: %s\n' "$name" $((SECONDS - began)) "$(grep -oE '^(\[  PASSED  \]|Ran) [0-9]+ tests?' "$log" | paste -sd ' ')"
  grep -E '^\[  SKIPPED \] [^ ]+$|\.\.\. skipped' "$log" | sort -u || true
}

# Wine fails now and then where Windows would not: one start of about 120 was refused with error 1359, and one process of about 2,900
# ended by SIGSEGV, in Wine's own code, while Wine ended its threads after a complete copy. So a suite that fails is run once more, and both
# answers are shown.
run_test_twice() {
  run_test "$1" || { echo "$1 is run once more." && run_test "$1"; }
}
export -f run_test run_test_twice

if ! printf '%s\n' "${names[@]}" | xargs -P ${#lanes[@]} --process-slot-var=lane -I NAME bash -c 'run_test_twice NAME'; then
  echo "Tests of the programs for Windows failed. See above."
  exit 1
fi
echo "${#names[@]} suites passed under Wine in $SECONDS s, the build included. Left out: $leftOut"
