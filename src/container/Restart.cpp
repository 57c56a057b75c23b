#include "container/MicroServicesContainer.h"
#include "container/ServiceRelease.h"
#include "container/UsingClosure.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace ostrel::us_container {

using cppmicroservices::Bundle;
using cppmicroservices::ServiceReference;
using cppmicroservices::ServiceReferenceBase;

// KEPT ON PURPOSE: one string in two roles. The framework takes it as a location, stopBundle() and startBundle() take
// it as a name.
void MicroServicesContainer::restartBundle(const std::string& location)
{
    std::unique_lock lock{m_mutex};
    for (const Bundle& bundle : m_context.GetBundles(location)) {
        if (!bundle) {
            continue;
        }
        std::vector<ServiceReference<void>> references = servicesReachedFrom(bundle);
        releaseHeld(references);

        lock.unlock();
        for (ServiceReference<void>& reference : references) {
            releaseLogged(location, [&reference] { reference = ServiceReference<void>{}; });
        }
        lock.lock();

        stopBundle(location);
        startBundle(location);
        loadServices(loadedServiceNames());
    }
}

/// Lets go of every entry of the given references, under the caller's lock: reference by reference in their order, and
/// in the map's order among the entries of one reference. Names stay recorded.
void MicroServicesContainer::releaseHeld(const std::vector<ServiceReference<void>>& references)
{
    std::unordered_map<ServiceReferenceBase, std::size_t> positions;
    for (std::size_t i = 0; i < references.size(); ++i) {
        positions.emplace(references[i], i);
    }

    // One walk, whatever the number of references.
    using Entry = decltype(m_loadedServices)::const_iterator;
    std::vector<std::pair<std::size_t, Entry>> held;
    for (Entry entry = m_loadedServices.begin(); entry != m_loadedServices.end(); ++entry) {
        const auto position = positions.find(entry->second.first);
        if (position != positions.end()) {
            held.emplace_back(position->second, entry);
        }
    }
    std::stable_sort(held.begin(), held.end(), [](const auto& a, const auto& b) { return a.first < b.first; });

    // All are taken out before the first is dropped, since the destructor of a service may call back into the
    // container and change the map. From here on no memory is needed: all are released, or none.
    std::vector<decltype(m_loadedServices)::node_type> taken;
    taken.reserve(held.size());
    for (const auto& [position, entry] : held) {
        taken.push_back(m_loadedServices.extract(entry));
    }
    for (auto& node : taken) {
        node = {};
    }
}

} // namespace ostrel::us_container
