# shellcheck shell=bash
# For a test of a check: source changed_page.sh CHECK PAGE, with `root` and `scratch` set. CHECK is a script of this folder
# that is called with the root and a page; `status` is 1 once it did not answer as expected.
# shellcheck disable=SC2034,SC2154 # set and used by the script that sources this one
check=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)/$1 page=$2
mkdir -p "$scratch"
status=0

# expect yes|no NAME SED-EXPRESSION: what the check says of the page when it is changed so
expect() {
    local answer=yes
    sed -E "$3" "$root/$page" >"$scratch/page.md"
    if [[ "$1" == no ]] && cmp -s "$root/$page" "$scratch/page.md"; then
        echo "$2: the page was not changed"
        status=1
    fi
    bash "$check" "$root" "$scratch/page.md" >/dev/null 2>&1 || answer=no
    if [[ "$answer" != "$1" ]]; then
        echo "$2: accepted should be $1 and is $answer"
        status=1
    fi
}
