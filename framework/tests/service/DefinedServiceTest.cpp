// Where the other framework crashes, hangs or leaves the result open.
#include "contract/StartedFramework.h"
#include "contract/ThrownText.h"
#include "contract/service/TestServices.h"

#include <cppmicroservices/Constants.h>
#include <cppmicroservices/LDAPFilter.h>

#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

using namespace cppmicroservices;
using contract::Both;
using contract::Plain;
using ostrel::test::thrownText;
using DefinedService = ostrel::test::StartedFramework;

const std::shared_ptr<Both> object = std::make_shared<Both>();

TEST_F(DefinedService, refusesReservedPropertiesOfAnotherType)
{
    EXPECT_THROW(context.RegisterService<Plain>(object, {{"service.id", 7}}), BadAnyCastException);
    EXPECT_THROW(context.RegisterService<Plain>(object, {{"objectclass", 7}}), BadAnyCastException);
}

TEST_F(DefinedService, takesARankingThatIsNoIntForZero)
{
    auto const low = context.RegisterService<Plain>(object, {{"service.ranking", -1}});
    auto const odd = context.RegisterService<Plain>(object, {{"Service.Ranking", 5L}});
    auto const none = context.RegisterService<Plain>(object);
    auto const high = context.RegisterService<Plain>(object, {{"service.ranking", 1}});
    auto const found = context.GetServiceReferences<Plain>();
    ASSERT_EQ(4U, found.size());
    EXPECT_EQ(high.GetReference(), found[0]);
    EXPECT_EQ(odd.GetReference(), found[1]);
    EXPECT_EQ(none.GetReference(), found[2]);
    EXPECT_EQ(low.GetReference(), found[3]);
}

TEST_F(DefinedService, changesARankingThatIsNoInt)
{
    auto const other = context.RegisterService<Plain>(object, {{"service.ranking", 1}});
    auto odd = context.RegisterService<Plain>(object, {{"service.ranking", std::string("5")}});
    odd.SetProperties({{"service.ranking", 2}});
    EXPECT_EQ(odd.GetReference(), context.GetServiceReference<Plain>());
    odd.SetProperties({});
    EXPECT_EQ(other.GetReference(), context.GetServiceReference<Plain>());
}

TEST_F(DefinedService, saysThatADefaultReferenceHasNoProperties)
{
    ServiceReferenceU const none;
    EXPECT_THROW(none.GetProperty("x"), std::logic_error);
    EXPECT_THROW(none.GetPropertyKeys(), std::logic_error);
    EXPECT_THROW(LDAPFilter(std::string("(a=b)")).Match(none), std::logic_error);
}

TEST_F(DefinedService, ordersStaleReferencesToo)
{
    auto first = context.RegisterService<Plain>(object);
    auto second = context.RegisterService<Plain>(object);
    auto const early = first.GetReference();
    auto const late = second.GetReference();
    first.Unregister();
    second.Unregister();
    EXPECT_TRUE(late < early);
    EXPECT_FALSE(early < late);
}

TEST_F(DefinedService, writesEmptyProperties)
{
    auto const registration = context.RegisterService<Plain>(object, {{"nothing", Any()}});
    std::ostringstream text;
    text << registration.GetReference();
    EXPECT_NE(std::string::npos, text.str().find("nothing="));
}

TEST_F(DefinedService, findsAServiceByTheIdItShows)
{
    auto const registration = context.RegisterService<Plain>(object, {{"service.id", 424242L}});
    EXPECT_EQ(registration.GetReference(), context.GetServiceReferences("", "(service.id=424242)").at(0));
}

TEST_F(DefinedService, doesNotKeepAServiceForAWeakPointer)
{
    auto mine = std::make_shared<Both>();
    std::weak_ptr<Both> const watch = mine;
    auto registration = context.RegisterService<Plain>(mine);
    std::weak_ptr<Plain> const used = context.GetService(registration.GetReference());
    mine.reset();
    registration.Unregister();
    EXPECT_TRUE(watch.expired());
    EXPECT_TRUE(used.expired());
}

TEST(OutlivingHandles, areHarmless)
{
    ServiceReference<Plain> reference;
    ServiceRegistration<Plain> registration;
    std::shared_ptr<Plain> service;
    BundleContext context;
    {
        auto framework = FrameworkFactory().NewFramework();
        framework.Start();
        context = framework.GetBundleContext();
        registration = context.RegisterService<Plain>(object, {{"x", 1}});
        reference = registration.GetReference();
        service = context.GetService(reference);
    }
    EXPECT_FALSE(context);
    EXPECT_EQ(1, any_cast<int>(reference.GetProperty("x")));
    EXPECT_EQ(1, service->number());
    service.reset();
    registration.SetProperties({{"x", 2}});
    EXPECT_EQ("contract::Plain", reference.GetInterfaceId());
    registration.Unregister();
    EXPECT_FALSE(reference);
    EXPECT_THROW(context.GetService(reference), std::exception);
}

} // namespace
