#!/usr/bin/env bash
# Every source, above all every test, is named in the CMakeLists.txt of its folder or of one above it. Run from the root of the tree.
set -u
failed=0
count=0
while IFS= read -r source; do
  count=$((count + 1))
  folder=$(dirname "$source")
  inside=$(basename "$source")
  found=0
  while :; do
    if [ -f "$folder/CMakeLists.txt" ] && grep -qF "$inside" "$folder/CMakeLists.txt"; then
      found=1
      break
    fi
    [ "$folder" = . ] && break
    inside=$(basename "$folder")/$inside
    folder=$(dirname "$folder")
  done
  if [ $found = 0 ]; then
    echo "$source is named in no CMakeLists.txt: it is never built"
    failed=1
  fi
done < <(find . -path ./build -prune -o -path ./demo -prune -o -type f \( -name '*.cpp' -o -name '*.c' \) -print | sed 's|^\./||')
[ $count -gt 0 ] || { echo "no source found"; exit 1; }
exit $failed
