// Installing: from a file, or from manifests that the caller gives, to bundle records.

#include "bundle/BuiltFor.h"
#include "bundle/BundleRecord.h"
#include "bundle/BundleRegistry.h"
#include "bundle/Manifest.h"
#include "bundle/Program.h"
#include "bundle_reader/BundleFile.h"
#include "event/Events.h"
#include "framework/FrameworkCore.h"
#include "resource/ResourceFile.h"

#include "cppmicroservices/Constants.h"

#include <algorithm>
#include <iterator>
#include <new>
#include <optional>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <utility>

namespace cppmicroservices::detail::core {

/// A bundle that may be installed: its name, and its manifest in one of two forms.
struct BundleRegistry::Candidate {
    std::string name;
    std::optional<std::string> text; // from the file; none when the folder has no manifest
    Any given;                       // from the caller; empty when from the file
    std::shared_ptr<ResourceFile const> resources;
};

namespace {

ostrel::bundle_reader::Contents read(std::string const& location)
{
    struct stat found = {};
    if (stat(location.c_str(), &found) != 0 && (errno == ENOENT || errno == ENOTDIR)) {
        throw std::runtime_error(location + " does not exist");
    }
    try {
        return ostrel::bundle_reader::read(location);
    } catch (std::system_error const& error) {
        if (error.code() == std::errc::not_enough_memory) {
            throw std::bad_alloc();
        }
        // A folder, a file that may not be read: it holds no bundle, and so says the caller.
        return {};
    }
}

} // namespace

std::vector<BundleRegistry::Candidate> BundleRegistry::candidatesIn(std::string const& location,
                                                                    AnyMap const& manifests)
{
    if (location == Constants::SYSTEM_BUNDLE_LOCATION) {
        throw std::runtime_error("'" + location +
                                 "' is the location of the framework itself; "
                                 "nothing can be installed from there.");
    }
    auto contents = read(location);
    refuseForeignLibrary(location, contents.needed);

    auto folders = std::exchange(contents.folders, {});
    auto const resources = std::make_shared<ResourceFile const>(location, contents);
    std::vector<Candidate> candidates;
    if (!manifests.empty()) {
        for (auto const& [name, manifest] : manifests) {
            candidates.push_back({name, std::nullopt, manifest, resources});
        }
        std::sort(candidates.begin(), candidates.end(),
                  [](Candidate const& a, Candidate const& b) { return a.name < b.name; });
        return candidates;
    }
    if (contents.archive != ostrel::bundle_reader::Archive::readable) {
        throw std::runtime_error("Could not init zip archive for bundle at " + location);
    }
    if (folders.empty()) {
        throw std::runtime_error("Invalid zip archive layout for bundle at " + location);
    }
    for (auto& folder : folders) {
        candidates.push_back({std::move(folder.name), std::move(folder.manifest), Any(), resources});
    }
    return candidates;
}

BundleRegistry::Records BundleRegistry::made(FrameworkCore& core, std::string const& location,
                                             std::vector<Candidate> const& candidates)
{
    Records made;
    for (auto const& candidate : candidates) {
        long id = 0;
        {
            std::lock_guard<std::mutex> const lock(m_mutex);
            id = m_nextId++; // used up even if the installation fails
        }
        try {
            AnyMap headers(any_map::UNORDERED_MAP_CASEINSENSITIVE_KEYS);
            if (candidate.text) {
                headers = parseManifest(*candidate.text, candidate.name, location);
            } else if (!candidate.given.Empty()) {
                headers = any_cast<AnyMap>(candidate.given);
            }
            auto const version = checkManifest(headers, candidate.name, location);
            auto record =
                core.makeRecord({id, candidate.name, location, version, std::move(headers), candidate.resources});
            requireNew(*record);
            made.push_back(std::move(record));
        } catch (std::bad_alloc const&) {
            throw; // says nothing about the bundle
        } catch (std::exception const& e) {
            throw std::runtime_error("Failed to install bundle library at " + location + ": " + e.what());
        }
    }
    return made;
}

/// The candidates of those names, in the same order: from the caller's manifests, else from the file; one without a
/// manifest for a name that is in neither.
std::vector<BundleRegistry::Candidate> BundleRegistry::candidatesOf(std::vector<std::string> const& names,
                                                                    std::string const& location,
                                                                    AnyMap const& manifests)
{
    auto candidates = candidatesIn(location, manifests);
    bool const allGiven = std::all_of(names.begin(), names.end(),
                                      [&manifests](std::string const& name) { return manifests.count(name) != 0; });
    if (!manifests.empty() && !allGiven) {
        auto inFile = candidatesIn(location, AnyMap(any_map::UNORDERED_MAP_CASEINSENSITIVE_KEYS));
        std::move(inFile.begin(), inFile.end(), std::back_inserter(candidates));
    }
    std::vector<Candidate> chosen;
    for (auto const& name : names) {
        auto const found = std::find_if(candidates.begin(), candidates.end(),
                                        [&name](Candidate const& candidate) { return candidate.name == name; });
        chosen.push_back(found != candidates.end() ? std::move(*found) : Candidate{name, std::nullopt, Any(), nullptr});
    }
    return chosen;
}

/// @param present the bundles of the location that are installed; has room for those that are added, afterwards
BundleRegistry::Records BundleRegistry::addMissing(FrameworkCore& core, std::string const& location,
                                                   AnyMap const& manifests, Records& present)
{
    std::vector<Candidate> candidates;
    if (present.empty()) {
        candidates = candidatesIn(location, manifests);
    } else {
        std::vector<std::string> absent;
        for (auto const& name : m_names[location]) {
            if (std::none_of(present.begin(), present.end(),
                             [&name](Record const& record) { return record->name() == name; })) {
                absent.push_back(name);
            }
        }
        if (absent.empty()) {
            return {};
        }
        candidates = candidatesOf(absent, location, manifests);
    }
    auto added = made(core, location, candidates);
    std::vector<std::string> names;
    std::transform(candidates.begin(), candidates.end(), std::back_inserter(names),
                   [](Candidate const& candidate) { return candidate.name; });
    auto& known = m_names[location];
    present.reserve(present.size() + added.size());
    addAll(added);
    if (present.empty()) {
        known.swap(names);
    }
    return added;
}

BundleRegistry::Records BundleRegistry::addProgram(FrameworkCore& core)
{
    if (!programHoldsBundles()) {
        return {};
    }
    std::lock_guard<std::mutex> const installing(m_installing);
    Records none;
    return addMissing(core, programFile(), AnyMap(any_map::UNORDERED_MAP_CASEINSENSITIVE_KEYS), none);
}

BundleRegistry::Records BundleRegistry::install(FrameworkCore& core, std::string const& location,
                                                AnyMap const& manifests)
{
    Records result;
    Records added;
    {
        std::lock_guard<std::mutex> const installing(m_installing);
        if (location != Constants::SYSTEM_BUNDLE_LOCATION) {
            result = at(location);
        }
        added = addMissing(core, location, manifests, result);
    }
    for (auto& record : added) {
        core.events().publish(BundleEvent::BUNDLE_INSTALLED, record);
        result.push_back(std::move(record));
    }
    return result;
}

} // namespace cppmicroservices::detail::core
