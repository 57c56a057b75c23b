#!/usr/bin/env bash
# layers_test.sh SCRATCH: layers.sh must refuse each of these lines, and only these.
set -euo pipefail
here=$(cd -- "$(dirname -- "$0")" && pwd)
tree=$1/layers_tree
status=0

# expect yes|no FILE LINE
expect() {
    local wanted=$1 file=$2 line=$3 answer=yes
    rm -rf "$tree"
    mkdir -p "$tree/$(dirname "$file")"
    printf '%s\n' "$line" >"$tree/$file"
    bash "$here/layers.sh" "$tree" >/dev/null || answer=no
    if [[ "$answer" != "$wanted" ]]; then
        echo "$file with '$line': allowed should be $wanted and is $answer"
        status=1
    fi
}

expect no include/container/A.h '#include <boost/log/core.hpp>'
expect no include/container/A.h '#include "container/../../src/container/Record.h"'
expect no src/container/A.cpp '#include "../framework/src/bundle/Registry.h"'
expect no src/container/A.cpp '    std::cout << 1;'
expect no src/platform/A.cpp '#include "container/MicroServicesContainer.h"'
expect no src/container/A.cpp '#include "inspection/FilterExplanation.h"'
expect yes src/container/A.cpp '#include "filtering/Decision.h"'
expect no src/filtering/A.cpp '#include "container/Record.h"'
expect no inspection/A.cpp '#include "container/Record.h"'
expect yes inspection/filter/A.cpp '#include "filtering/Decision.h"'
expect no inspection/filter/A.cpp '#include "inspection/files/Survey.h"'
expect yes inspection/start/A.cpp '#include "inspection/files/Survey.h"'
expect no inspection/start/A.cpp '#include "inspection/writers/Values.h"'
expect no inspection/A.cpp '#include "bundle_reader/BundleFile.h"'
expect no include/inspection/A.h '#include "filtering/Decision.h"'
expect no src/platform/A.cpp '#include <boost/locale.hpp>'
expect no framework/src/A.cpp '#include <boost/log/core.hpp>'
expect no framework/src/A.cpp '#include "platform/Utf16Path.h"'
expect no framework/include/cppmicroservices/A.h '#include <rapidjson/document.h>'
for file in src/platform/A.cpp framework/src/A.cpp framework/tools/A.cpp bundle_reader/A.cpp bench/A.cpp; do
    expect no $file '#include <rapidjson/document.h>'
done
expect no bundle_reader/A.cpp '#include "platform/Utf16Path.h"'
expect no bundle_reader/A.cpp '#include <zip.h>'
expect no bundle_reader/file/A.cpp '#include "bundle_reader/elf/Elf.h"'
expect no bundle_reader/zip/A.cpp '#include "bundle_reader/BundleFile.h"'
expect no bundle_reader/elf/A.cpp '#include <zip.h>'
expect no bundle_reader/zip/A.cpp '#include <rapidjson/reader.h>'
expect no bundle_reader/other/A.cpp '#include <vector>'
expect no bundle_checker/A.cpp '#include <rapidjson/document.h>'
expect no bundle_checker/A.cpp '#include <cppmicroservices/Bundle.h>'
expect no bundle_checker/A.cpp '#include "platform/Utf16Path.h"'
expect no bundle_reader/A.cpp '#include "bundle_checker/Finding.h"'
expect no tools/host/A.cpp '#include "container/Record.h"'
expect no tools/host/frame/A.cpp '#include "hosting/Start.h"'
expect no tools/host/hosting/A.cpp '#include "commands/Run.h"'
expect no inspection/A.cpp '#include "platform/InstallBundles.h"'
expect no examples/A.cpp '#include "bundle_reader/elf/Elf.h"'
expect no tests/contract/A.cpp '#include "container/MicroServicesContainer.h"'
expect yes include/container/A.h '#include <vector>'
expect yes src/platform/A.cpp '#include <boost/locale/encoding_utf.hpp>'
expect yes bundle_reader/zip/A.cpp '#include <zip.h>'
expect yes bundle_reader/zip/A.cpp '#include "bundle_reader/file/ByteSource.h"'
expect yes bundle_reader/manifest/A.cpp '#include <rapidjson/reader.h>'
expect yes bundle_reader/A.cpp '#include "bundle_reader/zip/Folders.h"'
expect yes bundle_checker/A.cpp '#include "bundle_reader/manifest/Json.h"'
expect yes tools/host/A.cpp '#include <CLI/CLI.hpp>'
expect yes tools/host/commands/A.cpp '#include "hosting/Start.h"'
expect yes tools/host/hosting/A.cpp '#include "frame/Problem.h"'
exit $status
