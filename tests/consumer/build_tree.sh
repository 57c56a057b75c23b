#!/usr/bin/env bash
# The package of the build tree: usable like an installed one, by either way of naming the tree, once it is built.
source "$(dirname "$0")/common.sh"

configure "$consumer_dir/project" "$scratch/build" "-DCMAKE_PREFIX_PATH=$build_dir"
"$cmake" --build "$scratch/build" --target consumer_host consumer_bundle
expect_output "consumer: hello from the bundle" "$scratch/build/consumer_host" "$scratch/build/bundles"
for name in ostrel_us_container_DIR CMAKE_PREFIX_PATH; do
    configure "$consumer_dir/find" "$scratch/$name" "-D$name=$build_dir" -DFIND=REQUIRED
    grep -qE "^ostrel_us_container_DIR:[A-Z]+=$build_dir\$" "$scratch/$name/CMakeCache.txt" ||
        fail "with $name another package was found"
done

# Configured, and not built.
tree=$scratch/tree
configure "$source_dir" "$tree" -DBUILD_TESTING=OFF -DOSTREL_FRAMEWORK="$framework"
expect_error "is not built yet. Build it: cmake --build <build tree>, or name a prefix where it is installed." \
    "$consumer_dir/find" "$scratch/unbuilt" "-DCMAKE_PREFIX_PATH=$tree" -DFIND=REQUIRED
(($(grep -c '^CMake Error' "$scratch/error") == 1)) || fail "there is more than one error: $(cat "$scratch/error")"
