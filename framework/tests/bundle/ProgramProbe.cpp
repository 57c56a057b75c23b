// Says which bundles a framework in this program has from the beginning.
#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/Framework.h>
#include <cppmicroservices/FrameworkFactory.h>

#include <exception>
#include <iostream>

int main()
{
    try {
        auto framework = cppmicroservices::FrameworkFactory().NewFramework();
        framework.Init();
        for (auto const& bundle : framework.GetBundleContext().GetBundles()) {
            std::cout << bundle.GetBundleId() << ' ' << bundle.GetSymbolicName() << '\n';
        }
        return 0;
    } catch (std::exception const& e) {
        std::cout << e.what() << '\n';
        return 1;
    }
}
