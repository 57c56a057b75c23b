#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/GetBundleContext.h>

#include <cstdlib>

namespace {

/// Leaves in the environment whether the library's own context was set, which needs the generated unit.
class Activator final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext) override
    {
        const bool isSet = static_cast<bool>(cppmicroservices::GetBundleContext());
        setenv("OSTREL_AUTHORING", isSet ? "context set" : "no context", 1);
    }
    void Stop(cppmicroservices::BundleContext) override {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(Activator)
