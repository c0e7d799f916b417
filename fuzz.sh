#!/usr/bin/env bash
# fuzz.sh [TARGET] [SECONDS]     feeds a target, or each of them, for so many seconds (10), beginning with its corpus
# fuzz.sh --coverage [TARGET]    runs the corpus once and shows how many lines of the product it reaches; fails below 90 %
# fuzz.sh --keep TARGET          adds what the runs found to the corpus, as few inputs as reach the same
#
# Builds the targets first. Installs missing packages. A target stops at the first input with which the product is wrong,
# and that input is kept in build/fuzz/findings/.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/packages.sh

mode=run
case "${1:-}" in
  --coverage | --keep) mode=${1#--} && shift ;;
  -*) sed -n '2,4s/^# //p' "$0" && exit 2 ;;
esac
seconds=10
target=
for argument in "$@"; do
  if [[ $argument =~ ^[0-9]+$ ]]; then seconds=$argument; else target=$argument; fi
done
mapfile -t targets < <(grep -v '^#' fuzz/targets.txt | cut -d ' ' -f 1)
if [ -n "$target" ]; then
  printf '%s\n' "${targets[@]}" | grep -qx "$target" || { echo "There is no target $target. There are: ${targets[*]}" >&2; exit 2; }
  targets=("$target")
elif [ $mode = keep ]; then
  echo "Name the target whose inputs are to be kept: ${targets[*]}" >&2
  exit 2
fi

install_packages "${fuzzPackages[@]}"
build_preset fuzz "${targets[@]/#/fuzz_}"
build=$PWD/build/fuzz
seed=()
[ "${CI:-}" != true ] || seed=(-seed=1)  # a change must not fail for what another one would have failed for, too
export ASAN_SYMBOLIZER_PATH=/usr/bin/llvm-symbolizer-14

# in_folder TARGET OPTION...: runs a target in a folder of its own. The exit status is libFuzzer's.
in_folder() {
  local name=$1 folder=$build/runs/$1
  shift
  mkdir -p "$folder"
  (cd "$folder" && LLVM_PROFILE_FILE=$build/$name.profraw "$build/targets/$name" -timeout=20 -max_len=4096 "$@" >"$build/$name.log" 2>&1)
}

run() {
  local found=$build/found/$1 findings=$build/findings/$1
  mkdir -p "$found" "$findings"
  if in_folder "$1" "${seed[@]}" -max_total_time="$seconds" -artifact_prefix="$findings/" "$found" "$PWD/fuzz/corpus/$1"; then
    echo "$1: $(grep -Eo '^Done [0-9]+ runs in [0-9]+' "$build/$1.log" | sed 's/Done //; s/runs/inputs/') s"
    return
  fi
  grep -E 'The product is wrong|ERROR|SUMMARY|runtime error|Test unit written' -A 12 "$build/$1.log" | head -60 >&2
  echo "$1 found an input with which the product is wrong. Its log is $build/$1.log. Mend the product and keep the input in fuzz/corpus/$1." >&2
  return 1
}

# Prints a line for each source of the target.
coverage() {
  local name=$1 sources
  read -ra sources < <(grep "^$name " fuzz/targets.txt | cut -d ' ' -f 2-)
  in_folder "$name" -runs=0 "$PWD/fuzz/corpus/$name" || { run "$name" && return 1; }
  llvm-profdata-14 merge -o "$build/$name.profdata" "$build/$name.profraw"
  llvm-cov-14 export -summary-only -instr-profile="$build/$name.profdata" "$build/targets/$name" |
    python3 -B fuzz/coverage.py "$name" "${sources[@]}"
}

keep() {
  local corpus=$PWD/fuzz/corpus/$1
  in_folder "$1" -merge=1 "$corpus" "$build/found/$1" || { tail -20 "$build/$1.log" >&2; return 1; }
  echo "$1: $(find "$corpus" -type f | wc -l) inputs"
}

failed=0
for name in "${targets[@]}"; do $mode "$name" || failed=1; done
exit $failed
