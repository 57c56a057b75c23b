#include "inspection/files/FileFault.h"

#include "bundle_reader/Holding.h"
#include "bundle_reader/elf/FrameworkNeeded.h"
#include "inspection/files/ManifestFault.h"
#include "process/RunningFramework.h"

#include <new>

namespace ostrel::inspection {
namespace {

using bundle_reader::Archive;
using bundle_reader::Contents;
using bundle_reader::Framework;
using bundle_reader::Holding;

std::optional<Finding> damageOf(const std::string& path, const Contents& contents)
{
    if (contents.truncated) {
        return Finding{Code::truncatedLibrary,
                       path,
                       {},
                       "the shared object is truncated",
                       contents.damage,
                       "copy it again, or build it again"};
    }
    if (contents.archive == Archive::damaged) {
        return Finding{Code::damagedArchive,
                       path,
                       {},
                       "the archive in the file is damaged",
                       contents.damage,
                       "build the bundle again, or copy the file again"};
    }
    return std::nullopt;
}

std::optional<Finding> holdingFault(const std::string& path, const Contents& contents)
{
    switch (bundle_reader::holdingOf(contents)) {
    case Holding::bundles:
        break;
    case Holding::neitherLibraryNorArchive:
        return Finding{Code::notABundle,
                       path,
                       {},
                       "the file is no bundle",
                       whyNoBundle(contents),
                       "build it again if it is to be a bundle; else take it out of the directory"};
    case Holding::noArchive:
        return Finding{Code::notABundle,
                       path,
                       {},
                       "the file is no bundle",
                       whyNoBundle(contents),
                       "build it with ostrel_add_bundle()"};
    case Holding::noManifest:
    case Holding::rootManifest:
        return Finding{Code::noManifest,
                       path,
                       {},
                       "the archive in the file holds no manifest of a bundle",
                       whyNoBundle(contents),
                       "put a manifest.json into a folder named like the bundle, as ostrel_add_bundle(... MANIFEST "
                       "...) does, and build the bundle again"};
    }
    return std::nullopt;
}

std::optional<Finding> foreignFault(const std::string& path, const Contents& contents)
{
    const Framework running = process::runningFramework();
    const bundle_reader::BuiltFor foreign = bundle_reader::builtFor(contents.needed, running);
    if (running == Framework::none || foreign.framework == Framework::none) {
        return std::nullopt;
    }
    const std::string embedded = "the embedded framework";
    const std::string installed = "an installed CppMicroServices";
    const bool isEmbedded = running == Framework::embedded;
    const std::string ours = isEmbedded ? "embedded" : "system";
    const std::string other = isEmbedded ? "system" : "embedded";
    return Finding{
        Code::otherFramework,
        path,
        {},
        "the bundle was built for " + (isEmbedded ? installed : embedded),
        "it needs \"" + foreign.needed + "\", but this program runs on " + (isEmbedded ? embedded : installed),
        "build the bundle with OSTREL_FRAMEWORK=" + ours + ", or the program with OSTREL_FRAMEWORK=" + other};
}

std::string remedyFor(const std::error_code& error)
{
    if (error == std::errc::permission_denied) {
        return "give yourself the permission to read it";
    }
    if (error == std::errc::too_many_files_open || error == std::errc::too_many_files_open_in_system) {
        return "let more files be open at once (ulimit -n), or close some";
    }
    if (error == std::errc::filename_too_long) {
        return "give the file a shorter path";
    }
    if (error == std::errc::no_such_file_or_directory) {
        return "it was there a moment ago; run the command again";
    }
    return "check the file and the disk that it lies on";
}

} // namespace

std::string whyNoBundle(const Contents& contents)
{
    switch (bundle_reader::holdingOf(contents)) {
    case Holding::neitherLibraryNorArchive:
        return "it is neither a shared object nor a zip archive";
    case Holding::noArchive:
        return "it is a shared object without an archive";
    case Holding::noManifest:
        return "its archive holds no <symbolic name>/manifest.json";
    case Holding::rootManifest:
        return "the manifest.json in its archive lies in no folder";
    case Holding::bundles:
        break;
    }
    return {};
}

std::optional<Finding> faultOf(const std::string& path, const Contents& contents)
{
    // In the order in which installBundles() looks.
    for (const auto look : {damageOf, holdingFault, foreignFault}) {
        if (auto fault = look(path, contents)) {
            return fault;
        }
    }
    for (const bundle_reader::Folder& folder : contents.folders) {
        if (auto fault = manifestFault(path, folder)) {
            return fault;
        }
    }
    return std::nullopt;
}

Finding unreadable(const std::string& path, const std::error_code& error)
{
    if (error == std::errc::not_enough_memory) {
        throw std::bad_alloc{};
    }
    return {Code::unreadableFile, path, {}, "the file cannot be read", error.message(), remedyFor(error)};
}

} // namespace ostrel::inspection
