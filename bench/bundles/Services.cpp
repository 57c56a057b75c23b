#include "support/Echo.h"

#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleContext.h>

#include <memory>

namespace {

/// Registers as many services as the framework's configuration says.
class Services final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext context) override
    {
        const int count = cppmicroservices::any_cast<int>(context.GetProperty(bench::serviceCountProperty));
        for (int i = 0; i < count; ++i) {
            // The framework keeps the registration until the bundle stops.
            (void)context.RegisterService<bench::Echo>(std::make_shared<bench::Echo>());
        }
    }

    void Stop(cppmicroservices::BundleContext) override {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(Services)
