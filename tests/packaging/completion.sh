#!/usr/bin/env bash
# completion.sh: what bash offers for the last word of a command line, in a folder with a file and a folder of its own. Run from
# the root of the tree.
set -euo pipefail

here=$PWD/packaging/completion
work=$(mktemp --directory "${TMPDIR:-/tmp}/qmx-completion-XXXXXX")
trap 'rm -rf "$work"' EXIT
mkdir "$work/logs"
touch "$work/letter"
failed=0

# completes EXPECTED WORD...: what the program's completion offers for the last word.
completes() {
  local expected=$1 offered
  shift
  offered=$(cd "$work" && bash --noprofile --norc -c '
    source "$1/$2"
    shift
    COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
    "$(complete -p "$1" | sed "s/.*-F \([^ ]*\).*/\1/")" "$1" "${COMP_WORDS[COMP_CWORD]}"
    echo "${COMPREPLY[*]}"' bash "$here" "$@" 2>&1)
  [ "$offered" = "$expected" ] && return
  echo "\"$*\" is completed to \"$offered\", not to \"$expected\""
  failed=1
}

# A command, and the options that it has.
completes init qmxadmin in
completes '--employee' qmxadmin calendar --e
completes '' qmxadmin calendar --a
completes '--all --after-changed' qmxadmin verify --a

# Table codes where a table is wanted.
completes tsmdm140 qmxadmin release tsmdm14
completes tsmdm140 qmxadmin release tsmdm030 tsmdm14
completes 'tssoc200 tssoc205 tssoc210' qmxadmin history --failed tssoc
completes tsmdm140 qmxadmin copy --full tsmdm14
completes tsmdm140 qmxadmin verify --component 'A, B' tsmdm14
completes full qmxadmin method tsmdm140 f
completes '' qmxadmin copy tsmdm140 f
completes tsmdm140 qmxadmin release "'Provider=SQLite;Data Source=x'" '""' tsmdm14
completes tsmdm140 qmxadmin copy FILEDSN = /etc/x.dsn service tsmdm14
completes tsmdm140 qmxadmin copy tcccp030 = E1 = E tsmdm14
for command in calendar check components expand init metrics report status; do completes '' qmxadmin "$command" ts; done

# None where something else is wanted: the default database, the value of an option.
completes '' qmxadmin release 'Provider=SQLite' ts
completes '' qmxadmin release FILEDSN = /etc/x.dsn ts
for option in --component --last --since --run; do completes '' qmxadmin history "$option" ts; done

# Files and folders where a path is wanted, and nowhere else.
completes logs qmxadmin history --logs l
completes logs qmxadmin history --logs = l
completes logs qmxadmin metrics --logs ''
completes logs qmxadmin metrics --logs =
completes letter qmxadmin report --output le
completes letter qmxadmin report --output = le
completes letter qmxadmin calendar --svg le
completes '' qmxadmin check l
completes '' qmxadmin copy l

# The database systems whose statements init prints.
completes 'SQLite PostgreSQL MariaDB' qmxadmin init --print-for ''
completes MariaDB qmxadmin init --print-for M

# The pieces of the one argument of qmxdatacopy.
completes '--help' qmxdatacopy --h
completes '' qmxdatacopy ts
completes '' qmxdatacopy local.db,ts
completes 'local.db,,tsclm020, local.db,,tsclm024,' qmxdatacopy local.db,,tscl
completes 'local.db,,tsclm020,logs' qmxdatacopy local.db,,tsclm020,l
completes '' qmxdatacopy local.db,,tsclm020,logs,ts

completes work orvan-sandbox w
completes letter orvan-sandbox make le
completes letter orvan-sandbox work --days 3 le
completes letter orvan-sandbox make --replace le
completes '' orvan-sandbox make --seed le
completes '--employees' orvan-sandbox make --e
exit $failed
