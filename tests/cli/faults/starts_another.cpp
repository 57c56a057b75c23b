#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleContext.h>

namespace {

/// Starts every bundle behind itself; fault: it does not care whether one of them fails.
class StartsAnother final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext context) override
    {
        for (cppmicroservices::Bundle bundle : context.GetBundles()) {
            if (bundle.GetBundleId() > context.GetBundle().GetBundleId()) {
                bundle.Start();
            }
        }
    }

    void Stop(cppmicroservices::BundleContext) override {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(StartsAnother)
