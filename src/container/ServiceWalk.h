#pragma once

#include <cppmicroservices/Any.h>
#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/ServiceReference.h>

#include <string>
#include <unordered_map>
#include <vector>

namespace ostrel::us_container {

/// The service's id as the framework writes it.
inline std::string serviceIdText(const cppmicroservices::ServiceReferenceBase& reference)
{
    return reference.GetProperty("service.id").ToString();
}

/// Walks all services of the started bundles and names those that `isAdmitted` lets through "(service.id=N)".
///
/// Nothing is loaded meanwhile, so the names are those of the services at hand. A location recorded under two names
/// contributes its services twice. An invalid context has no services.
///
/// @throws what the framework and `isAdmitted` throw
template <typename Predicate>
std::vector<std::string> serviceNamesOf(cppmicroservices::BundleContext& context,
                                        const std::unordered_map<std::string, std::string>& startedBundles,
                                        Predicate isAdmitted)
{
    std::vector<std::string> names;
    if (!context) {
        return names;
    }
    for (const auto& [name, location] : startedBundles) {
        for (const cppmicroservices::Bundle& bundle : context.GetBundles(location)) {
            for (const auto& reference : bundle.GetRegisteredServices()) {
                if (isAdmitted(reference)) {
                    names.push_back("(service.id=" + serviceIdText(reference) + ")");
                }
            }
        }
    }
    return names;
}

} // namespace ostrel::us_container
