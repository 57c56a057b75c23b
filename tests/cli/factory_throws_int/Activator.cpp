#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/ServiceFactory.h>

#include <memory>

namespace ostrel::test {

class Unobtainable {
public:
    virtual ~Unobtainable() = default;
};

/// Fault: the factory throws something that is no std::exception, which the framework lets through to the caller.
class Factory final : public cppmicroservices::ServiceFactory {
public:
    cppmicroservices::InterfaceMapConstPtr GetService(const cppmicroservices::Bundle&,
                                                      const cppmicroservices::ServiceRegistrationBase&) override
    {
        throw 42;
    }

    void UngetService(const cppmicroservices::Bundle&, const cppmicroservices::ServiceRegistrationBase&,
                      const cppmicroservices::InterfaceMapConstPtr&) override
    {
    }
};

class FactoryThrowsInt final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext context) override
    {
        const std::shared_ptr<cppmicroservices::ServiceFactory> factory = std::make_shared<Factory>();
        context.RegisterService<Unobtainable>(factory);
    }

    void Stop(cppmicroservices::BundleContext) override {}
};

} // namespace ostrel::test

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(ostrel::test::FactoryThrowsInt)
