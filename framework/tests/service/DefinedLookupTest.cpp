// Where the other framework gives a wrong or incomplete answer.
#include "contract/BundlesByManifest.h"
#include "contract/StartedFramework.h"
#include "contract/service/CountingFactory.h"
#include "contract/service/TestServices.h"

#include <gmock/gmock.h>

#include <memory>

namespace {

using namespace cppmicroservices;
using contract::Both;
using contract::Named;
using contract::Plain;
using ::testing::ElementsAre;
using DefinedLookup = ostrel::test::StartedFramework;

const std::shared_ptr<Both> object = std::make_shared<Both>();

TEST_F(DefinedLookup, findsAServiceOnceHoweverManyOfTheClassesItHas)
{
    auto both = context.RegisterService<Plain, Named>(object);
    auto plain = context.RegisterService<Plain>(object);
    EXPECT_EQ(2U, context.GetServiceReferences("", "(|(objectclass=contract::Plain)(objectclass=my.named))").size());
}

TEST_F(DefinedLookup, findsWhatHasEachOfTwoClasses)
{
    auto both = context.RegisterService<Plain, Named>(object);
    auto plain = context.RegisterService<Plain>(object);
    EXPECT_THAT(context.GetServiceReferences("", "(&(objectclass=contract::Plain)(objectclass=my.named))"),
                ElementsAre(ServiceReferenceU(both.GetReference())));
}

TEST_F(DefinedLookup, ordersDefaultConstructedReferences)
{
    EXPECT_FALSE(ServiceReferenceU() < ServiceReferenceU());
}

TEST_F(DefinedLookup, noticesARankingInAnySpelling)
{
    auto first = context.RegisterService<Plain>(object);
    auto second = context.RegisterService<Plain>(object);
    second.SetProperties({{"Service.Ranking", 5}});
    EXPECT_EQ(second.GetReference(), context.GetServiceReference<Plain>());
}

TEST_F(DefinedLookup, countsAPointerForTheRunOfTheBundleInWhichItWasGot)
{
    auto registration = context.RegisterService<Plain>(object);
    auto bundle = ostrel::test::installByManifest(context, {"user"}).at(0);
    bundle.Start();
    auto before = bundle.GetBundleContext().GetService(registration.GetReference());
    bundle.Stop();
    bundle.Start();
    auto const after = bundle.GetBundleContext().GetService(registration.GetReference());
    before.reset();
    EXPECT_THAT(registration.GetReference().GetUsingBundles(), ElementsAre(bundle));
}

TEST_F(DefinedLookup, givesBackWhatTheSystemBundleUsesWhenTheFrameworkStops)
{
    auto const factory = std::make_shared<contract::CountingFactory<ServiceFactory>>(
        []() -> InterfaceMapConstPtr { return MakeInterfaceMap<Plain>(object); });
    auto registration = context.RegisterService<Plain>(ToFactory(factory));
    auto const held = context.GetService(registration.GetReference());
    ostrel::test::stopAndWait(framework);
    EXPECT_EQ(1, factory->taken);
}

} // namespace
