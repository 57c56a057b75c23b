# Sourced by the scripts beside it, which are called with the source tree and a scratch directory.
set -euo pipefail
tree=$2/tree programs=$2/programs
rm -rf "$2"
mkdir -p "$tree" "$programs"
cp "$1/dev" "$tree/dev"

fail() {
    printf 'FAILED: %s\n' "$*" >&2
    [[ ! -f "$tree/log" ]] || cat "$tree/log" >&2
    exit 1
}

# program NAME: standard input becomes a program of that name, found before the real one.
program() {
    cat - >"$programs/$1"
    chmod +x "$programs/$1"
}

# dev ARGUMENT...: runs the copy; what it prints goes to $tree/log, its status is that of the function.
dev() {
    PATH=$programs:$PATH "$tree/dev" "$@" >"$tree/log" 2>&1 </dev/null
}

# expect_lines TEXT: these lines must stand in the log, one after the other.
expect_lines() {
    [[ "$(cat "$tree/log")"$'\n' == *$'\n'"$1"$'\n'* ]] || fail "these lines are missing: $1"
    printf 'ok: %s\n' "$1"
}

program cmake <<'END'
#!/usr/bin/env bash
END
program dpkg-query <<'END'
#!/usr/bin/env bash
echo installed
END
