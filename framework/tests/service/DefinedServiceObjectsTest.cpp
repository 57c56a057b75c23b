// Where the other framework crashes, leaks or leaves the result open.
#include "contract/StartedFramework.h"
#include "contract/ThrownText.h"
#include "contract/service/CountingFactory.h"
#include "contract/service/TestServices.h"

#include <cppmicroservices/PrototypeServiceFactory.h>
#include <cppmicroservices/ServiceObjects.h>

#include <memory>
#include <stdexcept>
#include <utility>

namespace {

using namespace cppmicroservices;
using contract::Both;
using contract::Plain;
using ostrel::test::thrownText;

InterfaceMapConstPtr makePlain()
{
    return MakeInterfaceMap<Plain>(std::make_shared<Both>());
}

template <class Base>
class ThrowingFactory : public contract::CountingFactory<Base> {
public:
    using contract::CountingFactory<Base>::CountingFactory;

    void UngetService(Bundle const&, ServiceRegistrationBase const&, InterfaceMapConstPtr const&) override
    {
        ++this->taken;
        throw 42;
    }
};

class DefinedObjects : public ostrel::test::StartedFramework {
protected:
    using Factory = contract::CountingFactory<PrototypeServiceFactory>;

    std::shared_ptr<Factory> factory = std::make_shared<Factory>(makePlain);
    ServiceRegistration<Plain> registration = context.RegisterService<Plain>(ToFactory(factory));
    ServiceObjects<Plain> objects = context.GetServiceObjects(registration.GetReference());
};

TEST_F(DefinedObjects, sayThatTheyWereMovedFrom)
{
    auto const moved = std::move(objects);
    EXPECT_EQ("The bundle context is no longer valid",
              thrownText<std::runtime_error>([this] { objects.GetService(); }));
    EXPECT_FALSE(objects.GetServiceReference());
}

TEST_F(DefinedObjects, canBeAskedForAfterAFailure)
{
    factory->make = []() -> InterfaceMapConstPtr { throw std::runtime_error("making"); };
    EXPECT_FALSE(objects.GetService());
    EXPECT_TRUE(context.GetBundle().GetServicesInUse().empty());
    factory->make = makePlain;
    EXPECT_TRUE(objects.GetService());
    EXPECT_EQ(1, factory->taken);
}

TEST_F(DefinedObjects, handOutAnEmptyMapAsItIs)
{
    factory->make = [] { return std::make_shared<InterfaceMap const>(); };
    EXPECT_FALSE(objects.GetService());
    auto const map = context.GetServiceObjects(ServiceReferenceU(registration.GetReference())).GetService();
    ASSERT_TRUE(map);
    EXPECT_TRUE(map->empty());
    EXPECT_EQ(0, factory->taken);
}

TEST_F(DefinedObjects, destroyMapsWithTheirLastPointer)
{
    std::weak_ptr<Both> made;
    factory->make = [&made]() -> InterfaceMapConstPtr {
        auto const object = std::make_shared<Both>();
        made = object;
        return MakeInterfaceMap<Plain>(object);
    };
    auto map = context.GetServiceObjects(ServiceReferenceU(registration.GetReference())).GetService();
    EXPECT_FALSE(made.expired());
    map.reset();
    EXPECT_TRUE(made.expired());
    EXPECT_TRUE(context.GetBundle().GetServicesInUse().empty());
}

TEST_F(DefinedObjects, goBackWhenTheServiceIsUnregisteredMeanwhile)
{
    factory->make = [this] {
        registration.Unregister();
        return makePlain();
    };
    EXPECT_FALSE(objects.GetService());
    EXPECT_EQ(1, factory->taken);
}

template <class Base>
void unregistersDespite(BundleContext context)
{
    auto const factory = std::make_shared<ThrowingFactory<Base>>(makePlain);
    auto registration = context.RegisterService<Plain>(ToFactory(factory));
    auto const first = context.GetService(registration.GetReference());
    auto const second = context.GetServiceObjects(registration.GetReference()).GetService();
    EXPECT_NO_THROW(registration.Unregister());
    EXPECT_EQ(factory->made, factory->taken);
}

TEST_F(DefinedObjects, areUnregisteredWhateverTheFactoryThrows)
{
    unregistersDespite<ServiceFactory>(context);
    unregistersDespite<PrototypeServiceFactory>(context);
}

} // namespace
