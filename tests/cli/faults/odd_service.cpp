#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleContext.h>

#include <memory>
#include <string>

namespace {

class Thing {
public:
    virtual ~Thing() = default;
};

/// Fault: a property of its service holds what a terminal takes for commands.
class OddService final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext context) override
    {
        context.RegisterService<Thing>(std::make_shared<Thing>(), {{"title", std::string{"odd\x1b[31m\b"}}});
    }

    void Stop(cppmicroservices::BundleContext) override {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(OddService)
