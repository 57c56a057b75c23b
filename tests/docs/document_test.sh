#!/usr/bin/env bash
# document_test.sh SETTINGS: document.sh must refuse each of these faulty documents, and accept the good one.
set -euo pipefail
here=$(cd -- "$(dirname -- "$0")" && pwd)
# shellcheck source=/dev/null
source "$1"
page=$scratch_root/docs_checker/page.md
mkdir -p "$(dirname "$page")"
relative=$(realpath --relative-to="$source_dir" "$page")
status=0

# expect yes|no NAME, the document on standard input
expect() {
    local wanted=$1 answer=yes
    cat >"$page"
    bash "$here/document.sh" "$settings_file" "$relative" >/dev/null 2>&1 || answer=no
    if [[ "$answer" != "$wanted" ]]; then
        echo "$2: accepted should be $wanted and is $answer"
        status=1
    fi
}
settings_file=$1

expect yes "a good document" <<'END'
```cpp
#include <container/MicroServicesContainer.h>
```
<!-- example good file text.txt -->
```
hello
```
<!-- example good run -->
```sh
cat text.txt
```
<!-- example good output -->
```
hello
```
[this page](page.md)
END
expect no "a block that does not compile" <<'END'
```cpp
#include <container/NoSuchHeader.h>
```
END
expect no "a command that fails" <<'END'
<!-- example bad run -->
```sh
false
true
```
END
expect no "another output" <<'END'
<!-- example bad run -->
```sh
echo one
```
<!-- example bad output -->
```
two
```
END
expect no "an unknown marker" <<'END'
<!-- example bad build -->
```sh
true
```
END
expect no "a link that leads nowhere" <<'END'
[nothing](nothing.md)
END
exit $status
