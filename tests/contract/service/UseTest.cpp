#include "contract/BundlesByManifest.h"
#include "contract/StartedFramework.h"
#include "contract/ThrownText.h"
#include "contract/service/CountingFactory.h"
#include "contract/service/TestServices.h"

#include <cppmicroservices/PrototypeServiceFactory.h>
#include <cppmicroservices/ServiceFactory.h>

#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace cppmicroservices;
using contract::Both;
using contract::CountingFactory;
using contract::Named;
using contract::Plain;
using ostrel::test::thrownText;

using Factory = CountingFactory<ServiceFactory>;

InterfaceMapConstPtr makePlain()
{
    return MakeInterfaceMap<Plain>(std::make_shared<Both>());
}

class Using : public ostrel::test::StartedFramework {
protected:
    ServiceReference<Plain> registerFactory(Factory::Make make)
    {
        factory = std::make_shared<Factory>(std::move(make));
        registration = context.RegisterService<Plain>(ToFactory(factory));
        return registration.GetReference();
    }

    std::shared_ptr<Factory> factory;
    ServiceRegistration<Plain> registration;
};

TEST_F(Using, countsEachCallAsAUse)
{
    auto const reference = context.RegisterService<Plain>(std::make_shared<Both>()).GetReference();
    auto first = context.GetService(reference);
    auto second = context.GetService(reference);
    EXPECT_EQ(first, second);
    EXPECT_EQ(1, first.use_count());
    EXPECT_EQ(1U, reference.GetUsingBundles().size());
    first.reset();
    EXPECT_EQ(1U, reference.GetUsingBundles().size());
    EXPECT_EQ(1U, context.GetBundle().GetServicesInUse().size());
    second.reset();
    EXPECT_TRUE(reference.GetUsingBundles().empty());
    EXPECT_TRUE(context.GetBundle().GetServicesInUse().empty());
}

TEST_F(Using, givesAllInterfacesForAnUntypedReference)
{
    auto const both = std::make_shared<Both>();
    ServiceReferenceU const reference = context.RegisterService<Plain, Named>(both).GetReference();
    auto const map = context.GetService(reference);
    ASSERT_TRUE(map);
    EXPECT_EQ(both.get(), ExtractInterface<Plain>(map).get());
    EXPECT_EQ(static_cast<Named*>(both.get()), ExtractInterface<Named>(map).get());
    EXPECT_EQ(map, context.GetService(reference));
}

TEST_F(Using, refusesReferencesWithoutAService)
{
    auto const text = "Default constructed ServiceReference is not a valid input to GetService()";
    EXPECT_EQ(text, thrownText<std::invalid_argument>([this] { context.GetService(ServiceReference<Plain>()); }));
    auto own = context.RegisterService<Plain>(std::make_shared<Both>());
    auto const stale = own.GetReference();
    own.Unregister();
    EXPECT_EQ(text, thrownText<std::invalid_argument>([&] { context.GetService(stale); }));
    BundleContext none;
    EXPECT_EQ(text, thrownText<std::invalid_argument>([&] { none.GetService(stale); }));
    EXPECT_EQ(text, thrownText<std::invalid_argument>([&] { none.GetService(ServiceReferenceU()); }));
    ostrel::test::stopAndWait(framework);
    EXPECT_EQ(text, thrownText<std::invalid_argument>([&] { context.GetService(ServiceReferenceU(stale)); }));
}

TEST_F(Using, keepsTheObjectOfAnUnregisteredService)
{
    auto own = context.RegisterService<Plain>(std::make_shared<Both>());
    auto const service = context.GetService(own.GetReference());
    own.Unregister();
    EXPECT_EQ(1, service->number());
}

TEST_F(Using, asksAFactoryOnceForEachUsingBundle)
{
    auto const reference = registerFactory(makePlain);
    EXPECT_EQ("bundle", reference.GetProperty("service.scope").ToString());
    auto first = context.GetService(reference);
    auto second = context.GetService(reference);
    EXPECT_EQ(first, second);
    EXPECT_EQ(1, factory->made);
    first.reset();
    EXPECT_EQ(0, factory->taken);
    second.reset();
    EXPECT_EQ(1, factory->taken);
    first = context.GetService(reference);
    EXPECT_EQ(2, factory->made);
}

TEST_F(Using, knowsAPrototypeFactory)
{
    auto const prototype = std::make_shared<CountingFactory<PrototypeServiceFactory>>(makePlain);
    auto const reference = context.RegisterService<Plain>(ToFactory(prototype)).GetReference();
    EXPECT_EQ("prototype", reference.GetProperty("service.scope").ToString());
    EXPECT_TRUE(context.GetService(reference));
}

TEST_F(Using, givesObjectsBackToTheFactoryAtUnregister)
{
    auto const reference = registerFactory(makePlain);
    auto service = context.GetService(reference);
    registration.Unregister();
    EXPECT_EQ(1, factory->taken);
    EXPECT_EQ(1, service->number());
    service.reset();
    EXPECT_EQ(1, factory->taken);
}

TEST_F(Using, givesNullWhereAFactoryDoesNotDeliver)
{
    auto const reference = registerFactory([] { return InterfaceMapConstPtr(); });
    EXPECT_FALSE(context.GetService(reference));
    EXPECT_EQ(1U, reference.GetUsingBundles().size());
    factory->make = [] { return std::make_shared<InterfaceMap const>(); };
    EXPECT_FALSE(context.GetService(reference));
    EXPECT_TRUE(context.GetService(ServiceReferenceU(reference)));
    factory->make = []() -> InterfaceMapConstPtr { return MakeInterfaceMap<Named>(std::make_shared<Both>()); };
    EXPECT_FALSE(context.GetService(reference));
    factory->make = []() -> InterfaceMapConstPtr { throw std::runtime_error("making"); };
    EXPECT_FALSE(context.GetService(reference));
    EXPECT_EQ(5, factory->made);
    factory->make = makePlain;
    EXPECT_TRUE(context.GetService(reference));
}

TEST_F(Using, saysForWhomAFactoryFailed)
{
    auto const reference = registerFactory([]() -> InterfaceMapConstPtr { throw std::runtime_error("none"); });
    auto user = ostrel::test::installByManifest(context, {"user"}).at(0);
    user.Start();
    std::vector<Bundle> blamed;
    context.AddFrameworkListener([&blamed](FrameworkEvent const& event) { blamed.push_back(event.GetBundle()); });
    EXPECT_EQ(nullptr, user.GetBundleContext().GetService(reference));
    EXPECT_THAT(blamed, ::testing::ElementsAre(user));
}

TEST_F(Using, letsOtherExceptionsOfAFactoryPass)
{
    auto const reference = registerFactory([]() -> InterfaceMapConstPtr { throw 42; });
    EXPECT_THROW(context.GetService(reference), int);
    factory->make = makePlain;
    EXPECT_TRUE(context.GetService(reference));
}

TEST_F(Using, givesNullInsideTheFactoryItself)
{
    ServiceReference<Plain> reference;
    bool innerWasNull = false;
    reference = registerFactory([&] {
        innerWasNull = context.GetService(reference) == nullptr;
        return makePlain();
    });
    EXPECT_TRUE(context.GetService(reference));
    EXPECT_TRUE(innerWasNull);
}

TEST_F(Using, survivesAFactoryThatFailsToTakeBack)
{
    auto const reference = registerFactory(makePlain);
    factory->failsToTake = true;
    context.GetService(reference).reset();
    EXPECT_EQ(1, factory->taken);
    EXPECT_TRUE(context.GetService(reference));
}

TEST_F(Using, worksAcrossFrameworks)
{
    auto other = FrameworkFactory().NewFramework();
    other.Start();
    auto const reference = other.GetBundleContext().RegisterService<Plain>(std::make_shared<Both>()).GetReference();
    EXPECT_TRUE(context.GetServiceReferences<Plain>().empty());
    EXPECT_TRUE(context.GetService(reference));
    ostrel::test::stopAndWait(other);
}

} // namespace
