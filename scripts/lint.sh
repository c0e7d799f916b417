#!/usr/bin/env bash
# Looks at the tree: formatting, then clang 14's warnings and clang-tidy's short list, as errors.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh
install_packages "${testPackages[@]}"

mapfile -t sources < <(git ls-files '*.cpp' '*.c')
mapfile -t headers < <(git ls-files '*.h')
echo "clang-format: $((${#sources[@]} + ${#headers[@]})) files"
clang-format-14 --dry-run --Werror "${sources[@]}" "${headers[@]}"

echo "clang-tidy: ${#sources[@]} files"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
cmake --preset clang >/dev/null
cmake --build --preset clang --target qmx_test_headers >"$log" || { cat "$log" >&2; exit 1; }
if ! printf '%s\0' "${sources[@]}" | xargs -0 --max-args=4 --max-procs="$(nproc)" clang-tidy-14 --quiet -p build/clang >"$log" 2>&1; then
  grep -E 'error|warning' -A 5 "$log" >&2
  exit 1
fi
