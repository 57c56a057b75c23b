#!/usr/bin/env bash
# options.sh ROOT [PAGE]: README.md, or PAGE, must list each option that the build defines, with its default, and no other,
# say how a release build is made, and name only presets that there are.
set -euo pipefail
cd -- "$1"
page=${2:-README.md}
status=0

wrong() {
    printf '%s: %s\n' "$page" "$*"
    status=1
}

# "| `NAME` | `default` |", from "option(NAME "text" default)" and "set(NAME default CACHE TYPE "text")". A default that
# tells whether the project is the outermost one stands as the ON that it is there.
files=$(find . -path ./build\* -prune -o -path ./tests/\*/project -prune -o \
    \( -name CMakeLists.txt -o -name '*.cmake' \) -print)
# shellcheck disable=SC2086 # several files
defined=$(sed -nE 's/^ *option\((OSTREL_[A-Z_]+) "[^"]*" ([^ )]+)\).*/| `\1` | `\2` |/p
    s/^ *set\((OSTREL_[A-Z_]+) ([^ ]+) CACHE .*/| `\1` | `\2` |/p' $files |
    sed -E 's/\$\{PROJECT_IS_TOP_LEVEL\}/ON/; s/`""`/none/' | LC_ALL=C sort)
# shellcheck disable=SC2086
number=$(grep -hE '^[^#]*(\boption\(|\bset\(OSTREL_.*\bCACHE\b)' $files | wc -l)
[[ $(wc -l <<<"$defined") == "$number" ]] || wrong "this script does not understand every option of the build"
listed=$(grep -oE '^\| `OSTREL_[A-Z_]+` \| [^|]* \|' "$page" | LC_ALL=C sort || true)
while IFS= read -r row; do
    wrong "the list of options lacks $row"
done < <(LC_ALL=C comm -23 <(echo "$defined") <(echo "$listed"))
while IFS= read -r row; do
    wrong "the build has no option $row"
done < <(LC_ALL=C comm -13 <(echo "$defined") <(echo "$listed"))

grep -qxF 'cmake --preset release' "$page" || wrong "it does not say how to build for use"
presets=$(grep -oE '"name": "[a-z]+"' CMakePresets.json | sed -E 's/.*"([a-z]+)"/\1/')
while IFS= read -r preset; do
    grep -qxF -- "$preset" <<<"$presets" || wrong "there is no preset $preset"
done < <(grep -oE -- '--preset [A-Za-z_-]+|cmake --(build|install) build/[A-Za-z_-]+' "$page" | sed -E 's/.*[ \/]//')

echo "$number options"
exit $status
