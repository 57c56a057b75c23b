#!/usr/bin/env bash
# layers.sh ROOT: every #include of the folders below must be one that the folder's layer allows.
set -euo pipefail
cd -- "$1"

# Headers of the standard library have neither a directory nor a suffix; those of C and POSIX are named.
std='<[a-z_]+>'
posix='<(cassert|dirent|dlfcn|elf|errno|fcntl|getopt|link|limits|pthread|sched|setjmp|signal|stdlib|string|strings|time|unistd|unwind|cxxabi)\.h>|<sys/[a-z]+\.h>'
framework_api='[<"]cppmicroservices/[A-Za-z/]+\.h[>"]'
boost_log='<boost/log/[a-z_/]+\.hpp>'
wrong=0

# check DIRECTORY ALLOWED OWN...: OWN are directories in which a header named in quotes may lie. With `depth` set, the
# folders in it are left out.
depth=()
check() {
    local directory=$1 allowed=$2 file include name own found
    shift 2
    [[ -d "$directory" ]] || return 0
    while IFS= read -r -d '' file; do
        while IFS= read -r include; do
            [[ "$include" =~ ^($allowed)$ ]] && continue
            found=0
            if [[ "$include" == \"* ]]; then
                name=${include//\"/}
                for own in "$(dirname "$file")" "$@"; do
                    if [[ -f "$own/$name" ]]; then found=1; fi
                done
            fi
            if [[ $found == 0 ]]; then
                echo "$file includes $include, which its layer does not allow"
                wrong=1
            fi
        done < <(sed -nE 's/^[[:space:]]*#[[:space:]]*include[[:space:]]*(<[^>]*>|"[^"]*").*/\1/p' "$file")
    done < <(find "$directory" "${depth[@]}" -type f \( -name '*.h' -o -name '*.cpp' \) -print0)
}

# only DIRECTORY FOLDERS: no other folder lies there, as it would have no layer. FOLDERS is "one|other".
only() {
    local folder
    for folder in "$1"/*/; do
        if [[ -d "$folder" && ! "$folder" =~ ^$1/($2)/$ ]]; then
            echo "$folder has no layer; give it one in this file"
            wrong=1
        fi
    done
}

public_platform='"platform/(Utf16Path|DiagnosticLogger|InstallBundles|Export)\.h"'
check include/container "$std|$framework_api|$public_platform|\"container/[A-Za-z]+\.h\""
check src/container "$std|<cxxabi\.h>|$framework_api|$boost_log|\"(container|filtering|platform)/[A-Za-z0-9]+\.h\""
check src/filtering "$std|$framework_api|\"filtering/[A-Za-z]+\.h\""
# What explains the container knows its public face, the rule by which it decides, and the reader of bundle files.
check include/inspection "$std|$framework_api|<(container|platform)/[A-Za-z0-9]+\.h>|\"inspection/[A-Za-z]+\.h\""
# Its floors, each with those below it; the public headers may be included from all of them.
explains="$std|$posix|$framework_api|<(container|platform)/[A-Za-z0-9]+\.h>|\"inspection/[A-Z][A-Za-z]+\.h\"|\"text/[A-Za-z0-9]+\.h\""
reads='"bundle_(reader|checker)/([a-z]+/)?[A-Za-z0-9]+\.h"'
check inspection/filter "$explains|\"(filtering|inspection/filter)/[A-Za-z]+\.h\""
check inspection/json "$explains|$reads|\"inspection/json/[A-Za-z]+\.h\""
check inspection/files "$explains|$reads|<openssl/[a-z]+\.h>|\"(process|inspection/(filter|json|files))/[A-Za-z0-9]+\.h\""
check inspection/start "$explains|$reads|\"inspection/(filter|json|files|start)/[A-Za-z0-9]+\.h\""
check inspection/writers "$explains|$reads|\"inspection/(filter|json|start|writers)/[A-Za-z0-9]+\.h\""
depth=(-maxdepth 1)
check inspection "$explains"
depth=()
only inspection "filter|json|files|start|writers|schemas"
check src/process "$std|$posix|$framework_api|\"process/[A-Za-z]+\.h\"|\"bundle_reader/elf/FrameworkNeeded\.h\""
check src/platform "$std|$posix|$framework_api|$boost_log|<boost/locale/(encoding_)?utf\.hpp>|\"(platform|process)/[A-Za-z0-9]+\.h\"|\"bundle_reader/([a-z]+/)?[A-Za-z0-9]+\.h\""
# The reader of bundle files: its folders, each with those below it. libzip is used in one of them, RapidJSON in another.
reader_file='"bundle_reader/file/[A-Za-z0-9]+\.h"'
check bundle_reader/file "$std|$posix|<linux/openat2\.h>|$reader_file"
check bundle_reader/elf "$std|$posix|$reader_file|\"bundle_reader/elf/[A-Za-z0-9]+\.h\""
check bundle_reader/zip "$std|$posix|$reader_file|<zip\.h>|\"bundle_reader/zip/[A-Za-z0-9]+\.h\""
check bundle_reader/manifest "$std|$posix|<rapidjson/[a-z/]+\.h>|\"bundle_reader/manifest/[A-Za-z0-9]+\.h\""
depth=(-maxdepth 1)
check bundle_reader "$std|\"bundle_reader/([a-z]+/)?[A-Za-z0-9]+\.h\""
depth=()
only bundle_reader "file|elf|zip|manifest"
check text "$std|\"text/[A-Za-z0-9]+\.h\""
check bundle_checker "$std|$posix|\"text/[A-Za-z0-9]+\.h\"|\"bundle_(checker|reader)/([a-z]+/)?[A-Za-z0-9]+\.h\""
check framework/include "$std|$framework_api"
check framework/src "$std|$posix|$framework_api|\"bundle_reader/([a-z]+/)?[A-Za-z0-9]+\.h\"" framework/src
check framework/tools "$std|$posix|\"bundle_reader/([a-z]+/)?[A-Za-z0-9]+\.h\""
installed="[<\"](container|platform)/(MicroServicesContainer|DiagnosticLog|Utf16Path|DiagnosticLogger|InstallBundles)\.h[>\"]"
explained='<inspection/[A-Za-z]+\.h>'
boost_for_hosts="$boost_log|<boost/((core|smart_ptr)/[a-z_]+|make_shared|shared_ptr)\.hpp>"
# The tool: its floors, each with those below it.
outside="$std|$posix|$framework_api|$installed|$explained|$boost_for_hosts|<CLI/[A-Za-z]+\.hpp>"
check tools/host/frame "$outside|\"frame/[A-Za-z]+\.h\""
check tools/host/watch "$outside|\"(frame|watch)/[A-Za-z]+\.h\""
check tools/host/hosting "$outside|\"(frame|hosting)/[A-Za-z]+\.h\""
check tools/host/commands "$outside|\"(frame|watch|hosting|commands)/[A-Za-z]+\.h\""
depth=(-maxdepth 1)
check tools/host "$outside" tools/host
depth=()
only tools/host "frame|watch|hosting|commands"
check examples "$std|$posix|$framework_api|$installed|$boost_for_hosts|<CLI/[A-Za-z]+\.hpp>|<text/[A-Za-z]+\.h>"
# The contract tests run on a bare framework; the archives that it reads are made with libzip.
check tests/contract "$std|$posix|$framework_api|<zip\.h>|<(gtest|gmock)/[a-z]+\.h>|\"support/[A-Za-z0-9]+\.h\"" tests/contract tests

# JSON is read and written in one place; tests may look at it by themselves.
readers=$(grep -rlE '#[[:space:]]*include[[:space:]]*[<"]rapidjson/' --include='*.h' --include='*.cpp' \
    --exclude-dir=build --exclude-dir=tests . | grep -v '^./bundle_reader/manifest/' || true)
if [[ -n "$readers" ]]; then
    echo "rapidjson is included outside of bundle_reader/manifest:"
    echo "$readers"
    wrong=1
fi

# Standard output belongs to the console reports; comments may mention it.
writers=$(grep -rnE '<iostream>|std::(cout|puts|printf)' src/container src/platform include 2>/dev/null |
    grep -vE '^src/container/ConsoleReports.cpp:|^[^:]*:[0-9]+: *//' || true)
if [[ -n "$writers" ]]; then
    echo "standard output is used outside of ConsoleReports.cpp:"
    echo "$writers"
    wrong=1
fi
exit $wrong
