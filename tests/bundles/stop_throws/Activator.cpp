#include <cppmicroservices/BundleActivator.h>

#include <stdexcept>

namespace {

/// Fault: Stop() throws a std::exception; the framework still leaves the bundle RESOLVED.
class StopThrows final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext) override {}
    void Stop(cppmicroservices::BundleContext) override { throw std::runtime_error{"planned fault: stop_throws"}; }
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(StopThrows)
