#!/usr/bin/env bash
# options_test.sh ROOT SCRATCH: options.sh must refuse each of these changes to the page.
set -euo pipefail
here=$(cd -- "$(dirname -- "$0")" && pwd)
root=$1 scratch=$2
mkdir -p "$scratch"
status=0

# expect yes|no NAME SED-EXPRESSION
expect() {
    local answer=yes
    sed -E "$3" "$root/README.md" >"$scratch/page.md"
    if [[ "$1" == no ]] && cmp -s "$root/README.md" "$scratch/page.md"; then
        echo "$2: the page was not changed"
        status=1
    fi
    bash "$here/options.sh" "$root" "$scratch/page.md" >/dev/null 2>&1 || answer=no
    if [[ "$answer" != "$1" ]]; then
        echo "$2: accepted should be $1 and is $answer"
        status=1
    fi
}

expect yes "the page" ''
expect no "an option that is missing" '/^\| `OSTREL_FUZZ` /d'
expect no "another default" 's/^(\| `OSTREL_FRAMEWORK` \|) `auto`/\1 `system`/'
expect no "an option that there is not" 's/^\| `OSTREL_FUZZ` .*/&\n| `OSTREL_MAGIC` | `ON` | makes it faster |/'
expect no "no options at all" '/^\| `OSTREL_/d'
expect no "no release build" '/--preset release/d'
expect no "a preset that there is not" 's/--preset release/--preset fast/'
expect no "a build tree that there is not" 's/--build build.release/--build build\/fast/'
exit $status
