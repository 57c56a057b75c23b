#include "integration/services/ServicesFixture.h"

#include <stdexcept>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using LoadAllServices = ServicesFixture;

TEST_F(LoadAllServices, GivenStartedBundleWithServices_WhenLoaded_ThenEachIsHeld)
{
    const auto bundle = startedBundle("alpha");
    const auto greeter = registerGreeter(bundle);
    const auto singer = registerFactory<Singer>(bundle, newMap<Singer>);

    container.loadAllServices();

    EXPECT_THAT(usersOf(greeter), ElementsAre("system_bundle"));
    EXPECT_THAT(usersOf(singer), ElementsAre("system_bundle"));
}

TEST_F(LoadAllServices, GivenStartedBundleWithServices_WhenLoaded_ThenEachIsLoadedByItsIdInOrderOfRegistration)
{
    const auto bundle = startedBundle("alpha");
    const auto first = registerGreeter(bundle, {{"service.ranking", 1}});
    const auto second = registerGreeter(bundle, {{"service.ranking", 2}});

    container.loadAllServices();

    EXPECT_THAT(log.records(), ElementsAre(loaded(loadNameOf(first)), loaded(loadNameOf(second))));
}

TEST_F(LoadAllServices, GivenBundleLibraryThatRegistersThreeServices_WhenLoaded_ThenAllAreHeld)
{
    container.startBundle(host.add("three_services"));

    container.loadAllServices();

    EXPECT_THAT(container.listManuallyLoadedServices(),
                ElementsAre("[three_services::Lamp]", "[three_services::Lamp]", "[three_services::Lamp]"));
}

TEST_F(LoadAllServices, GivenServicesLoaded_WhenOneIsUnloadedByItsId_ThenItIsReleased)
{
    const auto bundle = startedBundle("alpha");
    const auto first = registerGreeter(bundle);
    const auto second = registerGreeter(bundle);
    container.loadAllServices();

    container.unloadService("(service.id=" + first.GetProperty("service.id").ToString() + ")");

    EXPECT_THAT(usersOf(first), IsEmpty());
    EXPECT_THAT(usersOf(second), ElementsAre("system_bundle"));
}

TEST_F(LoadAllServices, GivenServicesLoaded_WhenLoadedAgain_ThenNothingIsAddedOrWritten)
{
    const auto bundle = startedBundle("alpha");
    registerGreeter(bundle);
    registerGreeter(bundle);
    container.loadAllServices();
    log.clear();

    container.loadAllServices();

    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(2));
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LoadAllServices, GivenNoStartedBundle_WhenLoaded_ThenServicesOfOthersAreLeftAlone)
{
    const auto service = registerGreeter(host.context());

    container.loadAllServices();

    EXPECT_THAT(usersOf(service), IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LoadAllServices, GivenBundleStartedByTheHostItself_WhenLoaded_ThenItsServicesAreLeftAlone)
{
    startedBundle("alpha");
    const std::string file = addArchive(host, "beta.zip", {bundleWith("beta")});
    auto bundle = host.context().InstallBundles(host.locationOf(file)).at(0);
    bundle.Start();
    const auto service = registerGreeter(bundle.GetBundleContext());

    container.loadAllServices();

    EXPECT_THAT(usersOf(service), IsEmpty());
}

TEST_F(LoadAllServices, GivenBundleThatRegistersNothing_WhenLoaded_ThenNothingHappens)
{
    startedBundle("alpha");

    container.loadAllServices();

    EXPECT_THAT(container.listManuallyLoadedServices(), IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LoadAllServices, GivenOneFileUnderTwoNames_WhenLoaded_ThenEachServiceIsLoadedOnce)
{
    const auto bundle = startedBundle("alpha");
    std::filesystem::create_symlink("alpha.zip", host.directory() / "again.zip");
    container.startBundle("again.zip");
    ASSERT_THAT(container.listManuallyLoadedBundles(), SizeIs(2));
    const auto service = registerGreeter(bundle);

    container.loadAllServices();

    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(1));
    EXPECT_THAT(log.records(), ElementsAre(loaded(loadNameOf(service))));
}

TEST_F(LoadAllServices, GivenTwoBundlesInOneFile_WhenLoaded_ThenTheServicesOfBothAreHeldInTheirOrder)
{
    container.startBundle(addArchive(host, "pair.zip", {bundleWith("alpha"), bundleWith("beta")}));
    const auto bundles = host.context().GetBundles(host.locationOf("pair.zip"));
    ASSERT_THAT(bundles, SizeIs(2));
    const auto ofSecond = registerGreeter(bundles[1].GetBundleContext());
    const auto ofFirst = registerGreeter(bundles[0].GetBundleContext());

    container.loadAllServices();

    EXPECT_THAT(log.records(), ElementsAre(loaded(loadNameOf(ofFirst)), loaded(loadNameOf(ofSecond))));
}

TEST_F(LoadAllServices, GivenSeveralBundles_WhenLoaded_ThenTheyAreWalkedInTheOrderOfTheInventory)
{
    for (const char* name : {"alpha", "beta", "gamma", "delta"}) {
        registerGreeter(startedBundle(name));
    }
    std::vector<LogRecord> expected;
    for (const std::string& location : container.listManuallyLoadedBundles()) {
        for (const auto& bundle : host.context().GetBundles(location)) {
            for (const auto& reference : bundle.GetRegisteredServices()) {
                expected.push_back(loaded(loadNameOf(reference)));
            }
        }
    }
    ASSERT_THAT(expected, SizeIs(4));

    container.loadAllServices();

    EXPECT_THAT(log.records(), ElementsAreArray(expected));
}

TEST_F(LoadAllServices, GivenBundleUninstalledMeanwhile_WhenLoaded_ThenNothingHappens)
{
    registerGreeter(startedBundle("alpha"));
    host.bundleIn("alpha.zip").Uninstall();

    container.loadAllServices();

    EXPECT_THAT(container.listManuallyLoadedServices(), IsEmpty());
}

TEST_F(LoadAllServices, GivenFrameworkStopped_WhenLoaded_ThenNothingHappens)
{
    registerGreeter(startedBundle("alpha"));
    host.stop();

    EXPECT_NO_THROW(container.loadAllServices());

    EXPECT_THAT(container.listManuallyLoadedServices(), IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LoadAllServices, GivenFactoryThatRegistersAnotherService_WhenLoaded_ThenTheNewcomerIsNotLoaded)
{
    const auto bundle = startedBundle("alpha");
    ServiceReferenceU newcomer;
    const auto registering = registerFactory(bundle, [&] {
        newcomer = registerGreeter(bundle);
        return newMap<Greeter>();
    });

    container.loadAllServices();

    EXPECT_THAT(usersOf(newcomer), IsEmpty());
    EXPECT_THAT(log.records(), ElementsAre(loaded(loadNameOf(registering))));
}

TEST_F(LoadAllServices, GivenSecondFactoryThrowsAnInt_WhenLoaded_ThenTheServicesBeforeStayAndTheRestIsNotVisited)
{
    const auto bundle = startedBundle("alpha");
    const auto first = registerGreeter(bundle);
    registerFactory(bundle, throwInt);
    const auto third = registerGreeter(bundle);

    EXPECT_THROW(container.loadAllServices(), int);

    EXPECT_THAT(usersOf(first), ElementsAre("system_bundle"));
    EXPECT_THAT(usersOf(third), IsEmpty());
    EXPECT_THAT(log.records(), ElementsAre(loaded(loadNameOf(first))));
}

TEST_F(LoadAllServices, GivenFactoryThrowsAnInt_WhenItThrew_ThenTheLockIsFree)
{
    registerFactory(startedBundle("alpha"), throwInt);

    EXPECT_THROW(container.loadAllServices(), int);

    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(LoadAllServices, GivenFactoryRunning_WhenAnotherThreadAsks_ThenTheLockIsHeld)
{
    LockProbe probe{container};
    registerFactory(startedBundle("alpha"), [&probe] {
        probe.look();
        return newMap<Greeter>();
    });

    container.loadAllServices();

    EXPECT_THAT(probe.found(), ElementsAre(LockProbe::held));
}

} // namespace
} // namespace ostrel::test
