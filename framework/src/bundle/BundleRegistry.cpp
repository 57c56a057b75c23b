#include "bundle/BundleRegistry.h"

#include "bundle/BundleRecord.h"

#include <iterator>
#include <stdexcept>

namespace cppmicroservices::detail::core {

void BundleRegistry::open(Record const& systemBundle)
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    if (m_byId.count(systemBundle->id()) == 0) {
        addLocked(systemBundle);
    }
    m_open = true;
    m_nextId = 1;
}

BundleRegistry::ByLocation BundleRegistry::close() noexcept
{
    ByLocation left; // so that the records go after the lock
    std::lock_guard<std::mutex> const installing(m_installing);
    std::lock_guard<std::mutex> const lock(m_mutex);
    m_open = false;
    left.swap(m_byLocation);
    m_byId.clear();
    m_byName.clear();
    m_names.clear();
    return left;
}

BundleRegistry::Records BundleRegistry::all() const
{
    Records result;
    std::lock_guard<std::mutex> const lock(m_mutex);
    result.reserve(m_byLocation.size());
    for (auto const& entry : m_byLocation) {
        result.push_back(entry.second);
    }
    return result;
}

BundleRegistry::Records BundleRegistry::at(std::string const& location) const
{
    Records result;
    std::lock_guard<std::mutex> const lock(m_mutex);
    auto const [begin, end] = m_byLocation.equal_range(location);
    for (auto entry = begin; entry != end; ++entry) {
        result.push_back(entry->second);
    }
    return result;
}

BundleRegistry::Record BundleRegistry::withId(long id) const
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    auto const found = m_byId.find(id);
    return found != m_byId.end() ? found->second : nullptr;
}

BundleRegistry::Record BundleRegistry::before(BundleRecord const* bundle) const
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    auto at = m_byLocation.end();
    if (bundle != nullptr) {
        // Those of one location lie in the order of their ids.
        at = m_byLocation.lower_bound(bundle->location());
        while (at != m_byLocation.end() && at->first == bundle->location() && at->second->id() < bundle->id()) {
            ++at;
        }
    }
    return at != m_byLocation.begin() ? std::prev(at)->second : nullptr;
}

void BundleRegistry::addLocked(Record const& bundle)
{
    try {
        m_byLocation.emplace(bundle->location(), bundle);
        m_byId.emplace(bundle->id(), bundle);
        m_byName.emplace(bundle->name(), bundle);
    } catch (...) {
        removeLocked(*bundle);
        throw;
    }
}

void BundleRegistry::addAll(Records const& bundles)
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    if (!m_open) {
        throw std::runtime_error("The bundle context is no longer valid");
    }
    try {
        for (auto const& bundle : bundles) {
            addLocked(bundle);
        }
    } catch (...) {
        // All or none: a later attempt takes a location with one of its bundles for installed.
        for (auto const& bundle : bundles) {
            removeLocked(*bundle);
        }
        throw;
    }
}

void BundleRegistry::remove(BundleRecord const& bundle)
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    removeLocked(bundle);
}

void BundleRegistry::removeLocked(BundleRecord const& bundle)
{
    auto const isIt = [&bundle](auto const& entry) { return entry.second.get() == &bundle; };
    auto const eraseFrom = [&isIt](auto& map, std::string const& key) {
        auto const [begin, end] = map.equal_range(key);
        for (auto entry = begin; entry != end; ++entry) {
            if (isIt(*entry)) {
                map.erase(entry);
                return;
            }
        }
    };
    eraseFrom(m_byLocation, bundle.location());
    eraseFrom(m_byName, bundle.name());
    m_byId.erase(bundle.id());
}

void BundleRegistry::requireNew(BundleRecord const& bundle) const
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    auto const [begin, end] = m_byName.equal_range(bundle.name());
    for (auto entry = begin; entry != end; ++entry) {
        if (entry->second->version() == bundle.version()) {
            throw std::runtime_error(bundle.text() +
                                     ", a bundle with same symbolic name and version is already installed (" +
                                     bundle.name() + ", " + bundle.version().ToString() + ")");
        }
    }
}

} // namespace cppmicroservices::detail::core
