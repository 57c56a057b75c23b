#include <cppmicroservices/BundleActivator.h>

#include <stdexcept>

namespace {

/// Fault: Start() throws a std::exception; the framework leaves the bundle RESOLVED.
class StartThrows final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext) override { throw std::runtime_error{"planned fault: start_throws"}; }
    void Stop(cppmicroservices::BundleContext) override {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(StartThrows)
