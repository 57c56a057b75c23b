#include "hosting/LoadCandidates.h"

#include <map>
#include <string>

namespace ostrel::host {

using cppmicroservices::Bundle;
using cppmicroservices::ServiceReferenceU;

std::vector<ServiceReferenceU> loadCandidates(const cppmicroservices::BundleContext& context,
                                              const InstalledBundles& bundles, const inspection::Plan& plan)
{
    // As the container records them: under the component name, where of two the later one stays.
    std::map<std::string, std::string> locations;
    for (const inspection::PlannedBundle& planned : plan.bundles) {
        const Bundle bundle = planned.outcome == inspection::Outcome::start ? bundles.of(planned) : Bundle{};
        if (bundle && bundle.GetState() == Bundle::STATE_ACTIVE) {
            locations[planned.componentName.value_or("")] = bundle.GetLocation();
        }
    }
    std::map<long, ServiceReferenceU> services;
    for (const auto& entry : locations) {
        for (const Bundle& bundle : context.GetBundles(entry.second)) {
            for (const ServiceReferenceU& service : bundle.GetRegisteredServices()) {
                services.emplace(cppmicroservices::any_cast<long>(service.GetProperty("service.id")), service);
            }
        }
    }
    std::vector<ServiceReferenceU> result;
    result.reserve(services.size());
    for (const auto& entry : services) {
        result.push_back(entry.second);
    }
    return result;
}

} // namespace ostrel::host
