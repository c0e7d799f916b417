#!/usr/bin/env bash
# run_selected.sh PROGRAM FILTER: runs the tests that a gtest filter selects. Fails if one of its patterns matches no test.
set -eu
program=$1
filter=$2
tests=$("$program" --gtest_list_tests | awk '/^[^ ].*\./ {suite = $1} /^  / {print suite $1}')
IFS=: read -ra patterns <<<"${filter/-/:}"
for pattern in "${patterns[@]}"; do
  [ -n "$pattern" ] || continue
  while read -r test; do
    # shellcheck disable=SC2053  # the pattern is one
    [[ $test == $pattern ]] && continue 2
  done <<<"$tests"
  echo "No test of $(basename "$program") matches $pattern: it was renamed or is gone."
  exit 1
done
exec "$program" --gtest_brief=1 --gtest_filter="$filter"
