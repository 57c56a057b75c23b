# Sourced by the scripts beside it, which are called with the path of settings.sh.
set -euo pipefail
# shellcheck source=/dev/null
source "$1"
consumer_dir=$source_dir/tests/consumer
scratch=$scratch_root/$(basename "$0" .sh)
rm -rf "$scratch"
mkdir -p "$scratch"

fail() {
    printf 'FAILED: %s\n' "$*" >&2
    exit 1
}

# configure SOURCE BUILD [OPTION...]
configure() {
    local source=$1 build=$2
    shift 2
    "$cmake" -S "$source" -B "$build" "${settings[@]}" "$@"
}

# expect_error TEXT SOURCE BUILD [OPTION...]: the configure step must fail and say TEXT, however its lines are wrapped.
# What it says is left in $scratch/error.
expect_error() {
    local text=$1 log
    shift
    if log=$(configure "$@" 2>&1); then
        printf '%s\n' "$log"
        fail "this should not have been configured: $*"
    fi
    printf '%s\n' "$log" >"$scratch/error"
    if [[ "$(tr -s ' \n' ' ' <<<"$log")" != *"$text"* ]]; then
        printf '%s\n' "$log"
        fail "the error does not say: $text"
    fi
    printf 'ok: the error says: %s\n' "$text"
}

# expect_output EXPECTED COMMAND...: standard output must be exactly that.
expect_output() {
    local expected=$1 found
    shift
    found=$("$@") || fail "exit code $? of: $*"
    [[ "$found" == "$expected" ]] || fail "'$*' printed '$found' and not '$expected'"
    printf 'ok: %s\n' "$*"
}
