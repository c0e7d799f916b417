#!/usr/bin/env bash
# Looks at the tree: formatting, clang 14's warnings as errors, clang-tidy's short list.
set -euo pipefail
cd "$(dirname "$0")/.."
source scripts/packages.sh
install_packages "${testPackages[@]}"

mapfile -t sources < <(git ls-files '*.cpp' '*.c')
mapfile -t formatted < <(git ls-files '*.cpp' '*.c' '*.h')
echo "clang-format: ${#formatted[@]} files"
clang-format-14 --dry-run --Werror "${formatted[@]}"

build_preset clang
echo "clang-tidy: ${#sources[@]} files"
printf '%s\0' "${sources[@]}" | xargs -0 --max-args=4 --max-procs="$(nproc)" clang-tidy-14 --quiet -p build/clang
