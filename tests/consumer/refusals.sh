#!/usr/bin/env bash
# What find_package() says of a package that cannot be used as it is asked for: one error, with the reason and what to do.
source "$(dirname "$0")/common.sh"
build=$scratch/build

# expect_refusal TEXT PREFIX [OPTION...]
expect_refusal() {
    expect_error "Reason given by package: ostrel_us_container cannot be used: $1" "$consumer_dir/find" "$build" \
        "-DCMAKE_PREFIX_PATH=$2" -Uostrel_us_container_DIR -DFIND=REQUIRED "${@:3}"
    (($(grep -c '^CMake Error' "$scratch/error") == 1)) || fail "there is more than one error: $(cat "$scratch/error")"
}

# expect_found TEXT FIND: the configure step must succeed and say TEXT.
expect_found() {
    configure "$consumer_dir/find" "$build" "-DCMAKE_PREFIX_PATH=$prefix" -Uostrel_us_container_DIR "-DFIND=$2" \
        >"$scratch/log" 2>&1 || fail "$(cat "$scratch/log")"
    grep -qF -- "-- $1" "$scratch/log" || fail "with $2 nobody says '$1': $(cat "$scratch/log")"
    printf 'ok: with %s: %s\n' "$2" "$1"
}

# Components, of which there are none.
expect_refusal "it has no component 'nonsense', nor any other. Leave COMPONENTS out of find_package()." \
    "$prefix" '-DFIND=REQUIRED;COMPONENTS;nonsense;more'
expect_found "The package was not found." 'COMPONENTS;nonsense'
expect_found "The package was found." 'REQUIRED;OPTIONAL_COMPONENTS;nonsense'
expect_found "The package was found." REQUIRED

# A part of an installation.
part=$scratch/part
cp -a "$prefix" "$part"
mv "$part/$libdir/cmake/ostrel_us_container/OstrelAddBundle.cmake" "$scratch"
expect_refusal "its file $part/$libdir/cmake/ostrel_us_container/OstrelAddBundle.cmake is missing. Build and install it \
again, or name another prefix." "$part"
mv "$scratch/OstrelAddBundle.cmake" "$part/$libdir/cmake/ostrel_us_container"

# Built on an installed CppMicroServices, which is nowhere. The package of the embedded framework is made to think so.
sed -i 's/FRAMEWORK "embedded"/FRAMEWORK "system"/' \
    "$part/$libdir/cmake/ostrel_us_container/ostrel_us_containerConfig.cmake"
expect_refusal "it was built with an installed CppMicroServices, and CppMicroServices 3.8.4 was not found. Add the \
prefix in which it is installed to CMAKE_PREFIX_PATH, or set CppMicroServices_DIR to the folder of its \
CppMicroServicesConfig.cmake." "$part" -DCMAKE_DISABLE_FIND_PACKAGE_CppMicroServices=ON
