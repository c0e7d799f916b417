#!/usr/bin/env bash
# docs/components.md names every ProgID that the program creates and every member that it calls: whoever writes a bridge
# against the page must not miss one. Run from the root of the tree.
set -u
page=docs/components.md
failed=0

# ProgIDs have a point between words; members are quoted words that begin as the ERP's and the servers' verbs do.
progIds=$(grep -rhoE '"[A-Za-z0-9]+\.[A-Za-z]+"|"java:[A-Za-z.]+"' copy handler calendar --include='*.cpp' --include='*.h' |
  tr -d '"' | grep -vE '\.(h|log|txt)$|^ADODB\.' | sort -u)
members=$(grep -rhoE '"(get|Get|set|add|has|next|is|list|List|initialize|Close|write|Write|UpdateStatus)[A-Za-z0-9]*"' copy handler calendar \
  --include='*.cpp' --include='*.h' | tr -d '"' | sort -u)

check() {
  local what=$1 names=$2 least=$3 count=0 name
  for name in $names; do
    count=$((count + 1))
    if ! grep -qF "\`$name\`" "$page"; then
      echo "$page does not name the $what $name"
      failed=1
    fi
  done
  if [ "$count" -lt "$least" ]; then
    echo "only $count ${what}s were found in the sources: this check looks at too little"
    failed=1
  fi
}
check ProgID "$progIds" 40
check member "$members" 100
exit $failed
