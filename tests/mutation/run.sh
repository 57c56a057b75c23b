#!/usr/bin/env bash
# usage: tests/mutation/run.sh [--framework auto|system|embedded] [--only REGEX] [--all] [--table FILE] [-- CMAKE_OPTION...]
#
# Breaks src/container/ one clause at a time, in a copy of its own, and runs the tests that should notice.
#
# The mutations stand in the .txt files beside this script. A line that begins with "@@ PATH: NAME" opens one; the lines
# after it are the old text ("-"), the new text ("+") and what stays (" "), whole lines all, with a line of nothing for
# an empty one. The old text must stand in the file exactly once. Lines that begin with "#" are comments.
#
#   --only REGEX  only the mutations whose "PATH: NAME" the regular expression matches
#   --all         go on to the other test programs after the first that notices
#   --table FILE  write the result as a Markdown table too
#
# Status: 0 if the tests noticed every mutation, 1 if one survived, 2 if the list, a build or the unchanged code is at
# fault. Builds go to build/mutation-<framework>. Not run by ctest: it takes a build and a test run for each mutation.
set -euo pipefail
here=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
root=$(cd -- "$here/../.." && pwd)

framework=auto only="" all=0 table="" cmake_options=()
limit=${OSTREL_MUTATION_LIMIT:-120} # seconds for one test program; a mutation may make it hang

fail() {
    printf 'mutation: %s\n' "$*" >&2
    exit 2
}

while (($#)); do
    case $1 in
        --framework | --only | --table) [[ $# -ge 2 ]] || fail "$1 needs a value" ;;&
        --framework) framework=$2 && shift 2 ;;
        --only) only=$2 && shift 2 ;;
        --table) table=$2 && shift 2 ;;
        --all) all=1 && shift ;;
        --) shift && cmake_options=("$@") && break ;;
        *) fail "the argument '$1' is not understood; the beginning of this script tells the arguments" ;;
    esac
done

names=() files=() olds=() news=()

# Reads the lists into the four arrays.
read_lists() {
    local list line number
    for list in "$here"/*.txt; do
        number=0
        while IFS= read -r line || [[ -n "$line" ]]; do
            number=$((number + 1))
            case $line in
                '@@ '*)
                    [[ "$line" =~ ^'@@ '([^:]+)': '(.+)$ ]] || fail "$list:$number: expected '@@ PATH: NAME'"
                    files+=("${BASH_REMATCH[1]}") names+=("${BASH_REMATCH[2]}") olds+=("") news+=("")
                    ;;
                '#'*) ;;
                '') if ((${#names[@]})); then olds[-1]+=$'\n' news[-1]+=$'\n'; fi ;;
                *)
                    ((${#names[@]})) || fail "$list:$number: text before the first '@@ PATH: NAME'"
                    case $line in
                        -*) olds[-1]+=${line#-}$'\n' ;;
                        +*) news[-1]+=${line#+}$'\n' ;;
                        ' '*) olds[-1]+=${line# }$'\n' news[-1]+=${line# }$'\n' ;;
                        *) fail "$list:$number: a line begins with -, + or a blank" ;;
                    esac
                    ;;
            esac
        done <"$list"
    done
}

# Prints the mutated text of number $1, or fails. Whole lines: the text and what is looked for begin with a line end.
# The x keeps line ends at the end of the text, which $() would take away.
mutated_text() {
    local text old new rest
    text=$'\n'$(cat -- "$tree/${files[$1]}" && echo x)
    text=${text%x}
    # Empty lines at the end belong to the list's layout.
    old=$'\n'${olds[$1]} new=$'\n'${news[$1]}
    while [[ "$old" == *$'\n\n' && "$new" == *$'\n\n' ]]; do
        old=${old%$'\n'} new=${new%$'\n'}
    done
    [[ "$old" != "$new" ]] || fail "'${names[$1]}' changes nothing"
    rest=${text#*"$old"}
    [[ "$rest" != "$text" ]] || fail "'${names[$1]}': its old text does not stand in ${files[$1]}"
    [[ "$old" == $'\n' || "${text#*"$old"*"$old"}" == "$text" ]] ||
        fail "'${names[$1]}': its old text stands in ${files[$1]} more than once"
    printf '%s%s%s' "${text%%"$old"*}" "$new" "$rest" | tail -c +2
}

# Copies what is under version control, and new files that are not ignored. A mutated file left behind by a run that was
# cut short is replaced, and being touched it is built again.
copy_tree() {
    mkdir -p "$tree"
    (cd -- "$root" && git ls-files -z --cached --others --exclude-standard | tar --null -T - -cf -) | tar -xf - -C "$tree"
    find "$tree/src/container" -type f -exec touch {} +
}

build() {
    cmake --build "$build" --target tests_integration ostrel_test_container_steps >"$work/build.log" 2>&1
}

# noticed_by PROGRAM: prints the tests of the program that failed, one a line; nothing if all passed.
noticed_by() {
    local status=0 last
    timeout -k 5 "$limit" "$1" >"$work/test.log" 2>&1 </dev/null || status=$?
    if [[ $status == 0 ]]; then
        return
    fi
    if grep -qE '^\[  FAILED  \] [0-9]+ tests?, listed below' "$work/test.log"; then
        sed -nE '/^\[  FAILED  \] [0-9]+ tests?, listed below/,$ s/^\[  FAILED  \] ([A-Za-z][^ ,]*).*/\1/p' "$work/test.log"
        return
    fi
    # It crashed or was ended; the test that ran is the one that noticed.
    last=$(sed -nE 's/^\[ RUN      \] (.*)/\1/p' "$work/test.log" | tail -n 1)
    if [[ $status == 124 || $status == 137 ]]; then
        echo "${last:-$(basename "$1")} (hangs)"
    else
        echo "${last:-$(basename "$1")} (ends with status $status)"
    fi
}

# Runs the programs until one notices; prints what did. The one that noticed goes to the front: mutations of one subject
# stand together.
run_programs() {
    local i program found noticed=""
    for i in "${!programs[@]}"; do
        program=${programs[$i]}
        found=$(noticed_by "$program")
        if [[ -n "$found" ]]; then
            noticed+=$found$'\n'
            if [[ $all == 0 ]]; then
                unset "programs[$i]"
                programs=("$program" "${programs[@]}")
                break
            fi
        fi
    done
    printf '%s' "$noticed" >"$work/noticed"
}

work=$root/build/mutation-$framework
tree=$work/tree build=$work/build
mkdir -p "$work"
# Two runs in one copy would see each other's mutations.
exec 9>"$work/lock"
flock -n 9 || fail "another run is under way in $work"
read_lists
echo "copying the sources to $tree"
copy_tree
trap 'copy_tree' EXIT
for i in "${!names[@]}"; do
    mutated_text "$i" >/dev/null
done
echo "${#names[@]} mutations; building the unchanged code"
# Programs need no new link when only the shared library changed.
cmake -S "$tree" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DOSTREL_FRAMEWORK="$framework" \
    -DOSTREL_BUILD_TOOLS=OFF -DOSTREL_BUILD_EXAMPLES=OFF -DOSTREL_INSTALL=OFF -DCMAKE_LINK_DEPENDS_NO_SHARED=ON \
    "${cmake_options[@]}" >"$work/configure.log" 2>&1 || fail "cannot configure, see $work/configure.log"
build || fail "the unchanged code does not build, see $work/build.log"
mapfile -t programs < <(find "$build/tests/integration" "$build/tests/unit/container" -type f -name 'ostrel_test_*' \
    -perm -u+x | sort)
((${#programs[@]})) || fail "there is no test program in $build/tests"
run_programs
[[ ! -s "$work/noticed" ]] || fail "tests fail on the unchanged code: $(head -n 3 "$work/noticed" | tr '\n' ' ')"

rows=() made=0 survived=0 broken=0
for i in "${!names[@]}"; do
    name=${names[$i]} file=${files[$i]}
    [[ "$file: $name" =~ $only ]] || continue
    cp -- "$tree/$file" "$work/original"
    mutated_text "$i" >"$work/mutated"
    cp -- "$work/mutated" "$tree/$file"
    made=$((made + 1))
    if ! build; then
        cp -- "$work/original" "$tree/$file"
        broken=$((broken + 1))
        printf 'BROKEN    %s: %s: does not build: %s\n' "$file" "$name" "$(grep -m 1 -F 'error:' "$work/build.log" || true)"
        continue
    fi
    run_programs
    cp -- "$work/original" "$tree/$file"
    mapfile -t noticed <"$work/noticed"
    if ((${#noticed[@]} == 0)); then
        survived=$((survived + 1))
        printf 'SURVIVED  %s: %s\n' "$file" "$name"
        rows+=("| \`${file##*/}\` | $name | **nothing** |")
    else
        printf 'noticed   %s: %s: %s\n' "$file" "$name" "${noticed[*]}"
        shown="\`${noticed[0]}\`"
        if ((${#noticed[@]} > 1)); then shown+=" and $((${#noticed[@]} - 1)) more"; fi
        rows+=("| \`${file##*/}\` | $name | $shown |")
    fi
done
((made > 0)) || fail "no mutation is matched by '$only'"

echo "$made mutations, $survived survived, $broken do not build"
if [[ -n "$table" ]]; then
    {
        echo "| File | Mutation | Noticed by |"
        echo "|---|---|---|"
        printf '%s\n' "${rows[@]}"
    } >"$table"
fi
((broken == 0)) || exit 2
((survived == 0)) || exit 1
