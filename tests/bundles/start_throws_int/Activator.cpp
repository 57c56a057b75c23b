#include <cppmicroservices/BundleActivator.h>

namespace {

/// Fault: Start() throws something that is no std::exception.
class StartThrowsInt final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext) override { throw 42; }
    void Stop(cppmicroservices::BundleContext) override {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(StartThrowsInt)
