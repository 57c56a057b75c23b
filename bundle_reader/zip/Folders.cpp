#include "bundle_reader/zip/Folders.h"

#include "bundle_reader/zip/ZipReader.h"

#include <algorithm>
#include <map>
#include <strings.h>
#include <utility>

namespace ostrel::bundle_reader {
namespace {

constexpr std::size_t allManifestsLimit = 4 * manifestLimit;
constexpr std::uint64_t entryLimit = 0xffff;

/// The case of the file's name does not matter to the framework.
bool isManifest(const std::string& name)
{
    return ::strcasecmp(name.c_str(), "manifest.json") == 0;
}

std::uint64_t sizeOf(const ZipReader& archive, std::uint64_t index, const std::string& entryName)
{
    try {
        return archive.entry(index).size;
    } catch (const ZipFault&) {
        throw ZipFault{"the size of '" + entryName + "' is unknown"};
    }
}

std::string readManifest(const ZipReader& archive, std::uint64_t index, const std::string& entryName, std::size_t limit)
{
    const auto tooLong = [&] {
        return ZipFault{"the manifest '" + entryName + "' is larger than a manifest may be, " +
                        std::to_string(manifestLimit >> 20U) + " MiB, or all of them together than four times that"};
    };
    const std::uint64_t size = sizeOf(archive, index, entryName);
    if (size > limit) {
        throw tooLong();
    }
    std::string text;
    try {
        text = archive.unpack(index, limit);
    } catch (ZipFault& fault) {
        throw ZipFault{"'" + entryName + "' cannot be read: " + std::move(fault.why)};
    }
    if (text.size() > limit) {
        throw tooLong();
    }
    if (text.size() != size) {
        throw ZipFault{"'" + entryName + "' has not the size that the directory says"};
    }
    return text;
}

Folders foldersOf(const ZipReader& archive)
{
    if (archive.count() > entryLimit) {
        throw ZipFault{"it has more than " + std::to_string(entryLimit) + " entries"};
    }
    Folders found;
    std::map<std::string, std::optional<std::string>> folders;
    std::size_t allManifests = 0;
    for (std::uint64_t index = 0; index < archive.count(); ++index) {
        const std::string name = archive.name(index);
        const auto slash = name.find('/');
        if (slash == std::string::npos) {
            found.rootManifest = found.rootManifest || isManifest(name);
            continue;
        }
        auto& manifest = folders[name.substr(0, slash)];
        if (!isManifest(name.substr(slash + 1))) {
            found.moreFiles = found.moreFiles || name.back() != '/';
        } else if (!manifest) {
            manifest = readManifest(archive, index, name, std::min(manifestLimit, allManifestsLimit - allManifests));
            allManifests += manifest->size();
        }
    }
    for (auto& [name, manifest] : folders) {
        found.folders.push_back({name, std::move(manifest)});
    }
    return found;
}

} // namespace

Folders readFolders(const ByteSource& source, std::uint64_t begin, std::uint64_t end)
{
    try {
        return foldersOf(ZipReader{source, begin, end});
    } catch (ZipFault& fault) {
        Folders damaged;
        damaged.damage = std::move(fault.why);
        return damaged;
    }
}

} // namespace ostrel::bundle_reader
