#!/usr/bin/env bash
# Builds a host and a bundle against the installed package, moves everything, runs it, and builds again from there.
source "$(dirname "$0")/common.sh"
here=$scratch/here there="$scratch/moved there"
cp -a "$prefix" "$here"

configure "$consumer_dir/project" "$scratch/build" "-DCMAKE_PREFIX_PATH=$here" "-DCMAKE_INSTALL_PREFIX=$here"
"$cmake" --build "$scratch/build"
"$cmake" --install "$scratch/build"

# Programs and libraries find each other by run paths alone.
unset LD_LIBRARY_PATH
mv "$here" "$there"
expect_output "consumer: hello from the bundle" "$there/$bindir/consumer_host" "$there/$libdir/consumer_bundles"
if [[ "$tools" == ON ]]; then
    "$there/$bindir/ostrel-host" run "$there/$libdir/consumer_bundles" >"$scratch/report"
    grep -q '^consumer.bundle: started: ' "$scratch/report" || fail "ostrel-host reported: $(cat "$scratch/report")"
fi

configure "$consumer_dir/project" "$scratch/build_again" "-DCMAKE_PREFIX_PATH=$there"
"$cmake" --build "$scratch/build_again"
expect_output "consumer: hello from the bundle" "$scratch/build_again/consumer_host" "$scratch/build_again/bundles"
