#include "container/MicroServicesContainer.h"
#include "container/Record.h"
#include "container/ServiceRelease.h"
#include "container/ServiceWalk.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <set>
#include <utility>

namespace ostrel::us_container {

using cppmicroservices::ServiceReference;
using cppmicroservices::ServiceReferenceBase;

void MicroServicesContainer::loadService(const std::string& name)
{
    const std::lock_guard lock{m_mutex};

    const bool isFilter = !name.empty() && name.front() == '(';
    const std::vector<ServiceReference<void>> found =
        isFilter ? m_context.GetServiceReferences("", name) : m_context.GetServiceReferences(name, "");

    // Made before the first service is held: what is held without its name would not be unloaded.
    std::set<std::string> newName;
    for (const ServiceReference<void>& reference : found) {
        if (!isHeld(name, reference)) {
            newName.insert(name);
            m_loadedServices.emplace(name, LoadedService{reference, m_context.GetService(reference)});
        }
    }
    if (!newName.empty()) {
        m_loadedServiceNames.merge(newName); // needs no memory
        OSTREL_RECORD(messages::loadedServices, name);
    }
}

void MicroServicesContainer::loadServices(const std::vector<std::string>& names)
{
    const std::lock_guard lock{m_mutex};
    for (const std::string& name : names) {
        loadService(name);
    }
}

void MicroServicesContainer::loadAllServices()
{
    const std::lock_guard lock{m_mutex};
    loadServices(serviceNamesOf(m_context, m_startedBundles, [](const ServiceReferenceBase&) { return true; }));
}

void MicroServicesContainer::unloadService(const std::string& name)
{
    std::vector<LoadedService> released;
    {
        const std::lock_guard lock{m_mutex};
        const auto [first, last] = m_loadedServices.equal_range(name);
        released.reserve(static_cast<std::size_t>(std::distance(first, last))); // all are taken out, or none
        for (auto entry = first; entry != last;) {
            released.push_back(entry->second);
            entry = m_loadedServices.erase(entry);
        }
        m_loadedServiceNames.erase(name);
    }

    // Without the lock: destructors of services may call back, from this thread or while others wait for the mutex.
    for (LoadedService& service : released) {
        releaseLogged(name, [&service] { service = LoadedService{}; });
    }
}

void MicroServicesContainer::unloadServices(const std::vector<std::string>& names)
{
    // By index and by copy, since a service's destructor may reach the list that it stands in.
    for (std::size_t i = 0; i < names.size(); ++i) { // NOLINT(modernize-loop-convert): as said above
        const std::string name = names[i]; // NOLINT(performance-unnecessary-copy-initialization): as said above
        unloadService(name);
    }
}

void MicroServicesContainer::unloadAllServices()
{
    std::vector<std::string> names;
    {
        const std::lock_guard lock{m_mutex};
        names = loadedServiceNames();
    }
    // As unloadServices() does, less its copies: nobody else reaches this list.
    for (const std::string& name : names) {
        unloadService(name);
    }
}

std::vector<std::string> MicroServicesContainer::listManuallyLoadedBundles() const
{
    const std::lock_guard lock{m_mutex};
    std::vector<std::string> locations;
    for (const auto& [name, location] : m_startedBundles) {
        locations.push_back(location);
    }
    return locations;
}

std::vector<std::string> MicroServicesContainer::listManuallyLoadedServices() const
{
    const std::lock_guard lock{m_mutex};
    std::vector<std::string> classes;
    for (const auto& [name, service] : m_loadedServices) {
        classes.push_back(service.first.GetProperty("objectclass").ToString());
    }
    return classes;
}

bool MicroServicesContainer::isHeld(const std::string& name, const ServiceReferenceBase& reference) const
{
    const auto [first, last] = m_loadedServices.equal_range(name);
    return std::any_of(first, last, [&reference](const auto& entry) { return entry.second.first == reference; });
}

} // namespace ostrel::us_container
