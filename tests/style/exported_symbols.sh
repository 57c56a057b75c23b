#!/usr/bin/env bash
# exported_symbols.sh NM LIBRARY EXPECTED: the library exports the names in the file EXPECTED and no other.
set -euo pipefail
diff -u "$3" <("$1" -D --defined-only --demangle --format=posix "$2" |
    sed -E 's/ [A-Za-z]( [0-9a-f]+)*$//' | LC_ALL=C sort -u)
