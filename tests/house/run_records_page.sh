#!/usr/bin/env bash
# docs/run-records.md has the version, the fields and the values of platform/run_records/record_fields.h, and no others. Run from the root of the tree.
set -u
page=docs/run-records.md
header=platform/run_records/record_fields.h
failed=0

version=$(sed -nE 's/.*kVersion = ([0-9]+);/\1/p' "$header")
if ! grep -qE "^Contract version: $version\." "$page"; then
  echo "$page is not of contract version $version"
  failed=1
fi

# What stands in the first column of the page's tables.
named=$(grep -E '^\| `' "$page" | cut -d'|' -f2 | grep -oE '`[^`]+`' | tr -d '`' | sort -u)
texts=$(sed -nE 's/.*const char\* k\w+ = "([^"]+)";/\1/p' "$header" | grep -v '\.jsonl$' | sort -u)
[ "$(echo "$texts" | wc -l)" -ge 30 ] || { echo "too few texts were found in $header"; failed=1; }
for text in $texts; do
  grep -qF "\`$text\`" "$page" || { echo "$page does not have $text of $header"; failed=1; }
done
for name in $named; do
  [ "$name" = outcome ] && continue
  echo "$texts" | grep -qxF "$name" || { echo "$page has $name, which is not in $header"; failed=1; }
done
grep -qF "$(sed -nE 's/.*kFileName = "([^"]+)";/\1/p' "$header")" "$page" || { echo "$page does not name the file"; failed=1; }
exit $failed
