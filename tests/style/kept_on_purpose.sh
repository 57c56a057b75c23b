#!/usr/bin/env bash
# kept_on_purpose.sh ROOT: what looks wrong and is kept is marked "KEPT ON PURPOSE"; a test that the marker names after
# "Pinned by" must exist.
set -euo pipefail
cd -- "$1"
folders=()
for folder in include src bundle_reader framework tools tests; do
    if [[ -d "$folder" ]]; then folders+=("$folder"); fi
done
status=0
markers=$(grep -rhoE 'KEPT ON PURPOSE' --include='*.h' --include='*.cpp' "${folders[@]}" | wc -l)
((markers > 0)) || { echo "no marker was found at all"; exit 1; }

# Comments are joined, since a name may stand on the line after "Pinned by".
while read -r suite name; do
    if ! tr -d '\n' < <(cat $(grep -rlE 'TEST(_F|_P)?\(' --include='*.cpp' tests framework)) |
        grep -qE "TEST(_F|_P)?\($suite, *$name\)"; then
        echo "a marker names the test $suite.$name, which does not exist"
        status=1
    fi
done < <(find "${folders[@]}" -name '*.h' -o -name '*.cpp' | xargs cat | sed -E 's#^[[:space:]]*//+##' | tr '\n' ' ' |
    tr -s ' ' | grep -oE 'Pinned by [A-Za-z0-9_]+\.[A-Za-z0-9_]+' | sed -E 's/Pinned by ([^.]+)\.(.*)/\1 \2/' | sort -u)
echo "$markers markers"
exit $status
