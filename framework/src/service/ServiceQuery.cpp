// Finding services.

#include "ldap/FilterAccess.h"
#include "service/ServiceRegistry.h"

#include "cppmicroservices/LDAPFilter.h"

#include <mutex>
#include <utility>

namespace cppmicroservices::detail::core {

ServiceRegistry::References ServiceRegistry::find(std::string const& className, std::string const& filter) const
{
    if (filter.empty()) {
        std::lock_guard<std::mutex> const lock(m_mutex);
        return className.empty() ? m_index.all() : m_index.ofClass(className);
    }
    auto condition = m_filters.find(filter);
    if (!condition) {
        if (!className.empty()) {
            std::lock_guard<std::mutex> const lock(m_mutex);
            if (!m_index.hasClass(className)) {
                return {}; // and the filter, which may be malformed, is not looked at
            }
        }
        condition = m_filters.parse(filter);
    }
    auto const& required = detail::ldap::FilterAccess::requirements(condition);
    if (required.serviceId) {
        std::vector<ServiceIndex::Offered> withId;
        {
            std::lock_guard<std::mutex> const lock(m_mutex);
            withId = m_index.withId(*required.serviceId, className);
        }
        return matching(withId, condition, className);
    }
    ServiceIndex::Offer offer;
    {
        std::lock_guard<std::mutex> const lock(m_mutex);
        if (!className.empty()) {
            offer = m_index.offerOfClass(className);
        } else if (required.classes) {
            offer = m_index.offerOfClasses(*required.classes);
        } else {
            offer = m_index.offerOfAll();
        }
    }
    return offer ? matching(offer->services, condition, className) : References();
}

ServiceRegistry::References ServiceRegistry::matching(std::vector<ServiceIndex::Offered> const& offered,
                                                      LDAPFilter const& condition, std::string const& className)
{
    References result;
    for (auto const& [reference, properties] : offered) {
        if (detail::ldap::FilterAccess::matches(condition, *properties)) {
            // A class that only the filter names does not make the references ones for that class.
            bool const asked = reference->interfaceId == className;
            result.push_back(
                asked ? reference : std::make_shared<ReferenceData const>(ReferenceData{reference->record, className}));
        }
    }
    return result;
}

ServiceRegistry::Reference ServiceRegistry::best(std::string const& className) const
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    return className.empty() ? m_index.first() : m_index.bestOf(className);
}

ServiceRegistry::References ServiceRegistry::registeredBy(BundleRecord const& bundle) const
{
    std::lock_guard<std::mutex> const lock(m_mutex);
    return m_index.registeredBy(bundle);
}

} // namespace cppmicroservices::detail::core
