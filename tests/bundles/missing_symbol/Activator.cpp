#include <cppmicroservices/BundleActivator.h>

extern "C" void ostrelTestNobodyDefinesThis();

namespace {

/// Fault: the library calls a function that nothing defines, so it cannot be loaded.
class MissingSymbol final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext) override { ostrelTestNobodyDefinesThis(); }
    void Stop(cppmicroservices::BundleContext) override {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(MissingSymbol)
