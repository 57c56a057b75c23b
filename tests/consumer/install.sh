#!/usr/bin/env bash
# Installs the build into the prefix that the other tests use, and looks at what lies there.
source "$(dirname "$0")/common.sh"

rm -rf "$prefix"
"$cmake" --install "$build_dir" --prefix "$prefix" >"$scratch/log"

expected=(
    include/ostrel_us_container/container/MicroServicesContainer.h
    include/ostrel_us_container/container/DiagnosticLog.h
    include/ostrel_us_container/platform/{Utf16Path,DiagnosticLogger,InstallBundles,Export}.h
    include/ostrel_us_container/inspection/{Code,Condition,Explanation,FilterExplanation,Finding,Inspection,Plan,Export}.h
    "$libdir"/libostrel_us_container.so{,.1} "$libdir"/libostrel_inspection.so{,.1}
    "$libdir"/cmake/ostrel_us_container/{ostrel_us_containerConfig,OstrelAddBundle}.cmake
    libexec/ostrel_us_container/ostrel_bundle_checker share/ostrel_us_container/manifest.schema.json
    share/ostrel_us_container/schemas/{explanation,inspection,plan}.schema.json
)
if [[ "$framework" == embedded ]]; then
    expected+=(include/ostrel_framework/cppmicroservices/Bundle.h "$libdir"/libostrel_framework.so{,.1}
        "$libdir"/cmake/ostrel_framework/{OstrelEmbeddedFramework,CppMicroServicesConfig}.cmake)
fi
if [[ "$tools" == ON ]]; then
    expected+=("$bindir/ostrel-host")
fi
for file in "${expected[@]}"; do
    [[ -e "$prefix/$file" ]] || fail "$file was not installed"
done

# Nothing that would meet an installed CppMicroServices, and nothing that belongs to nobody. The one file of that name
# lies where only somebody who points there finds it.
if found=$(find "$prefix" -path '*/include/cppmicroservices*' -o -iname 'CppMicroServices*.cmake' -o -name '*.a' -o \
    -iname 'libCppMicroServices*' | grep -v "^$prefix/$libdir/cmake/ostrel_framework/CppMicroServicesConfig"); then
    fail "this must not be installed: $found"
fi
headers=$(cd "$prefix/include" && find . -mindepth 1 -maxdepth 1 | sort | tr '\n' ' ')
case "$framework:$headers" in
    "embedded:./ostrel_framework ./ostrel_us_container " | "system:./ostrel_us_container ") ;;
    *) fail "include/ holds $headers" ;;
esac

# The package is relocatable, and its users need none of the private libraries.
for file in "$prefix/$libdir"/cmake/ostrel_*/*.cmake; do
    for leak in "$prefix" "$build_dir" "$source_dir"; do
        ! grep -nF "$leak" "$file" || fail "$file holds the path $leak"
    done
done
! grep -niE 'libzip|rapidjson|bundle_reader|warnings' "$prefix/$libdir"/cmake/ostrel_*/*Targets*.cmake ||
    fail "private libraries are part of the exported targets"
