#!/usr/bin/env bash
# ./dev demo with the host and the examples of this build, given as third and fourth argument.
source "$(dirname "$0")/common.sh"
mkdir -p "$tree/build/dev/tools/host" "$tree/build/dev/examples"
ln -s "$3" "$tree/build/dev/tools/host/ostrel-host"
ln -s "$4" "$tree/build/dev/examples/bundles"

dev demo || fail "the demo failed"
expect_lines "With language=en these bundles started: text.dashes, text.pipeline, text.quotes.english, text.spacing, \
text.spelling, text.statistics.
With language=de these bundles started: text.dashes, text.pipeline, text.quotes.german, text.spacing, \
text.statistics.
The two sets differ: only language=en started text.quotes.english, text.spelling, and only language=de started \
text.quotes.german."

# What it says to try next does work.
(cd "$tree" && sed -nE 's/^  (build\/.*ostrel-host (run|explain|plan) .*)$/\1/p' log >commands && [[ -s commands ]] &&
    bash -euo pipefail commands) >"$tree/tried" 2>&1 || fail "what to try next fails: $(cat "$tree/tried")"
