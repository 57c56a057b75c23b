#include <cppmicroservices/BundleActivator.h>

#include <stdexcept>

namespace {

/// Fault: the activator cannot be made: its constructor throws.
class ConstructorThrows final : public cppmicroservices::BundleActivator {
public:
    ConstructorThrows() { throw std::runtime_error{"planned fault: constructor_throws"}; }
    void Start(cppmicroservices::BundleContext) override {}
    void Stop(cppmicroservices::BundleContext) override {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(ConstructorThrows)
