#!/usr/bin/env bash
# lint.sh [--all]: checks formatting, then clang 14's warnings and a short list of clang-tidy checks, as errors. clang checks tests, sandbox and
# bench only with --all, because they take three times as long as the programs and every build has g++'s warnings for them.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh
install_packages "${testPackages[@]}"

mapfile -t sources < <(git ls-files '*.cpp' '*.c')
mapfile -t headers < <(git ls-files '*.h')
echo "clang-format: $((${#sources[@]} + ${#headers[@]})) files"
clang-format-14 --dry-run --Werror "${sources[@]}" "${headers[@]}"

log=$(mktemp)
trap 'rm -f "$log"' EXIT
cmake --preset clang >/dev/null
cmake --build --preset clang --target qmx_java_inside >"$log" || { cat "$log" >&2; exit 1; }  # a header that is made
if [ "${1:-}" = --all ]; then
  cmake --build --preset clang --target qmx_test_headers >"$log" || { cat "$log" >&2; exit 1; }
else
  mapfile -t sources < <(printf '%s\n' "${sources[@]}" | grep -E '^(startup|handler|copy|calendar|platform|schema|bridges|tools)/')
fi
# clang knows none of the headers of Windows. mingw's g++ compiles those sources with the same warnings.
mapfile -t sources < <(printf '%s\n' "${sources[@]}" | grep -vE '(^|/)(windows|com)/')
echo "clang-tidy: ${#sources[@]} files"
if ! printf '%s\0' "${sources[@]}" | xargs -0 --max-args=4 --max-procs="$(nproc)" clang-tidy-14 --quiet -p build/clang >"$log" 2>&1; then
  grep -E 'error|warning' -A 5 "$log" >&2
  exit 1
fi
