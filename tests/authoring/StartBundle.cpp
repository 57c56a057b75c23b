/// Starts every bundle in one file and says what became of each, and what its activator left in the environment; the
/// tests of ostrel_add_bundle() read its output.
///
/// usage: ostrel_start_bundle <file>
/// Exit status: 0 when the file held bundles and all of them are active.

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/BundleVersion.h>
#include <cppmicroservices/Framework.h>
#include <cppmicroservices/FrameworkEvent.h>
#include <cppmicroservices/FrameworkFactory.h>

#include <chrono>
#include <cstdlib>
#include <exception>
#include <iostream>

int main(int argc, char* argv[])
{
    if (argc != 2) {
        std::cerr << "usage: ostrel_start_bundle <file>\n";
        return EXIT_FAILURE;
    }
    try {
        auto framework = cppmicroservices::FrameworkFactory().NewFramework();
        framework.Start();
        auto bundles = framework.GetBundleContext().InstallBundles(argv[1]);
        bool allActive = !bundles.empty();
        for (auto& bundle : bundles) {
            bundle.Start();
            const bool active = bundle.GetState() == cppmicroservices::Bundle::STATE_ACTIVE;
            const char* const left = std::getenv("OSTREL_AUTHORING");
            std::cout << bundle.GetSymbolicName() << ' ' << bundle.GetVersion()
                      << (active ? " is active: " : " is not active: ") << (left != nullptr ? left : "") << '\n';
            unsetenv("OSTREL_AUTHORING");
            allActive = allActive && active;
        }
        framework.Stop();
        framework.WaitForStop(std::chrono::milliseconds::zero());
        return allActive ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::cerr << "ostrel_start_bundle: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
