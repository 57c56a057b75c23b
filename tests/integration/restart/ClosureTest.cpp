// Which services a restart lets go of, and in which order.
#include "integration/restart/RestartFixture.h"

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using us_container::MicroServicesContainer;

using RestartClosure = RestartFixture;

TEST_F(RestartClosure, GivenBundleThatUsesTheRestartedOne_WhenRestarted_ThenItsServiceIsLoadedAgainAndItRunsOn)
{
    const auto alpha = started("alpha");
    const auto q = startedProviding("q");
    use(q, alpha);
    container.loadService(greeterName);
    clear();

    container.restartBundle(locationOf("alpha"));

    EXPECT_THAT(trail, ElementsAre("release q", "stop alpha", "start alpha", "get q"));
    EXPECT_THAT(log.records(), ElementsAre(loaded(greeterName)));
    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(1));
    EXPECT_EQ(bundle("q").GetState(), active);
}

TEST_F(RestartClosure, GivenBundleThatTheRestartedOneUses_WhenRestarted_ThenItsServiceStaysHeld)
{
    const auto alpha = started("alpha");
    const auto q = startedProviding("q");
    use(alpha, q);
    container.loadService(greeterName);
    clear();

    container.restartBundle(locationOf("alpha"));

    EXPECT_THAT(trail, ElementsAre("stop alpha", "start alpha"));
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(RestartClosure, GivenUsersOfUsers_WhenRestarted_ThenTheServicesOfAllAreReleased)
{
    const auto alpha = started("alpha");
    const auto q = started("q");
    const auto r = startedProviding("r");
    use(q, alpha);
    use(r, q);
    container.loadService(greeterName);
    clear();

    container.restartBundle(locationOf("alpha"));

    EXPECT_THAT(trail, ElementsAre("release r", "stop alpha", "start alpha", "get r"));
}

TEST_F(RestartClosure, GivenBundlesThatUseEachOther_WhenRestarted_ThenEachIsVisitedOnce)
{
    const auto alpha = startedProviding("alpha");
    const auto q = startedProviding("q");
    use(q, alpha);
    use(alpha, q);
    container.loadService(greeterName);
    clear();

    container.restartBundle(locationOf("alpha"));

    EXPECT_THAT(trail, ElementsAre("release alpha", "release q", "stop alpha", "start alpha", "get q", "get alpha"));
}

TEST_F(RestartClosure, GivenManyBundles_WhenOneIsRestarted_ThenReleasesFollowTheLeastBundleToBeVisited)
{
    const auto a = started("a");
    const auto b = started("b");
    const auto alpha = started("alpha");
    const auto d = started("d");
    provide(a, "a");
    provide(b, "b");
    provide(alpha, "alpha1");
    provide(alpha, "alpha2");
    provide(d, "d");
    provide(host.context(), "system");
    use(d, alpha);
    use(b, alpha);
    use(a, b);
    container.loadService(greeterName);
    clear();

    container.restartBundle(locationOf("alpha"));

    EXPECT_THAT(trail, ElementsAre("release alpha1", "release alpha2", "release system", "release b", "release a",
                                   "release d", "stop alpha", "start alpha", //
                                   "get a", "get b", "get d", "get system"));
}

TEST_F(RestartClosure, GivenServicesUnderManyNames_WhenRestarted_ThenTheOrderOfRegistrationDecides)
{
    const auto alpha = started("alpha");
    Names names;
    Names expected;
    for (int i = 0; i < 12; ++i) {
        const std::string name = "alpha" + std::to_string(i);
        names.insert(names.begin(), loadNameOf(provide(alpha, name)));
        expected.push_back("release " + name);
    }
    container.loadServices(names);
    clear();

    container.restartBundle(locationOf("alpha"));

    expected.insert(expected.end(), {"stop alpha", "start alpha"});
    EXPECT_EQ(trail, expected);
}

TEST_F(RestartClosure, GivenServiceOfTheRestartedBundleHeld_WhenRestarted_ThenTheServicesOfTheContextsBundleJoin)
{
    startedProviding("alpha");
    provide<Singer>(host.context(), "system");
    container.loadServices(Names{greeterName, singerName});
    clear();

    container.restartBundle(locationOf("alpha"));

    EXPECT_THAT(trail,
                ElementsAre("release alpha", "release system", "stop alpha", "start alpha", "get alpha", "get system"));
    EXPECT_THAT(log.records(), ElementsAre(loaded(greeterName), loaded(singerName)));
}

TEST_F(RestartClosure, GivenNoServiceOfTheRestartedBundleHeld_WhenRestarted_ThenTheContextsBundleStaysOut)
{
    startedProviding("alpha");
    provide<Singer>(host.context(), "system");
    container.loadService(singerName);
    clear();

    container.restartBundle(locationOf("alpha"));

    EXPECT_THAT(trail, ElementsAre("stop alpha", "start alpha"));
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(RestartClosure, GivenContainerOfAnotherBundle_WhenRestarted_ThenThatBundleJoinsAndTheSystemDoesNot)
{
    startedProviding("alpha");
    const auto owner = startedProviding("owner");
    provide(host.context(), "system");
    MicroServicesContainer owned{owner, ostrel::platform::Utf16Path{u""}};
    owned.startBundle(locationOf("alpha"));
    owned.loadService(greeterName);
    clear();

    owned.restartBundle(locationOf("alpha"));

    EXPECT_THAT(trail,
                ElementsAre("release alpha", "release owner", "stop alpha", "start alpha", "get owner", "get alpha"));
}

TEST_F(RestartClosure, GivenServicesOfUsersReleased_WhenTheyAreUnloaded_ThenNothingIsHeldOfThem)
{
    const auto alpha = started("alpha");
    const auto q = started("q");
    const auto service = provide(q, "q");
    use(q, alpha);
    container.loadService(greeterName);
    container.restartBundle(locationOf("alpha"));
    ASSERT_THAT(usersOf(service), ElementsAre("system_bundle"));

    container.unloadAllServices();

    EXPECT_THAT(usersOf(service), IsEmpty());
}

} // namespace
} // namespace ostrel::test
