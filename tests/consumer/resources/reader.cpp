// Prints its own resources when it is started.

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/BundleResource.h>
#include <cppmicroservices/BundleResourceStream.h>
#include <cppmicroservices/GetBundleContext.h>

#include <iostream>
#include <string>

namespace {

class Activator final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext) override
    {
        const auto bundle = cppmicroservices::GetBundleContext().GetBundle();
        for (const auto& resource : bundle.FindResources("/", "*.txt", true)) {
            cppmicroservices::BundleResourceStream stream(resource);
            std::string line;
            std::getline(stream, line);
            std::cout << resource.GetResourcePath() << ": " << line << '\n';
        }
    }
    void Stop(cppmicroservices::BundleContext) override {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(Activator)
