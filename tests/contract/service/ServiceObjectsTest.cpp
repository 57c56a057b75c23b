#include "contract/BundlesByManifest.h"
#include "contract/StartedFramework.h"
#include "contract/ThrownText.h"
#include "contract/service/CountingFactory.h"
#include "contract/service/TestServices.h"

#include <cppmicroservices/PrototypeServiceFactory.h>
#include <cppmicroservices/ServiceObjects.h>

#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>

namespace {

using namespace cppmicroservices;
using contract::Both;
using contract::CountingFactory;
using contract::Named;
using contract::Plain;
using ostrel::test::thrownText;

using Prototypes = CountingFactory<PrototypeServiceFactory>;
using Factory = CountingFactory<ServiceFactory>;

static_assert(!std::is_default_constructible_v<ServiceObjects<Plain>>);
static_assert(!std::is_copy_constructible_v<ServiceObjects<Plain>>);
static_assert(!std::is_copy_assignable_v<ServiceObjects<Plain>>);
static_assert(std::is_move_constructible_v<ServiceObjects<Plain>>);
static_assert(std::is_move_assignable_v<ServiceObjects<Plain>>);
static_assert(!std::is_copy_constructible_v<ServiceObjects<void>>);
static_assert(std::is_nothrow_move_constructible_v<ServiceObjects<void>>);
static_assert(std::is_nothrow_move_assignable_v<ServiceObjects<void>>);

InterfaceMapConstPtr makeBoth()
{
    return MakeInterfaceMap<Plain, Named>(std::make_shared<Both>());
}

/// One bundle that uses the services of another.
class Objects : public ostrel::test::StartedFramework {
protected:
    Objects() : user(ostrel::test::installByManifest(context, {"user"}).at(0))
    {
        user.Start();
        userContext = user.GetBundleContext();
    }

    ServiceReference<Plain> reference() const { return registration.GetReference<Plain>(); }

    Bundle user;
    BundleContext userContext;
    std::shared_ptr<Prototypes> factory = std::make_shared<Prototypes>(makeBoth);
    ServiceRegistration<Plain, Named> registration = context.RegisterService<Plain, Named>(ToFactory(factory));
};

TEST_F(Objects, makesANewObjectEachTime)
{
    auto const objects = userContext.GetServiceObjects(reference());
    EXPECT_EQ(0, factory->made);
    auto first = objects.GetService();
    auto const second = objects.GetService();
    ASSERT_TRUE(first);
    ASSERT_TRUE(second);
    EXPECT_NE(first, second);
    EXPECT_EQ(2, factory->made);
    EXPECT_EQ(1, first.use_count());
    auto const third = first;
    first.reset();
    EXPECT_EQ(0, factory->taken);
    EXPECT_EQ(1, third->number());
}

TEST_F(Objects, givesEachObjectBackWithItsLastPointer)
{
    auto const objects = userContext.GetServiceObjects(reference());
    auto first = objects.GetService();
    auto second = objects.GetService();
    first.reset();
    EXPECT_EQ(1, factory->taken);
    second.reset();
    EXPECT_EQ(2, factory->taken);
    EXPECT_TRUE(objects.GetService());
    EXPECT_EQ(3, factory->taken);
}

TEST_F(Objects, areApartFromTheObjectOfTheBundle)
{
    auto const objects = userContext.GetServiceObjects(reference());
    auto const own = objects.GetService();
    auto const shared = userContext.GetService(reference());
    EXPECT_NE(own, shared);
    EXPECT_EQ(shared, userContext.GetService(reference()));
    EXPECT_EQ(2, factory->made);
}

TEST_F(Objects, countAsUseOfTheBundleAlone)
{
    auto const objects = userContext.GetServiceObjects(reference());
    EXPECT_TRUE(user.GetServicesInUse().empty());
    auto own = objects.GetService();
    EXPECT_EQ(1U, user.GetServicesInUse().size());
    EXPECT_TRUE(reference().GetUsingBundles().empty());
    auto shared = userContext.GetService(reference());
    EXPECT_EQ(1U, user.GetServicesInUse().size());
    EXPECT_EQ(1U, reference().GetUsingBundles().size());
    own.reset();
    EXPECT_EQ(1U, user.GetServicesInUse().size());
    shared.reset();
    EXPECT_TRUE(user.GetServicesInUse().empty());
    EXPECT_TRUE(reference().GetUsingBundles().empty());
}

TEST_F(Objects, outliveWhatTheyCameFrom)
{
    auto service = userContext.GetServiceObjects(reference()).GetService();
    EXPECT_EQ(0, factory->taken);
    EXPECT_EQ(1, service->number());
    service.reset();
    EXPECT_EQ(1, factory->taken);
}

TEST_F(Objects, tellTheirReference)
{
    auto const plain = userContext.GetServiceObjects(reference());
    EXPECT_EQ(reference(), plain.GetServiceReference());
    EXPECT_EQ("contract::Plain", plain.GetServiceReference().GetInterfaceId());
    auto const named = userContext.GetServiceObjects(ServiceReference<Named>(reference()));
    EXPECT_EQ("my.named", named.GetServiceReference().GetInterfaceId());
    EXPECT_TRUE(std::dynamic_pointer_cast<Both>(named.GetService()));
    ServiceObjects<void> const untyped = userContext.GetServiceObjects(ServiceReferenceU(reference()));
    EXPECT_EQ(ServiceReferenceU(reference()), untyped.GetServiceReference());
}

TEST_F(Objects, canBeMoved)
{
    auto objects = userContext.GetServiceObjects(reference());
    auto moved = std::move(objects);
    EXPECT_TRUE(moved.GetService());
    objects = std::move(moved);
    EXPECT_TRUE(objects.GetService());
    EXPECT_EQ(2, factory->taken);
}

TEST_F(Objects, giveAllInterfacesForAnUntypedReference)
{
    auto const objects = userContext.GetServiceObjects(ServiceReferenceU(reference()));
    auto first = objects.GetService();
    auto const second = objects.GetService();
    EXPECT_NE(ExtractInterface<Plain>(first), ExtractInterface<Plain>(second));
    EXPECT_EQ(2U, first->size());
    first.reset();
    EXPECT_EQ(1, factory->taken);
}

TEST_F(Objects, ofABundleScopedServiceAreOne)
{
    auto const other = std::make_shared<Factory>(makeBoth);
    auto const scoped = context.RegisterService<Plain>(ToFactory(other)).GetReference();
    auto const objects = userContext.GetServiceObjects(scoped);
    auto const again = userContext.GetServiceObjects(scoped);
    {
        auto const first = objects.GetService();
        EXPECT_EQ(first, objects.GetService());
        EXPECT_EQ(first, again.GetService());
        EXPECT_EQ(first, userContext.GetService(scoped));
        EXPECT_EQ(1, other->made);
        EXPECT_EQ(1U, scoped.GetUsingBundles().size());
        EXPECT_EQ(0, other->taken);
    }
    EXPECT_EQ(1, other->taken);
}

TEST_F(Objects, ofASingletonAreOne)
{
    auto const both = std::make_shared<Both>();
    auto const single = context.RegisterService<Plain>(both).GetReference();
    auto const objects = userContext.GetServiceObjects(single);
    auto const service = objects.GetService();
    EXPECT_EQ(both.get(), service.get());
    EXPECT_EQ(service, objects.GetService());
    EXPECT_EQ(service, userContext.GetService(single));
}

TEST_F(Objects, needAReferenceAndAContext)
{
    auto const text = "The service reference is invalid";
    EXPECT_EQ(text,
              thrownText<std::invalid_argument>([this] { userContext.GetServiceObjects(ServiceReference<Plain>()); }));
    EXPECT_EQ(text, thrownText<std::invalid_argument>([this] { userContext.GetServiceObjects(ServiceReferenceU()); }));
    EXPECT_EQ("The bundle context is no longer valid",
              thrownText<std::runtime_error>([this] { BundleContext().GetServiceObjects(reference()); }));
    auto const stale = reference();
    registration.Unregister();
    EXPECT_EQ(text, thrownText<std::invalid_argument>([&] { userContext.GetServiceObjects(stale); }));
}

TEST_F(Objects, areTakenBackWhenTheServiceGoes)
{
    auto const objects = userContext.GetServiceObjects(reference());
    auto const untyped = userContext.GetServiceObjects(ServiceReferenceU(reference()));
    auto first = objects.GetService();
    auto const second = objects.GetService();
    registration.Unregister();
    EXPECT_EQ(2, factory->taken);
    EXPECT_TRUE(user.GetServicesInUse().empty());
    EXPECT_FALSE(objects.GetService());
    EXPECT_FALSE(untyped.GetService());
    EXPECT_FALSE(objects.GetServiceReference());
    EXPECT_EQ(1, first->number());
    first.reset();
    EXPECT_EQ(2, factory->taken);
}

TEST_F(Objects, areNullWhenABundleScopedServiceOrASingletonIsGone)
{
    auto scoped = context.RegisterService<Plain>(ToFactory(std::make_shared<Factory>(makeBoth)));
    auto single = context.RegisterService<Plain>(std::make_shared<Both>());
    auto const ofScoped = userContext.GetServiceObjects(scoped.GetReference());
    auto const ofSingle = userContext.GetServiceObjects(single.GetReference());
    scoped.Unregister();
    single.Unregister();
    EXPECT_FALSE(ofScoped.GetService());
    EXPECT_FALSE(ofSingle.GetService());
}

TEST_F(Objects, stayWithTheirUserWhenItsBundleStops)
{
    auto const objects = userContext.GetServiceObjects(reference());
    auto own = objects.GetService();
    auto const shared = userContext.GetService(reference());
    user.Stop();
    EXPECT_EQ(1, factory->taken);
    EXPECT_EQ(1U, user.GetServicesInUse().size());
    auto const text = "The bundle context is no longer valid";
    EXPECT_EQ(text, thrownText<std::runtime_error>([&] { objects.GetService(); }));
    EXPECT_EQ(reference(), objects.GetServiceReference());
    own.reset();
    EXPECT_EQ(2, factory->taken);
    user.Start();
    EXPECT_EQ(text, thrownText<std::runtime_error>([&] { objects.GetService(); }));
}

TEST_F(Objects, areGivenBackAfterTheEndOfTheFramework)
{
    auto const objects = userContext.GetServiceObjects(reference());
    auto own = objects.GetService();
    ostrel::test::stopAndWait(framework);
    EXPECT_THROW(objects.GetService(), std::runtime_error);
    own.reset();
    EXPECT_EQ(1, factory->taken);
}

TEST_F(Objects, areNullWhenTheFactoryDoesNotDeliver)
{
    auto const objects = userContext.GetServiceObjects(reference());
    auto const untyped = userContext.GetServiceObjects(ServiceReferenceU(reference()));
    factory->make = [] { return InterfaceMapConstPtr(); };
    EXPECT_FALSE(objects.GetService());
    EXPECT_FALSE(untyped.GetService());
    factory->make = []() -> InterfaceMapConstPtr { return MakeInterfaceMap<Plain>(std::make_shared<Both>()); };
    EXPECT_FALSE(objects.GetService());
    factory->make = []() -> InterfaceMapConstPtr { throw std::runtime_error("making"); };
    EXPECT_FALSE(objects.GetService());
    factory->make = []() -> InterfaceMapConstPtr { throw 42; };
    EXPECT_THROW(objects.GetService(), int);
    EXPECT_EQ(5, factory->made);
    EXPECT_EQ(0, factory->taken);
}

TEST_F(Objects, surviveAFactoryThatFailsToTakeBack)
{
    auto const objects = userContext.GetServiceObjects(reference());
    factory->failsToTake = true;
    objects.GetService().reset();
    EXPECT_TRUE(objects.GetService());
    EXPECT_EQ(2, factory->taken);
}

TEST_F(Objects, mayBeAskedForInsideTheFactory)
{
    auto const objects = userContext.GetServiceObjects(reference());
    bool inner = false;
    factory->make = [&] {
        if (factory->made == 1) {
            inner = objects.GetService() != nullptr;
        }
        return makeBoth();
    };
    EXPECT_TRUE(objects.GetService());
    EXPECT_TRUE(inner);
}

TEST_F(Objects, mayShareOneMap)
{
    factory->make = [map = makeBoth()] { return map; };
    auto const objects = userContext.GetServiceObjects(reference());
    auto first = objects.GetService();
    auto second = objects.GetService();
    EXPECT_EQ(first, second);
    first.reset();
    EXPECT_EQ(1, factory->taken);
    EXPECT_EQ(1U, user.GetServicesInUse().size());
    second.reset();
    EXPECT_EQ(2, factory->taken);
}

TEST_F(Objects, areGivenOutWhenTheirUserStopsMeanwhile)
{
    auto const objects = userContext.GetServiceObjects(reference());
    factory->make = [this] {
        user.Stop();
        return makeBoth();
    };
    EXPECT_TRUE(objects.GetService());
    EXPECT_EQ(1, factory->taken);
}

} // namespace
