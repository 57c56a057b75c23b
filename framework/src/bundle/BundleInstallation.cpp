// Installing: from a file, or from manifests that the caller gives, to bundle records.

#include "bundle/BuiltFor.h"
#include "bundle/BundleRecord.h"
#include "bundle/BundleRegistry.h"
#include "bundle/Manifest.h"
#include "bundle_file/BundleFile.h"
#include "event/Events.h"
#include "framework/FrameworkCore.h"
#include "resource/ResourceFile.h"

#include "cppmicroservices/Constants.h"

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <utility>

namespace cppmicroservices::core {

/// A bundle that may be installed: its name, and its manifest in one of two forms.
struct BundleRegistry::Candidate {
    std::string name;
    std::optional<std::string> text; // from the file; none when the folder has no manifest
    Any given;                       // from the caller; empty when from the file
    std::shared_ptr<ResourceFile const> resources;
};

namespace {

ostrel::bundle_file::Contents read(std::string const& location)
{
    struct stat found = {};
    if (stat(location.c_str(), &found) != 0 && (errno == ENOENT || errno == ENOTDIR)) {
        throw std::runtime_error(location + " does not exist");
    }
    try {
        return ostrel::bundle_file::read(location);
    } catch (std::system_error const&) {
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
    if (contents.archive != ostrel::bundle_file::Archive::readable) {
        throw std::runtime_error("Could not init zip archive for bundle at " + location);
    }
    if (contents.rootManifest) {
        throw std::runtime_error("Invalid zip archive layout for bundle at " + location);
    }
    for (auto& folder : folders) {
        candidates.push_back({std::move(folder.name), std::move(folder.manifest), Any(), resources});
    }
    return candidates;
}

BundleRegistry::Records BundleRegistry::missing(FrameworkCore& core, std::string const& location,
                                                std::vector<Candidate> const& candidates, Records const& present)
{
    Records made;
    for (auto const& candidate : candidates) {
        bool const isPresent = std::any_of(present.begin(), present.end(), [&candidate](Record const& record) {
            return record->name() == candidate.name;
        });
        if (isPresent) {
            continue;
        }
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
        } catch (std::exception const& e) {
            throw std::runtime_error("Failed to install bundle library at " + location + ": " + e.what());
        }
    }
    return made;
}

BundleRegistry::Records BundleRegistry::install(FrameworkCore& core, std::string const& location,
                                                AnyMap const& manifests)
{
    Records result;
    Records made;
    {
        std::lock_guard<std::mutex> const installing(m_installing);
        if (location != Constants::SYSTEM_BUNDLE_LOCATION) {
            result = at(location);
        }
        auto const known = m_folders.find(location);
        if (manifests.empty() && known != m_folders.end() && known->second == result.size()) {
            return result;
        }
        auto const candidates = candidatesIn(location, manifests);
        made = missing(core, location, candidates, result);
        for (auto const& record : made) {
            add(record);
        }
        m_folders[location] = candidates.size();
    }
    for (auto& record : made) {
        core.events().publish(BundleEvent::BUNDLE_INSTALLED, record);
        result.push_back(std::move(record));
    }
    return result;
}

} // namespace cppmicroservices::core
