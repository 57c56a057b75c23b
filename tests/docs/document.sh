#!/usr/bin/env bash
# document.sh SETTINGS DOCUMENT: checks one Markdown file against the installed package.
#
# The line before a fenced block says what becomes of the block:
#   <!-- example NAME file PATH -->   it is the file PATH of the example NAME
#   <!-- example NAME run -->         it is run in the directory of the example, with $PREFIX and $CXX set
#   <!-- example NAME output -->      it is what the last run must have printed, standard error included
# Any other C++ block must compile as a file of its own. Links to files must lead somewhere.
set -euo pipefail
# shellcheck source=/dev/null
source "$1"
cd -- "$source_dir"
document=$2
scratch=$scratch_root/docs/$(tr '/' '_' <<<"$document")
rm -rf "$scratch"
mkdir -p "$scratch"

fail() {
    printf 'FAILED: %s: %s\n' "$document" "$*" >&2
    exit 1
}

includes=(-I "$prefix/include/ostrel_us_container")
if [[ "$framework" == embedded ]]; then
    includes+=(-I "$prefix/include/ostrel_framework")
else
    includes+=(-I "$framework_include")
fi

# use_block MARKER LANGUAGE FILE LINE: does what the marker says with the block in FILE.
use_block() {
    local marker=$1 language=$2 file=$3 line=$4 name what path
    if [[ "$marker" =~ ^'<!-- example '([a-z_]+)' '(file|run|output)(' '([A-Za-z0-9_./-]+))?' -->'$ ]]; then
        name=${BASH_REMATCH[1]} what=${BASH_REMATCH[2]} path=${BASH_REMATCH[4]}
        mkdir -p "$scratch/$name"
        case $what in
            file)
                mkdir -p "$(dirname "$scratch/$name/$path")"
                cp "$file" "$scratch/$name/$path"
                ;;
            run)
                echo "running the block at line $line"
                (cd "$scratch/$name" && PREFIX=$prefix CXX=$compiler CMAKE_GENERATOR=Ninja \
                    CppMicroServices_DIR=${framework_dir:-} bash -euo pipefail "$file") \
                    >"$scratch/output" 2>&1 </dev/null || fail "the block at line $line failed:
$(cat "$scratch/output")"
                ;;
            output)
                diff -u "$file" "$scratch/output" || fail "the block at line $line is not what was printed"
                ;;
        esac
    elif [[ "$marker" == '<!-- example'* ]]; then
        fail "line $line: the marker '$marker' is not understood"
    elif [[ "$language" == cpp ]]; then
        echo "compiling the block at line $line"
        "$compiler" -std=c++17 -fsyntax-only -x c++ -DUS_BUNDLE_NAME=snippet "${includes[@]}" "$file" ||
            fail "the block at line $line does not compile"
    fi
}

number=0 previous="" in_block=0
while IFS= read -r line || [[ -n "$line" ]]; do
    number=$((number + 1))
    if [[ $in_block == 0 && "$line" == '```'* ]]; then
        in_block=1 marker=$previous language=${line#'```'} start=$number
        : >"$scratch/block"
    elif [[ $in_block == 1 && "$line" == '```' ]]; then
        in_block=0
        use_block "$marker" "$language" "$scratch/block" "$start"
    elif [[ $in_block == 1 ]]; then
        printf '%s\n' "$line" >>"$scratch/block"
    fi
    previous=$line
done <"$document"
[[ $in_block == 0 ]] || fail "the block at line $start has no end"

while IFS= read -r target; do
    [[ -e "$(dirname "$document")/$target" ]] || fail "the link to $target leads nowhere"
done < <(grep -oE '\]\([^)]+\)' "$document" | sed -E 's/^\]\(//; s/\)$//; s/#.*//' | grep -vE '^$|^[a-z]+://' || true)
