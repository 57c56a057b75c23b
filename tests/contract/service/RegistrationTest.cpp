#include "contract/StartedFramework.h"
#include "contract/ThrownText.h"
#include "contract/service/CountingFactory.h"
#include "contract/service/TestServices.h"

#include <cppmicroservices/Constants.h>
#include <cppmicroservices/ServiceFactory.h>

#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace cppmicroservices;
using contract::Both;
using contract::Named;
using contract::Plain;
using ostrel::test::thrownText;
using ::testing::UnorderedElementsAre;
using Registering = ostrel::test::StartedFramework;

const std::shared_ptr<Both> object = std::make_shared<Both>();

TEST_F(Registering, givesEachServiceItsProperties)
{
    auto const registration = context.RegisterService<Plain, Named>(object, {{"colour", std::string("red")}});
    auto const reference = registration.GetReference();
    EXPECT_THAT(reference.GetPropertyKeys(),
                UnorderedElementsAre("service.id", "objectclass", "service.scope", "colour"));
    EXPECT_GT(any_cast<long>(reference.GetProperty("service.id")), 0);
    EXPECT_EQ("singleton", any_cast<std::string>(reference.GetProperty("SERVICE.SCOPE")));
    EXPECT_THAT(any_cast<std::vector<std::string>>(reference.GetProperty("objectclass")),
                UnorderedElementsAre("contract::Plain", "my.named"));
    EXPECT_TRUE(reference.GetProperty("service.ranking").Empty());
}

TEST_F(Registering, showsClassesInTheOrderOfAMapThatIsFilledFromTheLast)
{
    InterfaceMap map;
    map.emplace("my.named", object);
    map.emplace("contract::Plain", object);
    std::vector<std::string> order;
    for (auto const& entry : map) {
        order.push_back(entry.first);
    }
    auto const reference = context.RegisterService<Plain, Named>(object).GetReference();
    EXPECT_EQ(order, any_cast<std::vector<std::string>>(reference.GetProperty("objectclass")));
}

TEST_F(Registering, countsIdsUpOverAllFrameworks)
{
    auto const id = [](BundleContext ctx) {
        return any_cast<long>(ctx.RegisterService<Plain>(object).GetReference().GetProperty("service.id"));
    };
    long const first = id(context);
    auto other = FrameworkFactory().NewFramework();
    other.Start();
    EXPECT_EQ(first + 1, id(other.GetBundleContext()));
    ostrel::test::stopAndWait(other);
    EXPECT_EQ(first + 2, id(context));
}

TEST_F(Registering, refusesWhatIsNoService)
{
    EXPECT_EQ("Can't register empty InterfaceMap as a service",
              thrownText<std::invalid_argument>([this] { (void)context.RegisterService(InterfaceMapConstPtr()); }));
    EXPECT_EQ("Can't register empty InterfaceMap as a service", thrownText<std::invalid_argument>([this] {
                  (void)context.RegisterService(std::make_shared<InterfaceMap const>());
              }));
    EXPECT_EQ("Can't register as null class",
              thrownText<std::invalid_argument>([this] { context.RegisterService<Plain>(std::shared_ptr<Both>()); }));
    EXPECT_EQ("The service factory argument must not be nullptr.", thrownText<ServiceException>([this] {
                  context.RegisterService<Plain>(std::shared_ptr<ServiceFactory>());
              }));
}

TEST_F(Registering, refusesNamesThatDifferByCaseOnly)
{
    EXPECT_EQ(0U, thrownText<std::runtime_error>([this] {
                      context.RegisterService<Plain>(object, {{"A", 1}, {"a", 2}});
                  }).find("Properties contain case variants of the key: "));
    EXPECT_THROW(context.RegisterService<Plain>(object, {{"Service.Id", 7L}}), std::runtime_error);
    EXPECT_TRUE(context.GetServiceReferences<Plain>().empty());
}

TEST_F(Registering, replacesAllButTheReservedProperties)
{
    auto registration = context.RegisterService<Plain>(object, {{"old", 1}});
    auto const reference = registration.GetReference();
    auto const id = any_cast<long>(reference.GetProperty("service.id"));
    registration.SetProperties({{"new", 2}, {"service.id", 999L}});
    EXPECT_THAT(reference.GetPropertyKeys(), UnorderedElementsAre("service.id", "objectclass", "service.scope", "new"));
    EXPECT_EQ(id, any_cast<long>(reference.GetProperty("service.id")));
}

TEST_F(Registering, keepsTheOldPropertiesWhenTheNewOnesAreFaulty)
{
    auto registration = context.RegisterService<Plain>(object, {{"old", 1}});
    EXPECT_THROW(registration.SetProperties({{"B", 1}, {"b", 1}}), std::runtime_error);
    EXPECT_EQ(1, any_cast<int>(registration.GetReference().GetProperty("old")));
}

TEST_F(Registering, takesARankingOfAnotherTypeAtFirst)
{
    for (auto const& ranking : {Any(5L), Any(std::string("5")), Any(true), Any()}) {
        auto registration = context.RegisterService<Plain>(object, {{"service.ranking", ranking}});
        EXPECT_EQ(ranking.Type(), registration.GetReference().GetProperty("service.ranking").Type());
        EXPECT_EQ(registration.GetReference(), context.GetServiceReference<Plain>());
        registration.Unregister();
    }
}

TEST_F(Registering, refusesToChangeTheRankingToAnotherType)
{
    auto registration = context.RegisterService<Plain>(object, {{"old", 1}});
    std::string const text = "SERVICE_RANKING property has unexpected value type. "
                             "cppmicroservices::BadAnyCastException: any_cast: Failed to convert from "
                             "cppmicroservices::Any type ";
    EXPECT_EQ(text + "long to target type int", thrownText<std::invalid_argument>([&] {
                  registration.SetProperties({{"service.ranking", 5L}});
              }));
    EXPECT_EQ(text + "void to target type int", thrownText<std::invalid_argument>([&] {
                  registration.SetProperties({{"service.ranking", Any()}});
              }));
    EXPECT_EQ(1, any_cast<int>(registration.GetReference().GetProperty("old")));
    EXPECT_NO_THROW(registration.SetProperties({{"service.ranking", 5}}));
}

TEST_F(Registering, endsWithUnregister)
{
    auto registration = context.RegisterService<Plain>(object, {{"old", 1}});
    auto const reference = registration.GetReference();
    registration.Unregister();
    EXPECT_TRUE(registration);
    EXPECT_FALSE(reference);
    EXPECT_EQ("Service is unregistered", thrownText<std::logic_error>([&] { registration.Unregister(); }));
    EXPECT_EQ("Service is unregistered", thrownText<std::logic_error>([&] { registration.GetReference(); }));
    EXPECT_EQ("Service is unregistered", thrownText<std::logic_error>([&] { registration.SetProperties({}); }));
    EXPECT_EQ(1, any_cast<int>(reference.GetProperty("old")));
    EXPECT_FALSE(reference.GetBundle());
    EXPECT_TRUE(reference.GetUsingBundles().empty());
    EXPECT_FALSE(reference.IsConvertibleTo("contract::Plain"));
    EXPECT_EQ("contract::Plain", reference.GetInterfaceId());
}

TEST_F(Registering, saysWhenThereIsNoRegistration)
{
    ServiceRegistration<Plain> none;
    EXPECT_FALSE(none);
    EXPECT_EQ("ServiceRegistrationBase object invalid", thrownText<std::logic_error>([&] { none.Unregister(); }));
    EXPECT_EQ("ServiceRegistrationBase object invalid", thrownText<std::logic_error>([&] { none.GetReference(); }));
}

TEST_F(Registering, letsGoOfTheObjectAtTheEnd)
{
    auto mine = std::make_shared<Both>();
    std::weak_ptr<Both> const watch = mine;
    auto registration = context.RegisterService<Plain>(mine);
    mine.reset();
    EXPECT_FALSE(watch.expired());
    registration.Unregister();
    EXPECT_TRUE(watch.expired());
}

TEST_F(Registering, holdsTheObjectAndTheFactoryOnce)
{
    auto const service = std::make_shared<Both>();
    auto ofService = context.RegisterService<Plain>(service);
    EXPECT_EQ(2, service.use_count());
    ofService.Unregister();
    EXPECT_EQ(1, service.use_count());

    auto const factory = std::make_shared<contract::CountingFactory<ServiceFactory>>(
        [] { return MakeInterfaceMap<Plain>(std::make_shared<Both>()); });
    auto ofFactory = context.RegisterService<Plain>(ToFactory(factory));
    EXPECT_EQ(2, factory.use_count());
    auto const made = context.GetService(ofFactory.GetReference());
    EXPECT_EQ(2, factory.use_count());
    ofFactory.Unregister();
    EXPECT_EQ(1, factory.use_count());
}

TEST_F(Registering, leavesServicesOfTheFrameworkItselfRegisteredAtItsStop)
{
    auto registration = context.RegisterService<Plain>(object);
    auto const reference = registration.GetReference();
    ostrel::test::stopAndWait(framework);
    EXPECT_TRUE(reference);
    EXPECT_NO_THROW(registration.SetProperties({{"x", 1}}));
    EXPECT_NO_THROW(registration.Unregister());
    EXPECT_FALSE(reference);
}

} // namespace
