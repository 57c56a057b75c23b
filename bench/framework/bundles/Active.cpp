#include "support/Thing.h"

#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleContext.h>

#include <memory>

namespace {

class One final : public bench::Thing {
public:
    int number() const override { return 1; }
};

/// Registers one service, which the framework takes back when the bundle stops.
class Activator final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext context) override
    {
        (void)context.RegisterService<bench::Thing>(std::make_shared<One>());
    }

    void Stop(cppmicroservices::BundleContext) override {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(Activator)
