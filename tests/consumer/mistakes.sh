#!/usr/bin/env bash
# A bundle by somebody new to it: what the build says of a manifest with several mistakes, and of those that are left.
source "$(dirname "$0")/common.sh"
sources=$scratch/sources
build=$scratch/build
mkdir -p "$sources"

# expect_failure TEXT...: the build must fail and say each, at the beginning of a line.
expect_failure() {
    local log text
    if log=$("$cmake" --build "$build" 2>&1); then
        printf '%s\n' "$log"
        fail "this should not have been built"
    fi
    for text in "$@"; do
        if ! grep -qE "^$text" <<<"$log"; then
            printf '%s\n' "$log"
            fail "the build does not say: $text"
        fi
        printf 'ok: the build says: %s\n' "$text"
    done
}

write_manifest() {
    cat >"$sources/manifest.json"
}

# A misspelt key, a wrong activator and a wrong version: one build tells of all three.
cat >"$sources/First.cpp" <<'END'
int first() { return 1; }
END
write_manifest <<'END'
{
    "bundle.symbolic_name": "first",
    "bundle.version": "v1",
    "bundle.activator": "true",
    "zq": {
        "component": {"name": "first"},
        "ostrelFilter": [{"language": "en"}]
    }
}
END
configure "$consumer_dir/mistakes" "$build" "-DCMAKE_PREFIX_PATH=$prefix" "-DSOURCES=$sources"
expect_failure \
    "$sources/manifest.json:3:23: error: key \"bundle.version\" is \"v1\", which is no version" \
    "$sources/manifest.json:4:25: warning: key \"bundle.activator\" must be true or false, not a string" \
    "$sources/manifest.json:7:9: warning: unknown key \"ostrelFilter\" in \"zq\": did you mean \"ostrelFilters\"\?"

# All mended, but the class that the manifest promises is nowhere.
write_manifest <<'END'
{
    "bundle.symbolic_name": "first",
    "bundle.version": "1.0.0",
    "bundle.activator": true,
    "zq": {
        "component": {"name": "first"},
        "ostrelFilters": [{"language": "en"}]
    }
}
END
expect_failure "$sources/manifest.json:4:25: error: key \"bundle.activator\" is true, but \"libfirst.so\" exports no .*\
CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR"

# expect_silence BUILD: everything is built, and nothing is complained about.
expect_silence() {
    "$cmake" --build "$1" >"$scratch/log" 2>&1 || fail "$(cat "$scratch/log")"
    ! grep -E 'manifest.json:|warning|error' "$scratch/log" || fail "a bundle without mistakes is complained about"
}

# The macro exports what it makes, whatever the project hides.
cat >"$sources/First.cpp" <<'END'
#include <cppmicroservices/BundleActivator.h>
struct First final : cppmicroservices::BundleActivator {
    void Start(cppmicroservices::BundleContext) override {}
    void Stop(cppmicroservices::BundleContext) override {}
};
CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(First)
END
configure "$consumer_dir/mistakes" "$build" -DCMAKE_CXX_VISIBILITY_PRESET=hidden -DOSTREL_STRICT_MANIFESTS=ON
expect_silence "$build"
if [[ "$framework" == system ]]; then
    # The installed framework is found again where it is needed, and the checker is known everywhere.
    configure "$consumer_dir/mistakes" "$scratch/below" "-DCMAKE_PREFIX_PATH=$prefix" "-DSOURCES=$sources" -DFOUND_BELOW=ON
    expect_silence "$scratch/below"
fi

# The schema for editors lies where the guide says.
[[ -s "$prefix/share/ostrel_us_container/manifest.schema.json" ]] || fail "the schema was not installed"
