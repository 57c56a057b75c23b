// A program, not a test of its own: keeps a framework and all that it can in static objects, which go when the process
// ends. Its exit status, and a sanitizer, tell whether that went well.
#include "bundles/shared/Word.h"
#include "support/TestBundles.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/Framework.h>
#include <cppmicroservices/FrameworkFactory.h>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace cppmicroservices;
using ostrel::test::Word;

/// Uses its handles when it is destroyed.
struct Kept {
    BundleContext context;
    Bundle bundle;
    ServiceReference<Word> reference;
    std::shared_ptr<Word> service;

    ~Kept()
    {
        // The bundle's handle keeps the framework, unless it was told to stop.
        bool const right = bundle.GetSymbolicName() == "alpha" && service->text() == "alpha";
        bundle.Stop();
        service.reset();
        if (!right || context || reference || bundle.GetState() == Bundle::STATE_ACTIVE) {
            std::cerr << "the handles do not say what they should\n";
            std::_Exit(2);
        }
    }
};

// In the order in which they go: the framework first, or last.
Kept keptLonger;
std::vector<Framework> frameworks;

} // namespace

int main(int count, char** arguments)
{
    bool const stops = count > 1 && std::string(arguments[1]) == "stop";
    frameworks.push_back(FrameworkFactory().NewFramework());
    auto& framework = frameworks.back();
    framework.Start();
    auto context = framework.GetBundleContext();
    auto bundle = context.InstallBundles(ostrel::test::testBundle("alpha").string()).at(0);
    bundle.Start();
    keptLonger.context = bundle.GetBundleContext();
    keptLonger.bundle = bundle;
    keptLonger.reference = context.GetServiceReference<Word>();
    keptLonger.service = context.GetService(keptLonger.reference);
    context.RegisterService<int>(std::make_shared<int>(1));
    if (stops) {
        framework.Stop(); // and nobody waits for it
    }
    return bundle.GetSymbolicName() == "alpha" ? EXIT_SUCCESS : EXIT_FAILURE;
}
