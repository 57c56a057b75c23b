#!/usr/bin/env bash
# ./dev demo with the host and the examples of this build, given as third and fourth argument.
source "$(dirname "$0")/common.sh"
mkdir -p "$tree/build/dev/tools/host" "$tree/build/dev/examples"
ln -s "$3" "$tree/build/dev/tools/host/ostrel-host"
ln -s "$4" "$tree/build/dev/examples/bundles"

dev demo || fail "the demo failed"
expect_lines "With language=en these bundles started: text_dashes, text_pipeline, text_quotes_english, text_spacing, \
text_spelling, text_statistics.
With language=de these bundles started: text_dashes, text_pipeline, text_quotes_german, text_spacing, \
text_statistics.
The two sets differ: only language=en started text_quotes_english, text_spelling, and only language=de started \
text_quotes_german."

# What it says to try next does work.
(cd "$tree" && sed -nE 's/^  (build\/.*ostrel-host run .*)$/\1/p' log >commands && [[ -s commands ]] &&
    bash -euo pipefail commands) >"$tree/tried" 2>&1 || fail "what to try next fails: $(cat "$tree/tried")"
