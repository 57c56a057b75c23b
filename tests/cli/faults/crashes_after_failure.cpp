#include "Deeds.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleContext.h>

#include <exception>

namespace {

/// Starts every bundle behind itself, whether that fails or not. Fault: then it crashes.
class CrashesAfterFailure final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext context) override
    {
        for (cppmicroservices::Bundle bundle : context.GetBundles()) {
            if (bundle.GetBundleId() > context.GetBundle().GetBundleId()) {
                startAnyway(bundle);
            }
        }
        deeds::crashes();
    }

    void Stop(cppmicroservices::BundleContext) override {}

private:
    static void startAnyway(cppmicroservices::Bundle& bundle)
    {
        try {
            bundle.Start();
        } catch (const std::exception&) {
            // It is of no concern here.
        }
    }
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(CrashesAfterFailure)
