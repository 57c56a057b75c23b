#!/usr/bin/env bash
# A target CppMicroServices of another framework must be refused, with words that say so.
source "$(dirname "$0")/common.sh"

expect_error "a target CppMicroServices of another framework exists already" \
    "$consumer_dir/conflict" "$scratch/build" "-DCMAKE_PREFIX_PATH=$prefix"
# Finding the package twice, in one directory and in one below, is no conflict.
configure "$consumer_dir/twice" "$scratch/build_twice" "-DCMAKE_PREFIX_PATH=$prefix"
# Other major versions are not compatible.
expect_error "compatible with requested version \"2.0\"" \
    "$consumer_dir/version" "$scratch/build_version" "-DCMAKE_PREFIX_PATH=$prefix"
expect_error "it needs Boost.Log (1.74 or later). On Debian: apt-get install libboost-log-dev" \
    "$consumer_dir/project" "$scratch/build_boost" "-DCMAKE_PREFIX_PATH=$prefix" -DCMAKE_DISABLE_FIND_PACKAGE_Boost=ON
