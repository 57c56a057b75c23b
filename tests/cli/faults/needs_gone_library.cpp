#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleContext.h>

int ostrelTestGone();

namespace {

/// Fault: the library that it needs lies nowhere.
class NeedsGoneLibrary final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext) override { ostrelTestGone(); }
    void Stop(cppmicroservices::BundleContext) override {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(NeedsGoneLibrary)
