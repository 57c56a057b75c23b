#include "Greeting.h"

#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleContext.h>

#include <memory>
#include <string>

namespace {

class HelloGreeting final : public consumer::Greeting {
public:
    std::string text() const override { return "hello from the bundle"; }
};

class Activator final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext context) override
    {
        context.RegisterService<consumer::Greeting>(std::make_shared<HelloGreeting>());
    }

    void Stop(cppmicroservices::BundleContext) override {}
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(Activator)
