#!/usr/bin/env bash
# Each room includes only the rooms that it may. Run from the root of the tree.
set -u
failed=0
all=$(find . \( -path ./build -o -path ./demo -o -path ./.git \) -prune -o -type f \( -name '*.h' -o -name '*.cpp' -o -name '*.c' -o -name '*.hpp' -o -name '*.cc' \) -print |
  sed 's|^\./||' | sort)
checked=

# may ROOM-PATTERN ALLOWED-REGEX: every quoted include in the matching files stands in an allowed place.
may() {
  local files hits
  files=$(echo "$all" | grep -E "^$1" || true)
  checked+=$files$'\n'
  if [ -z "$files" ]; then
    echo "no file matches $1: this check looks at nothing"
    failed=1
    return
  fi
  hits=$(echo "$files" | xargs grep -nHE '^#include "' | grep -vE "#include \"($2)" || true)
  if [ -n "$hits" ]; then
    echo "$1 may include only $2:"
    echo "$hits"
    failed=1
  fi
}

interfaces='platform/[a-zA-Z_]+\.h"'
system='platform/system/[a-z_]+\.h"'
may 'platform/[^/]+$' "$interfaces"
may 'platform/batches/' "$interfaces|platform/batches/"
may 'platform/drivers/' "$interfaces|platform/drivers/|platform/(batches|odbc|sqlite)/driver\.h\"|platform/odbc/watchdog\.h\""
may 'platform/sqlite/' "$interfaces|$system|platform/sqlite/"
may 'platform/odbc/' "$interfaces|$system|platform/odbc/"
may 'platform/posix/' "$interfaces|$system|platform/posix/"
may 'platform/windows/' "$interfaces|$system|platform/windows/|platform/com/com_components\.h\""
may 'platform/com/' "$interfaces|platform/com/"
may 'platform/system/' "$interfaces|$system"
may 'platform/components/' "$interfaces|$system|platform/components/"
may 'platform/progress/' "$interfaces|$system|platform/progress/"
may 'platform/run_records/' "$interfaces|$system|platform/run_records/"
may 'platform/trace/' "$interfaces|$system|platform/trace/"
may 'calendar/' "$interfaces|calendar/"
may 'copy/[^/]+$' "$interfaces|calendar/|copy/"
may 'copy/tables/' 'copy/(clsDataCopy|erp_listings)\.h"|platform/trim\.h"'
may 'handler/' "$interfaces|copy/clsDataCopy\.h\"|handler/|schema/local_tables\.h\""
may 'schema/' "$interfaces|schema/"
may 'tools/qmxadmin/' "platform/|calendar/|copy/(clsDataCopy|erp_listings)\.h\"|schema/|tools/qmxadmin/"

may 'bridges/java/' '[a-z_]+\.h"'

# These may include everything, or are looked at below. A source elsewhere is in a room of which this check knows nothing.
unchecked=$(comm -23 <(echo "$all") <(echo "$checked" | sort -u) | grep -vE '^(bench|docs/examples|fuzz|sandbox|startup|tests)/' || true)
if [ -n "$unchecked" ]; then
  echo "no rule says what these may include:"
  echo "$unchecked"
  failed=1
fi

# The rules above see quoted includes from the root of the tree. Nothing of the tree is included in another way, but the
# public component-server header.
folders=$(echo "$all" | grep / | cut -d/ -f1 | sort -u | paste -sd'|')
otherwise=$(echo "$all" | xargs grep -nHE "^ *# *include *(<($folders)/|[<\"]([^>\"]*/)?\.\.?/)|^( +# *| *# +|#)include *\"" |
  grep -vE ':#include "[^."][^"]*"( |$)' || true)
if [ -n "$otherwise" ]; then
  echo "the tree's own headers are included as #include \"room/header.h\":"
  echo "$otherwise"
  failed=1
fi

product=$(grep -rnE '#include [<"](platform|copy|handler|startup|calendar|schema|tools)/' sandbox bridges || true)
if [ -n "$product" ]; then
  echo "sandbox/ and bridges/ may include nothing of the product but the public component-server header:"
  echo "$product"
  failed=1
fi

# Whoever needs the operating system includes platform/system/, which each system implements in a folder of its own.
particular=$(echo "$all" | grep -vE '^(platform/(posix|windows)|tools/qmxadmin/system/(posix|windows)|tests)/' | xargs grep -nHE '#include "platform/(posix|windows)/' || true)
if [ -n "$particular" ]; then
  echo "only platform/system/ is included, never the folder of one operating system:"
  echo "$particular"
  failed=1
fi

# No operating system and no external library above the platform.
above=$(grep -rnE '#include <(sys/|unistd|fcntl|dlfcn|sqlite3|sql|nlohmann|CLI/|windows)' startup/mod* handler copy calendar schema || true)
if [ -n "$above" ]; then
  echo "above platform/ stands the standard library only:"
  echo "$above"
  failed=1
fi
# The operator's tool states once how the local database is opened and queried.
repeated=$(grep -rnE 'kCursorKeyset|kLockOptimistic|"ADODB\.' tools/qmxadmin | grep -v '^tools/qmxadmin/local_database\.' || true)
if [ -n "$repeated" ]; then
  echo "tools/qmxadmin reaches record sets through local_database.h only:"
  echo "$repeated"
  failed=1
fi
exit $failed
