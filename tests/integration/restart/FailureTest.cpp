// What a restart leaves behind when the framework or a bundle fails.
#include "integration/restart/RestartFixture.h"
#include "support/Seams.h"

#include <stdexcept>

namespace ostrel::test {
namespace {

using cppmicroservices::Bundle;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class RestartFailure : public RestartFixture {
protected:
    Seams seams;
};

TEST_F(RestartFailure, GivenFrameworkStopped_WhenRestarted_ThenItsExceptionLeavesTheLockFree)
{
    started("alpha");
    host.stop();

    EXPECT_THROW(container.restartBundle(locationOf("alpha")), std::runtime_error);

    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(RestartFailure, GivenInvalidHandle_WhenRestarted_ThenItIsSkippedWithoutARecord)
{
    startedProviding("alpha");
    clear();
    seams.getBundles = [](const std::string&) { return std::vector<Bundle>{Bundle{}}; };

    container.restartBundle(locationOf("alpha"));

    EXPECT_THAT(trail, IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(RestartFailure, GivenInvalidHandleBeforeAnother_WhenRestarted_ThenTheOtherHasItsPass)
{
    startedProviding("alpha");
    container.loadService(greeterName);
    const Bundle real = bundle("alpha");
    clear();
    int lookups = 0;
    seams.getBundles = [&](const std::string&) {
        ++lookups;
        return lookups == 1 ? std::vector<Bundle>{Bundle{}, real} : std::vector<Bundle>{real};
    };

    container.restartBundle(locationOf("alpha"));

    EXPECT_THAT(trail, ElementsAre("release alpha", "stop alpha", "start alpha", "get alpha"));
}

TEST_F(RestartFailure, GivenBundlesFound_WhenRestarted_ThenTheFirstLookupIsByTheGivenString)
{
    std::vector<std::string> lookups;
    seams.getBundles = [&](const std::string& location) {
        lookups.push_back(location);
        return std::vector<Bundle>{};
    };

    container.restartBundle("some string");

    EXPECT_THAT(lookups, ElementsAre("some string"));
}

TEST_F(RestartFailure, GivenBundleUninstalledMeanwhile_WhenRestarted_ThenItsExceptionComesBeforeAnyStep)
{
    startedProviding("alpha");
    provide(started("q"), "q");
    container.loadService(greeterName);
    Bundle gone = bundle("alpha");
    gone.Uninstall();
    clear();
    seams.getBundles = [&gone](const std::string&) { return std::vector<Bundle>{gone}; };

    EXPECT_THROW(container.restartBundle(locationOf("alpha")), std::logic_error);

    EXPECT_THAT(trail, IsEmpty());
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(RestartFailure, GivenStartThatFails_WhenRestarted_ThenServicesStayReleasedAndTheLockIsFree)
{
    const auto alpha = started("alpha");
    const auto q = startedProviding("q");
    use(q, alpha);
    container.loadService(greeterName);
    clear();
    seams.start = [](Bundle&) { throw std::runtime_error{"planned fault: no start"}; };

    EXPECT_THROW(container.restartBundle(locationOf("alpha")), std::runtime_error);

    EXPECT_THAT(trail, ElementsAre("release q", "stop alpha"));
    EXPECT_THAT(container.listManuallyLoadedServices(), IsEmpty());
    EXPECT_EQ(bundle("alpha").GetState(), resolved);
    EXPECT_THAT(log.records(), IsEmpty());
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(RestartFailure, GivenStartThatFailedOnce_WhenRestartedAgain_ThenTheNamesAreStillRecorded)
{
    startedProviding("alpha");
    container.loadService(greeterName);
    seams.start = [](Bundle&) { throw std::runtime_error{"planned fault: no start"}; };
    EXPECT_THROW(container.restartBundle(locationOf("alpha")), std::runtime_error);
    seams.start = nullptr;
    clear();

    container.restartBundle(locationOf("alpha"));

    EXPECT_THAT(trail, ElementsAre("start alpha", "get alpha"));
    EXPECT_THAT(log.records(), ElementsAre(loaded(greeterName)));
}

TEST_F(RestartFailure, GivenStopThatFails_WhenRestarted_ThenItIsLoggedAndTheRestartGoesOn)
{
    startedProviding("alpha");
    container.loadService(greeterName);
    clear();
    seams.stop = [](Bundle&) { throw std::runtime_error{"planned fault: no stop"}; };

    container.restartBundle(locationOf("alpha"));

    EXPECT_THAT(trail, ElementsAre("release alpha", "get alpha"));
    EXPECT_THAT(log.records(),
                ElementsAre(LogRecord{0x10, "Error while stoping " + locationOf("alpha") + ": planned fault: no stop"},
                            LogRecord{0x10, "Did not stop " + locationOf("alpha")}, loaded(greeterName)));
}

TEST_F(RestartFailure, GivenFactoryThatThrowsAnIntAtTheReload_WhenRestarted_ThenLaterNamesStayReleased)
{
    atStart("alpha", [this](BundleContext context) {
        if (trail.size() > 2) {
            registerFactory<Greeter>(context, []() -> cppmicroservices::InterfaceMapConstPtr { throw 42; });
        } else {
            provide<Greeter>(context, "greeter");
        }
        provide<Dancer>(context, "dancer");
        provide<Singer>(context, "singer");
    });
    started("alpha");
    container.loadServices(Names{singerName, greeterName, dancerName});

    EXPECT_THROW(container.restartBundle(locationOf("alpha")), int);

    EXPECT_EQ(trail.back(), "get dancer");
    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(1));
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(RestartFailure, GivenFactoryThatThrowsWhenGivenBack_WhenRestarted_ThenTheOthersAreReleasedAndAllIsLoaded)
{
    atStart("alpha", [this](BundleContext context) {
        registerFactory<Singer>(context, newMap<Singer>, [] { throw std::runtime_error{"planned fault: not taken"}; });
        provide(context, "alpha");
    });
    started("alpha");
    container.loadServices(Names{greeterName, singerName});
    clear();

    container.restartBundle(locationOf("alpha"));

    EXPECT_THAT(trail, ElementsAre("release alpha", "stop alpha", "start alpha", "get alpha"));
    EXPECT_THAT(log.records(), ElementsAre(loaded(greeterName), loaded(singerName)));
}

TEST_F(RestartFailure, GivenRecordThatCannotBeWritten_WhenRestarted_ThenItsExceptionLeavesTheLockFree)
{
    startedProviding("alpha");
    container.loadService(greeterName);
    log.onRecord([](const LogRecord&) { throw std::runtime_error{"planned fault: no record"}; });

    EXPECT_THROW(container.restartBundle(locationOf("alpha")), std::runtime_error);

    log.onRecord(nullptr);
    EXPECT_TRUE(lockIsFree(container));
}

} // namespace
} // namespace ostrel::test
