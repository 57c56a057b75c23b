#!/usr/bin/env bash
# A bundle project written for CppMicroServices, unchanged, against either framework: found as CppMicroServices, found
# with the container, and with the container as a subdirectory.
source "$(dirname "$0")/common.sh"
project=$consumer_dir/resources
compatible=$prefix/$libdir/cmake/ostrel_framework
files=$scratch/files
cp -a "$project/files" "$files"

# expect_resources BUILD FIRST-TEXT
expect_resources() {
    expect_output "/merged/more.txt: from an archive
/texts/one.txt: $2
/texts/two.txt: the second
reader 1.0.0 ACTIVE
resource_host 2.0.0 ACTIVE" "$1/bin/resource_host" "$1/libreader.so"
}

# build BUILD OPTION...
build() {
    configure "$project" "$1" "-DRESOURCES=$files" "${@:2}"
    "$cmake" --build "$1" --target reader resource_host
}

if [[ "$framework" == embedded ]]; then
    as_original=("-DCppMicroServices_DIR=$compatible")
else
    as_original=() # the settings name it
fi
build "$scratch/original" -DPACKAGE=CppMicroServices "${as_original[@]}"
expect_resources "$scratch/original" "the first"

# A changed resource gets in by the next build.
echo "the changed" >"$files/texts/one.txt"
"$cmake" --build "$scratch/original" --target reader resource_host
expect_resources "$scratch/original" "the changed"

build "$scratch/container" -DPACKAGE=ostrel_us_container "-DCMAKE_PREFIX_PATH=$prefix"
expect_resources "$scratch/container" "the changed"

if [[ "$framework" == embedded ]]; then
    strip "$scratch/original/libreader.so"
    expect_resources "$scratch/original" "the changed"

    build "$scratch/subdirectory" "-DOSTREL_SOURCE_DIR=$source_dir" -DOSTREL_FRAMEWORK=embedded
    expect_resources "$scratch/subdirectory" "the changed"

    # Nobody comes to the embedded framework by the name CppMicroServices without pointing there, and this project's own
    # search for an installed one not even then.
    expect_error "CppMicroServicesConfig.cmake" "$project" "$scratch/unasked" "-DRESOURCES=$files" \
        -DPACKAGE=CppMicroServices "-DCMAKE_PREFIX_PATH=$prefix" -DCMAKE_FIND_USE_CMAKE_SYSTEM_PATH=OFF
    expect_error "no CppMicroServices 3.8.4 was found" "$source_dir" "$scratch/loop" -DOSTREL_FRAMEWORK=system \
        "${as_original[@]}"
fi
