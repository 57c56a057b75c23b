#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleContext.h>

#include <cstdlib>

const char* greeting(); // in the source that is added later

namespace {

class Activator final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext) override { setenv("OSTREL_AUTHORING", greeting(), 1); }
    void Stop(cppmicroservices::BundleContext) override {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(Activator)
