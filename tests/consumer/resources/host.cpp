// Starts the bundles in the files given, and then itself, which is a bundle too.

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/BundleVersion.h>
#include <cppmicroservices/Framework.h>
#include <cppmicroservices/FrameworkEvent.h>
#include <cppmicroservices/FrameworkFactory.h>

#include <chrono>
#include <exception>
#include <iostream>

int main(int argc, char* argv[])
{
    try {
        auto framework = cppmicroservices::FrameworkFactory().NewFramework();
        framework.Start();
        for (int i = argc - 1; i >= 0; --i) {
            for (auto& bundle : framework.GetBundleContext().InstallBundles(argv[i])) {
                bundle.Start();
                std::cout << bundle.GetSymbolicName() << ' ' << bundle.GetVersion() << ' ' << bundle.GetState() << '\n';
            }
        }
        framework.Stop();
        framework.WaitForStop(std::chrono::milliseconds::zero());
        return 0;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
