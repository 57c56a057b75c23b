// Any bytes as a bundle file: shared objects, archives, both, and what is neither.
#include "bundle_reader/BundleFile.h"
#include "fuzz/FuzzTarget.h"

#include <algorithm>

using namespace ostrel;
using namespace ostrel::bundle_reader;

namespace {

void checkFolders(const Contents& contents)
{
    const auto& folders = contents.folders;
    std::size_t all = 0;
    for (const Folder& folder : folders) {
        fuzz::require(folder.name.find('/') == std::string::npos, "a folder's name holds no slash");
        if (folder.manifest) {
            fuzz::require(folder.manifest->size() <= manifestLimit, "a manifest is no larger than its limit");
            all += folder.manifest->size();
        }
    }
    fuzz::require(all <= 4 * manifestLimit, "all manifests together are no larger than their limit");
    fuzz::require(std::adjacent_find(folders.begin(), folders.end(),
                                     [](const Folder& l, const Folder& r) { return l.name >= r.name; }) ==
                      folders.end(),
                  "folders are in ascending order, without doubles");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const Contents contents = inspect(fuzz::textOf(data, size));
    const bool faulty = contents.truncated || contents.archive == Archive::damaged;
    fuzz::require(faulty != contents.damage.empty(), "a reason is given for damage and for nothing else");
    fuzz::require(contents.format == Format::elf || (contents.needed.empty() && !contents.truncated),
                  "only a shared object needs libraries or is truncated");
    fuzz::require(!contents.truncated || contents.archive == Archive::none, "a truncated file has no archive");
    fuzz::require(contents.archive == Archive::readable || (contents.folders.empty() && !contents.rootManifest),
                  "only a readable archive holds anything");
    checkFolders(contents);
    return 0;
}
