#!/usr/bin/env bash
# The project as a subdirectory of another one: the same host and bundle, no tests, tools or installation.
source "$(dirname "$0")/common.sh"

configure "$consumer_dir/project" "$scratch/build" "-DOSTREL_SOURCE_DIR=$source_dir" -DOSTREL_FRAMEWORK="$framework" \
    "-DCMAKE_INSTALL_PREFIX=$scratch/prefix"
"$cmake" --build "$scratch/build" --target consumer_host consumer_bundle
expect_output "consumer: hello from the bundle" "$scratch/build/consumer_host" "$scratch/build/bundles"

[[ ! -e "$scratch/build/ostrel/tests" && ! -e "$scratch/build/ostrel/tools" && ! -e "$scratch/build/ostrel/examples" ]] ||
    fail "tests, tools or examples became part of the other project"
"$cmake" --install "$scratch/build"
found=$(cd "$scratch/prefix" && find . -type f | sort | tr '\n' ' ')
[[ "$found" == "./$bindir/consumer_host ./$libdir/consumer_bundles/libconsumer_bundle.so " ]] ||
    fail "the other project installed more than its own: $found"
