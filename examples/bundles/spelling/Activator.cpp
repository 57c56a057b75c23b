#include "Spelling.h"

#include <cppmicroservices/AnyMap.h>
#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/Constants.h>
#include <cppmicroservices/ServiceFactory.h>

#include <memory>
#include <string>
#include <vector>

namespace {

using cppmicroservices::Any;
using cppmicroservices::AnyMap;
using cppmicroservices::Bundle;
using cppmicroservices::BundleContext;
using cppmicroservices::InterfaceMapConstPtr;
using cppmicroservices::ServiceFactory;
using cppmicroservices::ServiceRegistrationBase;

/// Makes the step when a bundle first asks for it, so that nobody waits for the table who never corrects anything.
class SpellingFactory final : public ServiceFactory {
public:
    InterfaceMapConstPtr GetService(const Bundle&, const ServiceRegistrationBase&) override
    {
        return cppmicroservices::MakeInterfaceMap<text::Step>(std::make_shared<Spelling>());
    }

    void UngetService(const Bundle&, const ServiceRegistrationBase&, const InterfaceMapConstPtr&) override {}
};

/// Whether a service is loaded at start-up is the service's own choice, made by the same rules as those of bundles in
/// their manifests: this one only in servers, where the first request should not be the one that waits.
AnyMap startupLoadFilters()
{
    AnyMap server{AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS};
    server["mode"] = std::string{"server"};
    AnyMap filters{AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS};
    filters["ostrelStartupLoadFilters"] = std::vector<Any>{Any{server}};
    return filters;
}

class Activator final : public cppmicroservices::BundleActivator {
public:
    void Start(BundleContext context) override
    {
        const std::shared_ptr<ServiceFactory> factory = std::make_shared<SpellingFactory>();
        context.RegisterService<text::Step>(
            factory, {{cppmicroservices::Constants::SERVICE_RANKING, 400}, {"zq", startupLoadFilters()}});
    }

    void Stop(BundleContext) override {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(Activator)
