#!/usr/bin/env bash
# ./dev demo ends by saying what its two runs showed, whatever that was, and fails where they do not show it.
source "$(dirname "$0")/common.sh"
mkdir -p "$tree/build/dev/tools/host"

# host ENGLISH GERMAN: the host reports these lines under the two conditions.
host() {
    cat >"$tree/build/dev/tools/host/ostrel-host" <<END
#!/usr/bin/env bash
case "\$*" in
    "run build/dev/examples/bundles --when language=en") printf '%b' "$1" ;;
    "run build/dev/examples/bundles --when language=de") printf '%b' "$2" ;;
    "run build/dev/examples/bundles --when language=en --report") printf 'Bundles:\n' ;;
    *) exit 64 ;;
esac
printf 'counts follow\n'
END
    chmod +x "$tree/build/dev/tools/host/ostrel-host"
}

one='one: started: why: this\n'
two='two words: started: why\n'
three='three: started: why\nother: refused: why\n'

host "$two$one" "$one$three"
dev demo || fail "the demo failed"
expect_lines "With language=en these bundles started: one, two words.
With language=de these bundles started: one, three.
The two sets differ: only language=en started two words, and only language=de started three."
expect_lines "  build/dev/tools/host/ostrel-host explain build/dev/examples/bundles --when language=en"
[[ "$(tail -n 5 "$tree/log")" == *"./dev test"*"examples/README.md"* ]] || fail "the last lines do not say what to try"

host "$one" "$one$two"
dev demo || fail "the demo failed"
expect_lines "With language=en these bundles started: one.
With language=de these bundles started: one, two words.
The two sets differ: only language=en started nothing, and only language=de started two words."

host "$one$two" "$two$one"
! dev demo || fail "the demo did not fail with equal sets"
expect_lines "dev: the same bundles started under both conditions; different ones should."

host "" ""
! dev demo || fail "the demo did not fail without any bundle"

# A host that fails after all, whatever it reported.
host "$one" "$two"
echo 'exit 70' >>"$tree/build/dev/tools/host/ostrel-host"
! dev demo || fail "the demo did not fail with the host"
expect_lines "dev: the host ended with status 70; above it says why"
! grep -q 'What to try next' "$tree/log" || fail "a failed demo says what to try next"
