#!/usr/bin/env bash
# Every test that docs/guarantees.md names is there. Run from the root of the tree.
set -u
failed=0
count=0
while IFS=. read -r suite name; do
  count=$((count + 1))
  if ! grep -rqE "^TEST(_F|_P)?\($suite, $name\)" tests --include='*.cpp'; then
    echo "docs/guarantees.md names $suite.$name, which is no test"
    failed=1
  fi
done < <(grep -oE '`[A-Z][A-Za-z]+\.[A-Z][A-Za-z0-9]+`' docs/guarantees.md | tr -d '`' | sort -u)
if [ "$count" -lt 30 ]; then
  echo "only $count tests were found in docs/guarantees.md: this check looks at too little"
  failed=1
fi
exit $failed
