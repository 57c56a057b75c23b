#include "support/ContainerFixture.h"

#include <gmock/gmock.h>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using Names = std::vector<std::string>;

class Unload : public ContainerFixture {};

TEST_F(Unload, GivenFreshContainer_WhenUnloaded_ThenNothingIsLogged)
{
    container.unload();

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(Unload, GivenFreshContainerOverAnInvalidContext_WhenUnloaded_ThenTheFrameworkIsNotCalled)
{
    MicroServicesContainer other{cppmicroservices::BundleContext{}, host.bundleDirectory()};

    EXPECT_NO_THROW(other.unload());
}

TEST_F(Unload, GivenServicesAndBundle_WhenUnloaded_ThenTheServicesGoFirstByAscendingName)
{
    container.startBundle(host.add("two_bundles"));
    container.loadService("(test.word=two_bundles_second)");
    container.loadService("(test.word=two_bundles_first)");
    script.clear();

    container.unload();

    EXPECT_THAT(script.events(), ElementsAre("release two_bundles_first", "release two_bundles_second",
                                             "stop two_bundles_first", "stop two_bundles_second"));
}

TEST_F(Unload, GivenSeveralBundles_WhenUnloaded_ThenTheyStopInTheOrderOfTheRecords)
{
    container.startBundles(Names{host.add("alpha"), host.add("beta"), host.add("gamma")});
    Names expected;
    for (const std::string& location : container.listManuallyLoadedBundles()) {
        expected.push_back("stop " + host.context().GetBundles(location).front().GetSymbolicName());
    }
    script.clear();

    container.unload();

    EXPECT_THAT(script.events(), ElementsAreArray(expected));
}

TEST_F(Unload, GivenServicesAndBundles_WhenUnloaded_ThenNothingIsRecorded)
{
    container.startBundles(Names{host.add("alpha"), host.add("beta")});
    container.loadServices(Names{"(test.word=alpha)", "(test.word=beta)"});

    container.unload();

    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
    EXPECT_THAT(container.listManuallyLoadedServices(), IsEmpty());
}

TEST_F(Unload, GivenServicesAndBundles_WhenUnloaded_ThenNothingIsLogged)
{
    container.startBundle(host.add("alpha"));
    container.loadService("(test.word=alpha)");
    log.clear();

    container.unload();

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(Unload, GivenUnloadedContainer_WhenUnloadedAgain_ThenNothingHappens)
{
    container.startBundle(host.add("alpha"));
    container.loadService("(test.word=alpha)");
    container.unload();
    script.clear();
    log.clear();

    container.unload();

    EXPECT_THAT(script.events(), IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(Unload, GivenNameRecordedWithoutLocation_WhenUnloaded_ThenTheEntryStays)
{
    container.stopBundle("unknown");

    container.unload();

    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(""));
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(Unload, GivenBundleUninstalledElsewhere_WhenUnloaded_ThenItsEntryStays)
{
    container.startBundle(host.add("alpha"));
    host.bundleIn("libalpha.so").Uninstall();

    container.unload();

    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("libalpha.so")));
}

TEST_F(Unload, GivenUnloadedContainer_WhenUsedAgain_ThenItWorksAsBefore)
{
    container.startBundle(host.add("alpha"));
    container.unload();

    container.startBundle("libalpha.so");
    container.loadService("(test.word=alpha)");

    EXPECT_EQ(stateOf("libalpha.so"), active);
    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(1));
}

TEST_F(Unload, GivenServiceThatIsReleased_WhenAnotherThreadUsesTheContainer_ThenItNeedNotWait)
{
    container.startBundle(host.add("alpha"));
    container.loadService("(test.word=alpha)");
    bool wasFree = false;
    script.on("release alpha", [&](auto) { wasFree = lockIsFree(container); });

    container.unload();

    EXPECT_TRUE(wasFree);
}

TEST_F(Unload, GivenBundleThatStops_WhenAnotherThreadUsesTheContainer_ThenItWaits)
{
    bool otherWaited = false;
    std::unique_ptr<OtherThread> other;
    script.on("stop alpha", [&](auto) {
        other = std::make_unique<OtherThread>([this] { container.listManuallyLoadedBundles(); });
        otherWaited = !other->finishesWithin(glance);
    });
    container.startBundle(host.add("alpha"));

    container.unload();

    EXPECT_TRUE(otherWaited);
    EXPECT_TRUE(other->finishesWithin());
}

TEST_F(Unload, GivenCallFromAnActivator_WhenUnloaded_ThenAllButTheStartingBundleGoes)
{
    container.startBundle(host.add("alpha"));
    container.loadService("(test.word=alpha)");
    script.on("start beta", [this](auto) { container.unload(); });
    script.clear();

    container.startBundle(host.add("beta"));

    EXPECT_THAT(script.events(), ElementsAre("start beta", "release alpha", "stop alpha"));
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("libbeta.so")));
}

TEST_F(Unload, GivenCallerThatHoldsTheLock_WhenUnloaded_ThenItStaysHeldThroughout)
{
    container.startBundle(host.add("alpha"));
    container.loadService("(test.word=alpha)");
    bool otherWaited = false;
    std::unique_ptr<OtherThread> other;
    script.on("release alpha", [&](auto) {
        other = std::make_unique<OtherThread>([this] { container.listManuallyLoadedBundles(); });
        otherWaited = !other->finishesWithin(glance);
    });
    script.on("start beta", [this](auto) { container.unload(); });

    container.startBundle(host.add("beta"));

    EXPECT_TRUE(otherWaited);
    EXPECT_TRUE(other->finishesWithin());
}

TEST_F(Unload, GivenServiceLoadedMeanwhile_WhenUnloaded_ThenItStaysHeld)
{
    container.startBundles(Names{host.add("alpha"), host.add("beta")});
    container.loadService("(test.word=alpha)");
    script.on("release alpha", [this](auto) { container.loadService("(test.word=beta)"); });

    container.unload();

    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(1));
}

TEST_F(Unload, GivenBundleStartedMeanwhile_WhenUnloaded_ThenItStaysActive)
{
    host.add("beta");
    container.startBundle(host.add("alpha"));
    container.loadService("(test.word=alpha)");
    script.on("release alpha", [this](auto) { container.startBundle("libbeta.so"); });

    container.unload();

    EXPECT_EQ(stateOf("libbeta.so"), active);
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("libbeta.so")));
}

TEST_F(Unload, GivenSinkThatThrows_WhenAStopFails_ThenItsExceptionReachesTheCallerWithTheLockFree)
{
    container.startBundle(host.add("stop_throws"));
    log.onRecord([](const LogRecord&) { throw std::runtime_error{"planned fault: sink"}; });

    EXPECT_THROW(container.unload(), std::runtime_error);

    EXPECT_TRUE(lockIsFree(container));
    log.onRecord(nullptr);
}

TEST_F(Unload, GivenSinkThatThrows_WhenTheFirstStopFails_ThenTheOtherBundlesAreNotVisited)
{
    container.startBundles(Names{host.add("alpha"), host.add("beta")});
    const auto fail = [](auto) { throw std::runtime_error{"planned fault: stop"}; };
    script.on("stop alpha", fail);
    script.on("stop beta", fail);
    log.onRecord([](const LogRecord&) { throw std::runtime_error{"planned fault: sink"}; });

    EXPECT_THROW(container.unload(), std::runtime_error);

    EXPECT_THAT(log.records(), SizeIs(1));
    EXPECT_EQ((stateOf("libalpha.so") == active) + (stateOf("libbeta.so") == active), 1);
    log.onRecord(nullptr);
}

TEST_F(Unload, GivenBundleStartedWhileItWaits_WhenUnloaded_ThenThatIsStoppedToo)
{
    startBothDuring([this] { container.unload(); });

    EXPECT_EQ(stateOf("libalpha.so"), resolved);
    EXPECT_EQ(stateOf("libbeta.so"), resolved);
}

} // namespace
} // namespace ostrel::test
