#include "platform/BundleFileCheck.h"

#include "bundle_reader/Holding.h"
#include "bundle_reader/elf/FrameworkNeeded.h"
#include "platform/InstallError.h"
#include "platform/ManifestCheck.h"
#include "process/RunningFramework.h"

#include <new>
#include <system_error>
#include <type_traits>

namespace ostrel::platform {
namespace {

using bundle_reader::Archive;
using bundle_reader::Contents;
using bundle_reader::Folder;
using bundle_reader::Framework;

std::string quoted(const std::string& text)
{
    return "'" + text + "'";
}

/// Calls `otherwise(error)` when the file cannot be read.
template <class Otherwise>
std::invoke_result_t<Otherwise, const std::system_error&> read(const std::string& path, Otherwise otherwise)
{
    try {
        return bundle_reader::read(path);
    } catch (const std::system_error& error) {
        if (error.code() == std::errc::not_enough_memory) {
            throw std::bad_alloc{};
        }
        return otherwise(error);
    }
}

void refuseBroken(const std::string& path, const Contents& contents)
{
    if (contents.truncated) {
        failInstall("the shared object " + quoted(path) + " is truncated (" + contents.damage +
                    "); build the bundle again");
    }
    if (contents.archive == Archive::damaged) {
        failInstall("the archive in " + quoted(path) + " is damaged (" + contents.damage + "); build the bundle again");
    }
}

/// Why the file is no bundle.
std::string told(bundle_reader::Holding holding, const std::string& path)
{
    using bundle_reader::Holding;
    const std::string noManifest = "the archive in " + quoted(path) + " holds no manifest (";
    switch (holding) {
    case Holding::neitherLibraryNorArchive:
        return quoted(path) + " is no bundle: it is neither a shared object nor a zip archive";
    case Holding::noArchive:
        return "the shared object " + quoted(path) +
               " holds no archive and so no bundle; build it with ostrel_add_bundle()";
    case Holding::rootManifest:
        return noManifest + "its manifest.json lies in no folder, but must lie in one named like the bundle); build "
                            "the bundle again with a manifest";
    case Holding::noManifest:
        return noManifest + "no <symbolic name>/manifest.json); build the bundle again with a manifest";
    case Holding::bundles:
        break;
    }
    return {};
}

void refuseForeign(const std::string& path, const Contents& contents)
{
    const Framework running = process::runningFramework();
    const bundle_reader::BuiltFor foreign = bundle_reader::builtFor(contents.needed, running);
    if (running == Framework::none || foreign.framework == Framework::none) {
        return;
    }
    const std::string bundle = "the bundle " + quoted(path) + " was built for ";
    const std::string needs = " (it needs " + quoted(foreign.needed) + ")";
    if (running == Framework::embedded) {
        failInstall(bundle + "an installed CppMicroServices" + needs +
                    ", but this program runs on the embedded framework; build the bundle with "
                    "OSTREL_FRAMEWORK=embedded, or the program with OSTREL_FRAMEWORK=system");
    }
    failInstall(bundle + "the embedded framework" + needs +
                ", but this program runs on an installed CppMicroServices; build the bundle with "
                "OSTREL_FRAMEWORK=system, or the program with OSTREL_FRAMEWORK=embedded");
}

BundleIdentity identityOf(const std::string& path, const Folder& folder)
{
    if (!folder.manifest) {
        failInstall("the folder " + quoted(folder.name) + " in the archive of " + quoted(path) +
                    " has no manifest.json; each folder is one bundle and needs one");
    }
    ManifestCheck check = checkManifest(*folder.manifest);
    if (!check.fault.empty()) {
        failInstall("the manifest of the bundle " + quoted(folder.name) + " in " + quoted(path) +
                    " is not valid JSON of an object (" + check.fault + "); correct it and build the bundle again");
    }
    return {folder.name, std::move(check.version)};
}

} // namespace

Contents readBundleFile(const std::string& path)
{
    return read(path, [&path](const std::system_error& error) -> Contents {
        failInstall(quoted(path) + " cannot be read: " + error.code().message() +
                    "; check the file and its permissions");
    });
}

std::optional<Contents> readIfFile(const std::string& path)
{
    return read(path, [](const std::system_error&) -> std::optional<Contents> { return std::nullopt; });
}

std::vector<BundleIdentity> bundlesIn(const std::string& path, const Contents& contents, FileRole role)
{
    refuseBroken(path, contents);

    const bundle_reader::Holding holding = bundle_reader::holdingOf(contents);
    if (holding != bundle_reader::Holding::bundles) {
        if (role == FileRole::named || !bundle_reader::isPassedOver(path, contents)) {
            failInstall(told(holding, path));
        }
        return {};
    }

    refuseForeign(path, contents);
    std::vector<BundleIdentity> bundles;
    for (const Folder& folder : contents.folders) {
        bundles.push_back(identityOf(path, folder));
    }
    return bundles;
}

} // namespace ostrel::platform
