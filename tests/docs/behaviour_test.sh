#!/usr/bin/env bash
# behaviour_test.sh ROOT SCRATCH: behaviour.sh must refuse each of these changes to the page.
set -euo pipefail
here=$(cd -- "$(dirname -- "$0")" && pwd)
root=$1 scratch=$2
mkdir -p "$scratch"
status=0

# expect yes|no NAME SED-EXPRESSION
expect() {
    local answer=yes
    sed -E "$3" "$root/docs/behaviour.md" >"$scratch/page.md"
    if [[ "$1" == no ]] && cmp -s "$root/docs/behaviour.md" "$scratch/page.md"; then
        echo "$2: the page was not changed"
        status=1
    fi
    bash "$here/behaviour.sh" "$root" "$scratch/page.md" >/dev/null 2>&1 || answer=no
    if [[ "$answer" != "$1" ]]; then
        echo "$2: accepted should be $1 and is $answer"
        status=1
    fi
}

expect yes "the page" ''
expect no "a test that is not there" 's/`StartBundle\.GivenEmptyName_WhenStarted_ThenNothingIsLogged`/`StartBundle.GivenNoSuchTest`/'
expect no "a sentence without a test" 's/^## reload$/- It is quick.\n\n## reload/'
expect no "a message that is missing" '/^\| 0x10 \| `Did not stop …` /d'
expect no "another severity" 's/^\| 0x10 \| `Did not stop/| 0x8 | `Did not stop/'
expect no "another text" 's/Error while stoping …: …/Error while stopping …: …/'
expect no "a message that the code has not" 's/^(\| 0x10 \|) `Did not stop …`(.*)/&\n\1 `Did stop …`\2/'
exit $status
