#!/usr/bin/env bash
# The checks of this folder find what might fool them: each plant in a copy of the tree makes its check fail. Run from the root of the tree.
set -euo pipefail
house=$PWD/tests/house
root=$PWD
tree=$(mktemp --directory "${TMPDIR:-/tmp}/qmx-house-XXXXXX")
trap 'rm -rf "$tree"' EXIT
failed=0

find . \( -path ./build -o -path ./demo -o -path ./.git \) -prune -o -type f \
  \( -name '*.h' -o -name '*.cpp' -o -name '*.c' -o -name '*.md' -o -name CMakeLists.txt -o -path './tests/mutants/*' \) -print0 | tar --null --files-from=- -cf - | tar -C "$tree" -xf -
cd "$tree"

# finds CHECK WHAT FILE LINE: with that line added to the file, the check fails and names WHAT.
finds() {
  local said
  mkdir -p "$(dirname "$3")"
  echo "$4" >>"$3"
  if said=$("$house/$1" 2>&1); then
    echo "$1 does not find \"$4\" in $3"
    failed=1
  elif ! grep -qF "$2" <<<"$said"; then
    echo "$1 fails for \"$4\" in $3, but does not name $2:"
    echo "$said"
    failed=1
  fi
  rm "$3"
  [ ! -e "$root/$3" ] || cp "$root/$3" "$3"
}

for check in includes.sh planted_faults.sh sources.sh guarantees_page.py; do
  "$house/$check" || { echo "$check fails without a plant"; exit 1; }
done

finds includes.sh copy/full_copy.cpp copy/full_copy.cpp '#include "platform/sqlite/session.h"'
finds includes.sh copy/full_copy.cpp copy/full_copy.cpp '#include <platform/sqlite/session.h>'
finds includes.sh copy/full_copy.cpp copy/full_copy.cpp '#  include "platform/sqlite/session.h"'
finds includes.sh copy/full_copy.cpp copy/full_copy.cpp '#include"platform/sqlite/session.h"'
finds includes.sh copy/full_copy.cpp copy/full_copy.cpp '#include "../platform/sqlite/session.h"'
finds includes.sh sandbox/erp/date.cpp sandbox/erp/date.cpp '#include "../../platform/error.h"'
finds includes.sh startup/main.cpp startup/main.cpp '#include "platform/posix/kernel_file.h"'
finds includes.sh new_room/thing.cpp new_room/thing.cpp '#include "copy/full_copy.h"'
finds includes.sh platform/new_adapter/thing.cpp platform/new_adapter/thing.cpp '#include "copy/full_copy.h"'

finds planted_faults.sh 'copy/full_copy.cpp: A record' copy/full_copy.cpp '  // std::to_string(std::int64_t{recordsBefore} + 1)'
finds planted_faults.sh 'handler/gone.cpp: It is gone' tests/mutants/handler.txt $'@ handler/gone.cpp: It is gone\n- a\n+ b'
finds planted_faults.sh 'it changes nothing' tests/mutants/handler.txt $'@ handler/clsDataCopyHandler.cpp: It is itself\n- kStarted = 10;\n+ kStarted = 10;'

finds sources.sh tests/copy/copy_test.cpp tests/copy/copy_test.cpp '// full_copy_test.cpp ends like this name'
finds sources.sh tests/copy/more_test.cpp tests/copy/more_test.cpp '// nobody builds this'

page=docs/guarantees.md
table=$'\n| | SQLite | PostgreSQL, MariaDB |\n|---|---|---|\n'
finds guarantees_page.py Batches.AreGone $page "$table| x | \`Batches.AreGone\` | |"
finds guarantees_page.py KilledCopy. $page "$table| x | | \`KilledCopy.InFullIsNotMendedByACopyByChange\` |"
finds guarantees_page.py KilledProgram. $page "$table| x | \`KilledProgram.LeavesInAFullCopyTheFirstRowsAndTheTableInProgress\` | |"
finds guarantees_page.py GroupsOnMariaDb. $page "$table| x | | \`GroupsOnMariaDb.AreNotOpenedForATableThatCannotRollBack\` |"
finds guarantees_page.py OnRequest.FailsThree $page "$table| x | | \`OnRequest.FailsThreeTimesOverWhenTheCalendarCannotBeDeleted\` |"
finds guarantees_page.py 'without a test' $page "$table| x | nobody knows | |"
exit $failed
