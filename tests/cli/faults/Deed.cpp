#include "Deeds.h"

#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/ServiceFactory.h>

#include <memory>
#include <thread>

namespace {

enum class Place { in_constructor, in_start, in_thread, in_factory, in_emptyFactory, in_stop, in_destructor };

/// Fault: at one place of its life this bundle does one of the deeds.
void pass(Place place)
{
    if (place == Place::OSTREL_PLACE) {
        deeds::OSTREL_DEED();
    }
}

struct Statics {
    // Without noexcept it depends on the compiler whether an exception gets through the dynamic loader.
    Statics() noexcept { pass(Place::in_constructor); }
    ~Statics() noexcept(false) { pass(Place::in_destructor); }
};
const Statics statics;

class Thing {
public:
    virtual ~Thing() = default;
};

class Factory final : public cppmicroservices::ServiceFactory {
public:
    cppmicroservices::InterfaceMapConstPtr GetService(const cppmicroservices::Bundle&,
                                                      const cppmicroservices::ServiceRegistrationBase&) override
    {
        pass(Place::in_factory);
        pass(Place::in_emptyFactory);
        if (Place::OSTREL_PLACE == Place::in_emptyFactory) {
            return nullptr; // so that everybody who wants the service asks here
        }
        return cppmicroservices::MakeInterfaceMap<Thing>(std::make_shared<Thing>());
    }

    void UngetService(const cppmicroservices::Bundle&, const cppmicroservices::ServiceRegistrationBase&,
                      const cppmicroservices::InterfaceMapConstPtr&) override
    {
    }
};

class Deed final : public cppmicroservices::BundleActivator {
public:
    void Start(cppmicroservices::BundleContext context) override
    {
        pass(Place::in_start);
        std::thread{[] { pass(Place::in_thread); }}.join();
        context.RegisterService<Thing>(std::shared_ptr<cppmicroservices::ServiceFactory>{std::make_shared<Factory>()});
    }

    void Stop(cppmicroservices::BundleContext) override { pass(Place::in_stop); }
};

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(Deed)
