#!/usr/bin/env bash
# Every source, above all every test, is named in the CMakeLists.txt of its folder or of one above it. Run from the root of the tree.
set -u
folders=(\( -path ./build -o -path ./demo -o -path ./.git \) -prune -o -type f)

sources=$(find . "${folders[@]}" \( -name '*.cpp' -o -name '*.c' \) -print | sed 's|^\./||' | sort)
[ -n "$sources" ] || { echo "no source found"; exit 1; }

# The words of the build files, without comments, as paths from the root: table.cpp is not named by text_table.cpp.
named=$(find . "${folders[@]}" -name CMakeLists.txt -print | while IFS= read -r list; do
  sed 's/#.*//' "$list" | tr -s ' ()\t' '\n' | grep -E '\.(cpp|c)$' | sed "s|^|$(dirname "$list")/|"
done | xargs realpath --canonicalize-missing --no-symlinks --relative-to=. | sort -u)

missing=$(comm -23 <(echo "$sources") <(echo "$named"))
[ -z "$missing" ] && exit 0
sed 's/$/ is named in no CMakeLists.txt: it is never built/' <<<"$missing"
exit 1
