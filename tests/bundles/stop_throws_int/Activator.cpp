#include <cppmicroservices/BundleActivator.h>

namespace {

/// Fault: Stop() throws something that is no std::exception; the framework still leaves the bundle RESOLVED.
class StopThrowsInt final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext) override {}
    void Stop(cppmicroservices::BundleContext) override { throw 42; }
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(StopThrowsInt)
