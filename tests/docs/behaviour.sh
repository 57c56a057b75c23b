#!/usr/bin/env bash
# behaviour.sh ROOT [PAGE]: docs/behaviour.md, or PAGE, must name no test that is not there, show a test for each sentence,
# and list each message of src/container/Messages.h with its severity, and no other.
set -euo pipefail
cd -- "$1"
page=${2:-docs/behaviour.md}
status=0

wrong() {
    printf '%s: %s\n' "$page" "$*"
    status=1
}

# A test's name may stand on the line after its suite's.
tests=$(find tests framework/tests -name '*.cpp' -exec cat {} + | tr '\n' ' ' |
    grep -oE 'TEST(_F|_P)?\( *[A-Za-z0-9_]+ *, *[A-Za-z0-9_]+ *\)' |
    sed -E 's/TEST(_F|_P)?\( *([A-Za-z0-9_]+) *, *([A-Za-z0-9_]+) *\)/\2.\3/' | sort -u)
named=$(grep -oE '`[A-Z][A-Za-z0-9]*\.Given[A-Za-z0-9_]+`' "$page" | tr -d '`' | sort -u || true)
[[ -n "$named" ]] || wrong "no test is named at all"
while read -r name; do
    wrong "there is no test $name"
done < <(comm -23 <(echo "$named") <(echo "$tests"))

# A sentence is a list item with the lines that belong to it.
while IFS= read -r item; do
    [[ "$item" =~ \`[A-Z][A-Za-z0-9]*\.Given ]] || wrong "no test is named for: ${item:0:90}"
done < <(awk '/^- /{if (item) print item; item = $0; next} /^  /{if (item) item = item $0; next}
    {if (item) print item; item = ""} END {if (item) print item}' "$page")

# "| 0x8 | `text` |", with … for each value, from
# "inline constexpr Message<1> name{decision, {"text ", ""}};" and "inline constexpr std::uint32_t decision = 0x8;".
expected=$(tr '\n' ' ' <src/container/Messages.h |
    grep -oE 'constexpr (std::uint32_t [a-z]+ = 0x[0-9a-f]+;|Message<[0-9]+> [A-Za-z]+\{[^}]*\})' |
    awk '/uint32_t/ {sub(";", "", $5); value[$3] = $5; next}
        {severity = $0; sub(/^[^{]*\{/, "", severity); sub(/,.*/, "", severity)
         text = $0; sub(/^[^"]*"/, "", text); sub(/"\}$/, "", text); gsub(/", *"/, "…", text)
         print "| " value[severity] " | `" text "` |"}' | sort)
[[ -n "$expected" ]] || wrong "no message was found in the code"
listed=$(grep -oE '^\| 0x[0-9a-f]+ \| `[^`]*` \|' "$page" | sort || true)
while IFS= read -r row; do
    wrong "the catalogue lacks $row"
done < <(comm -23 <(echo "$expected") <(echo "$listed"))
while IFS= read -r row; do
    wrong "the code has no message $row"
done < <(comm -13 <(echo "$expected") <(echo "$listed"))
if (($(grep -oE '\bMessage<[0-9]+> [A-Za-z]+\{' src/container/Messages.h | wc -l) != $(wc -l <<<"$expected"))); then
    wrong "this script does not understand every message of the code"
fi

echo "$(wc -l <<<"$named") tests and $(wc -l <<<"$listed") messages"
exit $status
