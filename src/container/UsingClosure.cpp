#include "container/UsingClosure.h"

#include <set>

namespace ostrel::us_container {

using cppmicroservices::Bundle;
using cppmicroservices::ServiceReference;

std::vector<ServiceReference<void>> servicesReachedFrom(const Bundle& bundle)
{
    std::vector<ServiceReference<void>> references;
    std::set<Bundle> visited;
    std::set<Bundle> pending{bundle};
    while (!pending.empty()) {
        const Bundle current = *pending.begin();
        visited.insert(current);
        pending.erase(pending.begin());
        for (const ServiceReference<void>& reference : current.GetRegisteredServices()) {
            references.push_back(reference);
            for (const Bundle& user : reference.GetUsingBundles()) {
                if (visited.count(user) == 0) {
                    pending.insert(user);
                }
            }
        }
    }
    return references;
}

} // namespace ostrel::us_container
