#!/usr/bin/env bash
# help.sh PROGRAM...: what each program's --help names is what its manual page and its completion name: subcommands, options
# and environment variables, no more and no fewer. Run from the root of the tree.
set -euo pipefail
failed=0

differ() { # differ WHAT A B: complains where the two lists of words differ
  local a b
  a=$(tr ' ' '\n' <<<"$2" | sort -u | xargs)
  b=$(tr ' ' '\n' <<<"$3" | sort -u | xargs)
  [ "$a" = "$b" ] && return
  echo "$1:"
  echo "  help: $a"
  echo "  here: $b"
  failed=1
}

subcommands() { sed -n '/^Subcommands:/,$p' | sed -n 's/^  \([a-z]\+\) .*/\1/p'; }
options() { grep -oE -- '--[a-z]+(-[a-z]+)*' | sort -u || true; }
variables() { grep -oE 'QMX_[A-Z_]+' | sort -u || true; }

# section NAME PAGE: the source of one subsection of a manual page, with plain hyphens.
section() { awk -v name="$1" '/^\.S[SH]/ { inside = ($1 == ".SS" && $2 == name) } inside' "$2" | sed 's/\\-/-/g'; }

# offered WORD...: what the completion offers for the last word.
offered() {
  bash --noprofile --norc -c '
    source "packaging/completion/$1"
    COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
    "_${1//-/_}" "$1" "${COMP_WORDS[COMP_CWORD]}"
    echo "${COMPREPLY[*]}"' bash "$@"
}

[ $# -gt 0 ] || { echo "no program given"; exit 1; }
for program in "$@"; do
  name=$(basename "$program")
  page=docs/man/$name.1
  help=$("$program" --help)
  commands=$(subcommands <<<"$help")
  everything=$help
  for command in $commands; do
    text=$("$program" "$command" --help)
    everything+=$'\n'$text
    options=$(options <<<"$text")
    differ "The options of $name $command in $page" "${options/--help/}" "$(section "$command" "$page" | options)"
    differ "The options of $name $command in its completion" "$options" "$(offered "$name" "$command" --)"
  done
  differ "The options of $name in its completion" "$(options <<<"$help")" "$(offered "$name" --)"
  differ "The subcommands of $name in $page" "$commands" "$(sed -n '/^\.SH DESC/,/^\.SH ENV/s/^\.SS \([a-z]\+\)$/\1/p' "$page")"
  [ -z "$commands" ] ||
    differ "The subcommands of $name in its completion" "$commands" "$(offered "$name" '' | tr ' ' '\n' | grep -v '^-')"
  differ "The options in $page" "$(options <<<"$everything")" "$(sed 's/\\-/-/g' "$page" | options)"
  here=$(sed -n 's/^\.B \(QMX_[A-Z_]*\)$/\1/p' "$page" | sort -u)
  for variable in $(variables <<<"$everything"); do
    grep -qx "$variable" <<<"$here" || { echo "$page does not list $variable"; failed=1; }
  done
done
differ "The table codes of the completion of qmxadmin" "$(grep -rhoE '"t[a-z]{4}[0-9]{3}"' schema | tr -d \")" "$(offered qmxadmin release t)"
exit $failed
