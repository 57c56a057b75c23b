#!/usr/bin/env bash
# behaviour_test.sh ROOT SCRATCH: behaviour.sh must refuse each of these changes to the page.
set -euo pipefail
root=$1 scratch=$2
# shellcheck source=tests/docs/changed_page.sh
source "$(dirname -- "$0")/changed_page.sh" behaviour.sh docs/behaviour.md

expect yes "the page" ''
expect no "a test that is not there" 's/`StartBundle\.GivenEmptyName_WhenStarted_ThenNothingIsLogged`/`StartBundle.GivenNoSuchTest`/'
expect no "a sentence without a test" 's/^## reload$/- It is quick.\n\n## reload/'
expect no "a message that is missing" '/^\| 0x10 \| `Did not stop …` /d'
expect no "another severity" 's/^\| 0x10 \| `Did not stop/| 0x8 | `Did not stop/'
expect no "another text" 's/Error while stoping …: …/Error while stopping …: …/'
expect no "a message that the code has not" 's/^(\| 0x10 \|) `Did not stop …`(.*)/&\n\1 `Did stop …`\2/'
exit $status
