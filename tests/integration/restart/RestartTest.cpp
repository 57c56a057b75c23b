#include "integration/restart/RestartFixture.h"

#include <type_traits>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;
using us_container::MicroServicesContainer;

static_assert(std::is_same_v<decltype(&MicroServicesContainer::restartBundle),
                             void (MicroServicesContainer::*)(const std::string&)>);

using RestartBundle = RestartFixture;

TEST_F(RestartBundle, GivenBundleWithAHeldService_WhenRestarted_ThenItIsReleasedBeforeTheStopAndObtainedAfterTheStart)
{
    startedProviding("alpha");
    container.loadService(greeterName);
    clear();

    container.restartBundle(locationOf("alpha"));

    EXPECT_THAT(trail, ElementsAre("release alpha", "stop alpha", "start alpha", "get alpha"));
    EXPECT_THAT(log.records(), ElementsAre(loaded(greeterName)));
}

TEST_F(RestartBundle, GivenBundleWithAHeldService_WhenRestarted_ThenTheReferenceIsFresh)
{
    startedProviding("alpha");
    container.loadService(greeterName);
    const ServiceReferenceU old = bundle("alpha").GetRegisteredServices().at(0);

    container.restartBundle(locationOf("alpha"));

    const std::vector<ServiceReferenceU> now = bundle("alpha").GetRegisteredServices();
    EXPECT_FALSE(old);
    EXPECT_THAT(usersOf(now.at(0)), ElementsAre("system_bundle"));
    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(1));
}

TEST_F(RestartBundle, GivenRestart_WhenDone_ThenTheBundleIsActiveAndRecordedAsBefore)
{
    started("alpha");
    started("q");

    container.restartBundle(locationOf("alpha"));

    EXPECT_EQ(bundle("alpha").GetState(), active);
    EXPECT_THAT(container.listManuallyLoadedBundles(), UnorderedElementsAre(locationOf("alpha"), locationOf("q")));
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(RestartBundle, GivenBundleWithoutServices_WhenRestarted_ThenItIsStoppedAndStartedAndNothingIsLoaded)
{
    started("alpha");
    startedProviding("q");
    container.loadService(greeterName);
    clear();

    container.restartBundle(locationOf("alpha"));

    EXPECT_THAT(trail, ElementsAre("stop alpha", "start alpha"));
    EXPECT_THAT(log.records(), IsEmpty());
    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(1));
}

TEST_F(RestartBundle, GivenServiceThatCameMeanwhile_WhenAnyBundleIsRestarted_ThenEveryRecordedNameIsLoadedAgain)
{
    started("alpha");
    const auto q = startedProviding("q");
    container.loadService(greeterName);
    const auto newcomer = provide(q, "newcomer");
    clear();

    container.restartBundle(locationOf("alpha"));

    EXPECT_THAT(trail, ElementsAre("stop alpha", "start alpha", "get newcomer"));
    EXPECT_THAT(log.records(), ElementsAre(loaded(greeterName)));
}

TEST_F(RestartBundle, GivenNamesLoadedOutOfOrder_WhenRestarted_ThenTheyAreLoadedAgainAscending)
{
    atStart("alpha", [this](BundleContext context) {
        provide<Singer>(context, "singer");
        provide<Greeter>(context, "greeter");
        provide<Dancer>(context, "dancer");
    });
    started("alpha");
    container.loadServices(Names{singerName, greeterName, dancerName});
    clear();

    container.restartBundle(locationOf("alpha"));

    EXPECT_THAT(trail, ElementsAre("release singer", "release greeter", "release dancer", "stop alpha", "start alpha",
                                   "get dancer", "get greeter", "get singer"));
    EXPECT_THAT(log.records(), ElementsAre(loaded(dancerName), loaded(greeterName), loaded(singerName)));
}

TEST_F(RestartBundle, GivenServiceHeldUnderTwoNames_WhenRestarted_ThenBothEntriesGoAndBothNamesLoadItAgain)
{
    startedProviding("alpha", {{"colour", std::string{"red"}}});
    container.loadServices(Names{greeterName, "(colour=red)"});
    clear();

    container.restartBundle(locationOf("alpha"));

    EXPECT_THAT(trail, ElementsAre("release alpha", "stop alpha", "start alpha", "get alpha"));
    EXPECT_THAT(log.records(), ElementsAre(loaded("(colour=red)"), loaded(greeterName)));
    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(2));
}

TEST_F(RestartBundle, GivenServiceHeldUnderTwoNames_WhenOneIsUnloadedAfterTheRestart_ThenTheOtherHoldsIt)
{
    startedProviding("alpha", {{"colour", std::string{"red"}}});
    container.loadServices(Names{greeterName, "(colour=red)"});
    container.restartBundle(locationOf("alpha"));

    container.unloadService("(colour=red)");
    EXPECT_THAT(usersOf(bundle("alpha").GetRegisteredServices().at(0)), ElementsAre("system_bundle"));
    container.unloadService(greeterName);
    EXPECT_THAT(usersOf(bundle("alpha").GetRegisteredServices().at(0)), IsEmpty());
}

TEST_F(RestartBundle, GivenNameWithServicesOfTwoBundles_WhenOneIsRestarted_ThenTheOthersEntryStays)
{
    startedProviding("alpha");
    startedProviding("q");
    container.loadService(greeterName);
    clear();

    container.restartBundle(locationOf("alpha"));

    EXPECT_THAT(trail, ElementsAre("release alpha", "stop alpha", "start alpha", "get alpha"));
    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(2));
}

TEST_F(RestartBundle, GivenServiceNotRegisteredAgain_WhenRestarted_ThenItsNameStaysRecorded)
{
    provide(started("alpha"), "alpha");
    container.loadService(greeterName);
    clear();

    container.restartBundle(locationOf("alpha"));
    EXPECT_THAT(log.records(), IsEmpty());
    EXPECT_THAT(container.listManuallyLoadedServices(), IsEmpty());

    provide(host.context(), "successor");
    container.restartBundle(locationOf("alpha"));
    EXPECT_THAT(log.records(), ElementsAre(loaded(greeterName)));
}

TEST_F(RestartBundle, GivenNameUnloaded_WhenRestarted_ThenItIsNotLoadedAgain)
{
    startedProviding("alpha");
    container.loadService(greeterName);
    container.unloadService(greeterName);
    clear();

    container.restartBundle(locationOf("alpha"));

    EXPECT_THAT(trail, ElementsAre("stop alpha", "start alpha"));
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(RestartBundle, GivenNameUnloadedByTheStoppingActivator_WhenRestarted_ThenItIsNotLoadedAgain)
{
    started("alpha");
    provide<Singer>(started("other"), "singer");
    container.loadService(singerName);
    clear();

    restartWatched(locationOf("alpha"), [this](const std::string& step) {
        if (step == "stop alpha") {
            container.unloadService(singerName);
        }
    });

    EXPECT_THAT(trail, ElementsAre("stop alpha", "release singer", "start alpha"));
    EXPECT_THAT(container.listManuallyLoadedServices(), IsEmpty());
}

TEST_F(RestartBundle, GivenNullServiceHeld_WhenRestarted_ThenItsEntryIsErasedToo)
{
    int asked = 0;
    atStart("alpha", [&asked](BundleContext context) {
        registerFactory(std::move(context), [&asked]() -> cppmicroservices::InterfaceMapConstPtr {
            ++asked;
            return nullptr;
        });
    });
    started("alpha");
    container.loadService(greeterName);
    clear();

    container.restartBundle(locationOf("alpha"));

    EXPECT_EQ(asked, 2);
    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(1));
    EXPECT_THAT(log.records(), ElementsAre(loaded(greeterName)));
}

TEST_F(RestartBundle, GivenSameServiceHeldByAnotherContainer_WhenRestarted_ThenThatOneKeepsItsEntry)
{
    startedProviding("alpha");
    MicroServicesContainer other{host.context(), host.bundleDirectory()};
    other.loadService(greeterName);
    container.loadService(greeterName);
    clear();

    container.restartBundle(locationOf("alpha"));

    // Not before the stop: the framework takes the service from the other container when the bundle goes.
    EXPECT_THAT(trail, ElementsAre("stop alpha", "release alpha", "start alpha", "get alpha"));
    EXPECT_THAT(other.listManuallyLoadedServices(), SizeIs(1));
}

TEST_F(RestartBundle, GivenTwoBundlesAtTheLocation_WhenRestarted_ThenEachHasAPassThatStopsAndStartsBoth)
{
    atStart("two_bundles_first", [this](BundleContext context) { provide(std::move(context), "first"); });
    atStart("two_bundles_second", [this](BundleContext context) { provide(std::move(context), "second"); });
    const std::string location = host.locationOf(host.add("two_bundles"));
    container.startBundle(location);
    container.loadService(greeterName);
    clear();

    container.restartBundle(location);

    // Each of the two uses the script of the test, whose bundle uses what the container holds: both join both closures.
    EXPECT_THAT(trail,
                ElementsAre("release first", "release second", "stop two_bundles_first", "stop two_bundles_second",
                            "start two_bundles_first", "start two_bundles_second", "get first", "get second", //
                            "release second", "release first", "stop two_bundles_first", "stop two_bundles_second",
                            "start two_bundles_first", "start two_bundles_second", "get first", "get second"));
    EXPECT_THAT(log.records(), ElementsAre(loaded(greeterName), loaded(greeterName)));
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(location));
}

TEST_F(RestartBundle, GivenNameThatIsNoLocation_WhenRestarted_ThenNothingHappensAtAll)
{
    MicroServicesContainer inDirectory{host.context(), host.bundleDirectory()};
    atStart("alpha", [this](BundleContext context) { provide(std::move(context), "alpha"); });
    inDirectory.startBundle(host.add("alpha"));
    inDirectory.loadService(greeterName);
    clear();

    inDirectory.restartBundle("libalpha.so");

    EXPECT_THAT(trail, IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
    EXPECT_THAT(inDirectory.listManuallyLoadedBundles(), ElementsAre(locationOf("alpha")));
}

TEST_F(RestartBundle, GivenEmptyOrUnknownLocation_WhenRestarted_ThenNothingHappensAtAll)
{
    startedProviding("alpha");
    container.loadService(greeterName);
    clear();

    container.restartBundle("");
    container.restartBundle("unknown");

    EXPECT_THAT(trail, IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(locationOf("alpha")));
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(RestartBundle, GivenUnknownLocation_WhenServicesCameMeanwhile_ThenTheyAreNotLoaded)
{
    const auto alpha = startedProviding("alpha");
    container.loadService(greeterName);
    const auto newcomer = provide(alpha, "newcomer");

    container.restartBundle("unknown");

    EXPECT_THAT(usersOf(newcomer), IsEmpty());
}

TEST_F(RestartBundle, GivenLocationThatIsNoName_WhenRestarted_ThenTheBundleRunsOnAndItsServicesAreLoadedAgain)
{
    host.add("alpha");
    Bundle alpha = host.context().InstallBundles(locationOf("alpha")).at(0);
    alpha.Start();
    provide(alpha.GetBundleContext(), "alpha");
    container.loadService(greeterName);
    clear();

    container.restartBundle(locationOf("alpha"));

    EXPECT_THAT(trail, ElementsAre("release alpha", "get alpha"));
    EXPECT_THAT(log.records(), ElementsAre(loaded(greeterName)));
    // It was started, without effect, under its location, which is a name from now on.
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(locationOf("alpha")));
}

TEST_F(RestartBundle, GivenLocationThatIsNoNameInTheDirectory_WhenRestarted_ThenItIsRecordedWithoutALocation)
{
    MicroServicesContainer inDirectory{host.context(), host.bundleDirectory()};
    inDirectory.startBundle(host.add("alpha"));
    provide(bundle("alpha").GetBundleContext(), "alpha");
    inDirectory.loadService(greeterName);
    clear();

    inDirectory.restartBundle(locationOf("alpha"));

    EXPECT_THAT(trail, ElementsAre("release alpha", "get alpha"));
    EXPECT_THAT(inDirectory.listManuallyLoadedBundles(), UnorderedElementsAre(locationOf("alpha"), ""));
    EXPECT_THAT(log.messages(), ElementsAre("Unable to install bundle: ",
                                            HasSubstr("Unable to install bundle: , cause: installBundles: "),
                                            "Loaded services with name: '" + greeterName + "'"));
}

TEST_F(RestartBundle, GivenComponentNameThatIsTheLocation_WhenRestarted_ThenTheBundleIsStoppedAndNotFoundAgain)
{
    addArchive(host, "q.zip", {componentWith("q", locationOf("q"))});
    MicroServicesContainer inDirectory{host.context(), host.bundleDirectory()};
    inDirectory.startAllBundles();
    clear();

    inDirectory.restartBundle(locationOf("q"));

    // The stop erases the location, and the directory has no file of this name.
    EXPECT_EQ(bundle("q").GetState(), resolved);
    EXPECT_THAT(inDirectory.listManuallyLoadedBundles(), ElementsAre(""));
    ASSERT_THAT(log.records(), SizeIs(2));
    EXPECT_EQ(log.records().front(), (LogRecord{0x8, "Unable to install bundle: "}));
    EXPECT_EQ(log.records().back().severity, 0x200U);
}

} // namespace
} // namespace ostrel::test
