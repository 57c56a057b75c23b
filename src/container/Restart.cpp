#include "container/MicroServicesContainer.h"
#include "container/ServiceRelease.h"
#include "container/UsingClosure.h"

#include <cstddef>
#include <iterator>

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
        references.clear();
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

    // All are taken out before the first is dropped, since the destructor of a service may call back into the
    // container and change the map. One walk, whatever the number of references.
    std::vector<std::vector<decltype(m_loadedServices)::node_type>> taken(references.size());
    for (auto entry = m_loadedServices.begin(); entry != m_loadedServices.end();) {
        const auto held = entry++;
        const auto position = positions.find(held->second.first);
        if (position != positions.end()) {
            taken[position->second].push_back(m_loadedServices.extract(held));
        }
    }
    for (auto& nodes : taken) {
        for (auto& node : nodes) {
            node = {};
        }
    }
}

} // namespace ostrel::us_container
