#!/usr/bin/env bash
# docs/troubleshooting.md has every text that the program may say: each literal of at least three words above and in the
# platform, statements left out. Run from the root of the tree.
set -u
page=$(tr '\n' ' ' <docs/troubleshooting.md)
failed=0
count=0
while IFS= read -r text; do
  count=$((count + 1))
  if [[ "$page" != *"$text"* ]]; then
    echo "docs/troubleshooting.md does not have: $text"
    failed=1
  fi
done < <(
  grep -rhE '"' startup handler copy calendar platform --include='*.cpp' --include='*.h' --exclude=usage.cpp --exclude-dir=include |
    grep -vE '^ *(//|#include)' | grep -oE '"([^"\\]|\\.)*"' |
    sed -E 's/^"//; s/"$//; s/\\"/"/g; s/ ?\\r\\n ?/\n/g; s/\\n|%s/\n/g' | sed -E 's/^ *//; s/ *$//' |
    grep -E '[A-Za-z]+ +[^ ]* *[A-Za-z]+[^ ]* +[A-Za-z]' | grep -vE "^(select|show|pragma|insert|delete|DELETE FROM|update|set|create|release|rollback|join|where|from|' order by) " | sort -u
)
if [ "$count" -lt 200 ]; then
  echo "only $count texts were found in the sources: this check looks at too little"
  failed=1
fi
exit $failed
