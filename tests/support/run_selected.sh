#!/usr/bin/env bash
# run_selected.sh PROGRAM FILTER: runs the tests that a gtest filter selects. Fails if one of its patterns matches no test.
set -eu
program=$1
filter=$2
IFS=: read -ra patterns <<<"${filter/-/:}"
for pattern in "${patterns[@]}"; do
  [ -n "$pattern" ] || continue
  matches=$("$program" --gtest_list_tests --gtest_filter="$pattern" | grep -c '^  ' || true)
  if [ "$matches" = 0 ]; then
    echo "No test of $(basename "$program") matches $pattern: it was renamed or is gone."
    exit 1
  fi
done
exec "$program" --gtest_brief=1 --gtest_filter="$filter"
