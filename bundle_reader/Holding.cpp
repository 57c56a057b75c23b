#include "bundle_reader/Holding.h"

#include <algorithm>

namespace ostrel::bundle_reader {
namespace {

bool endsInSo(std::string_view name)
{
    constexpr std::string_view suffix{".so"};
    return name.size() >= suffix.size() && name.substr(name.size() - suffix.size()) == suffix;
}

} // namespace

Holding holdingOf(const Contents& contents)
{
    if (contents.format == Format::other) {
        return Holding::neitherLibraryNorArchive;
    }
    if (contents.archive == Archive::none) {
        return Holding::noArchive;
    }
    const bool hasManifest = std::any_of(contents.folders.begin(), contents.folders.end(),
                                         [](const Folder& folder) { return folder.manifest.has_value(); });
    if (hasManifest) {
        return Holding::bundles;
    }
    return contents.rootManifest ? Holding::rootManifest : Holding::noManifest;
}

bool isPassedOver(std::string_view name, const Contents& contents)
{
    if (contents.truncated || contents.archive == Archive::damaged) {
        return false;
    }
    const Holding holding = holdingOf(contents);
    return holding != Holding::bundles && (holding == Holding::noArchive || !endsInSo(name));
}

} // namespace ostrel::bundle_reader
