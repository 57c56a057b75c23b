#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/BundleResource.h>
#include <cppmicroservices/BundleResourceStream.h>

#include <cstdlib>
#include <string>

namespace {

/// Leaves the first line of its resource in the environment.
class Activator final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext context) override
    {
        const auto resources = context.GetBundle().FindResources("/deep", "greeting", false);
        cppmicroservices::BundleResourceStream stream(resources.empty() ? cppmicroservices::BundleResource{}
                                                                        : resources.front());
        std::string line;
        std::getline(stream, line);
        setenv("OSTREL_AUTHORING", line.c_str(), 1);
    }
    void Stop(cppmicroservices::BundleContext) override {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(Activator)
