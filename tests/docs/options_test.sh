#!/usr/bin/env bash
# options_test.sh ROOT SCRATCH: options.sh must refuse each of these changes to the page.
set -euo pipefail
root=$1 scratch=$2
# shellcheck source=tests/docs/changed_page.sh
source "$(dirname -- "$0")/changed_page.sh" options.sh README.md

expect yes "the page" ''
expect no "an option that is missing" '/^\| `OSTREL_FUZZ` /d'
expect no "another default" 's/^(\| `OSTREL_FRAMEWORK` \|) `auto`/\1 `system`/'
expect no "an option that there is not" 's/^\| `OSTREL_FUZZ` .*/&\n| `OSTREL_MAGIC` | `ON` | makes it faster |/'
expect no "no options at all" '/^\| `OSTREL_/d'
expect no "no release build" '/--preset release/d'
expect no "a preset that there is not" 's/--preset release/--preset fast/'
expect no "a build tree that there is not" 's/--build build.release/--build build\/fast/'
exit $status
