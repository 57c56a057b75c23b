#!/usr/bin/env bash
# What the project's own configure step says to wrong options and missing packages. One build directory serves all, so
# that the compiler is examined once.
source "$(dirname "$0")/common.sh"
build=$scratch/build

# The option that a case sets is taken back by the next one, which gives all of them.
configure_project() {
    expect_error "$1" "$source_dir" "$build" -UOSTREL_LIBZIP_LIBRARY -UOSTREL_RAPIDJSON_INCLUDE_DIR \
        -DBUILD_TESTING=ON -DOSTREL_FRAMEWORK="$framework" -DCMAKE_DISABLE_FIND_PACKAGE_{Boost,GTest,CppMicroServices}=OFF \
        "${@:2}"
}

configure_project "OSTREL_FRAMEWORK is 'bogus'; it must be 'auto', 'system' or 'embedded'." -DOSTREL_FRAMEWORK=bogus
configure_project "OSTREL_FRAMEWORK is 'system', but no CppMicroServices 3.8.4 was found." \
    -DOSTREL_FRAMEWORK=system -DCMAKE_DISABLE_FIND_PACKAGE_CppMicroServices=ON
configure_project "apt-get install libboost-log-dev" -DCMAKE_DISABLE_FIND_PACKAGE_Boost=ON
configure_project "apt-get install libzip-dev" -DOSTREL_LIBZIP_LIBRARY=
configure_project "apt-get install rapidjson-dev" -DOSTREL_RAPIDJSON_INCLUDE_DIR=
configure_project "apt-get install libgtest-dev" -DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON

# Without tests nothing looks for GoogleTest, and each framework says where it was taken from and why.
log=$(configure "$source_dir" "$build" -UOSTREL_LIBZIP_LIBRARY -UOSTREL_RAPIDJSON_INCLUDE_DIR -DBUILD_TESTING=OFF \
    -DOSTREL_FRAMEWORK="$framework" -DCMAKE_DISABLE_FIND_PACKAGE_{Boost,CppMicroServices}=OFF \
    -DCMAKE_DISABLE_FIND_PACKAGE_GTest=ON 2>&1) || fail "$log"
grep -E "^-- Framework: .*\(asked for by OSTREL_FRAMEWORK\)" <<<"$log" || fail "no line about the framework: $log"
log=$(configure "$source_dir" "$build" -DOSTREL_FRAMEWORK=auto -DCMAKE_DISABLE_FIND_PACKAGE_CppMicroServices=ON 2>&1) ||
    fail "$log"
grep -E "^-- Framework: embedded, from .* \(no installed CppMicroServices 3.8.4 found\)" <<<"$log" ||
    fail "no line about the framework: $log"

# A tree without a fault is configured without a warning, fixtures with planned faults included.
log=$(configure "$source_dir" "$build" --no-warn-unused-cli -DBUILD_TESTING=ON -DOSTREL_FRAMEWORK="$framework" \
    -DCMAKE_DISABLE_FIND_PACKAGE_{CppMicroServices,GTest}=OFF 2>&1) || fail "$log"
! grep -A 12 -E '^CMake .*Warning' <<<"$log" || fail "the configure step warns"
