#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleContext.h>

namespace {

/// Stops every bundle that is there when it is started.
class ClosesOthers final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext context) override
    {
        for (cppmicroservices::Bundle bundle : context.GetBundles()) {
            const bool isFramework = bundle.GetBundleId() == 0;
            if (!isFramework && bundle != context.GetBundle()) {
                bundle.Stop();
            }
        }
    }

    void Stop(cppmicroservices::BundleContext) override {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(ClosesOthers)
