#include <cppmicroservices/Any.h>
#include <cppmicroservices/AnyMap.h>
#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/ServiceProperties.h>

#include <memory>
#include <string>
#include <vector>

namespace three_services {

struct Lamp {
    virtual ~Lamp() = default;
};

} // namespace three_services

namespace {

using cppmicroservices::Any;
using cppmicroservices::AnyMap;
using cppmicroservices::ServiceProperties;

struct RealLamp final : three_services::Lamp {};

/// Properties with a startup-load filter of one alternative: the attribute "mode" has this value.
ServiceProperties loadedInMode(const std::string& mode)
{
    AnyMap alternative{AnyMap::ORDERED_MAP};
    alternative["mode"] = mode;
    std::vector<Any> alternatives;
    alternatives.emplace_back(alternative);
    AnyMap zq{AnyMap::ORDERED_MAP};
    zq["ostrelStartupLoadFilters"] = alternatives;
    ServiceProperties properties;
    properties["zq"] = zq;
    return properties;
}

/// Registers three lamps: the first with no declaration, the second for mode "night", the third for mode "day".
class ThreeServices final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext context) override
    {
        context.RegisterService<three_services::Lamp>(std::make_shared<RealLamp>());
        context.RegisterService<three_services::Lamp>(std::make_shared<RealLamp>(), loadedInMode("night"));
        context.RegisterService<three_services::Lamp>(std::make_shared<RealLamp>(), loadedInMode("day"));
    }

    void Stop(cppmicroservices::BundleContext) override {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(ThreeServices)
