#include "container/DiagnosticLog.h"
#include "support/ContainerFixture.h"

#include <gmock/gmock.h>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class StopBundle : public ContainerFixture {};

TEST_F(StopBundle, GivenEmptyName_WhenStopped_ThenNothingIsRecorded)
{
    container.stopBundle("");

    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
}

TEST_F(StopBundle, GivenEmptyName_WhenStopped_ThenNothingIsLogged)
{
    container.stopBundle("");

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StopBundle, GivenStartedBundle_WhenStopped_ThenItIsResolved)
{
    container.startBundle(host.add("alpha"));

    container.stopBundle("libalpha.so");

    EXPECT_EQ(stateOf("libalpha.so"), resolved);
}

TEST_F(StopBundle, GivenStartedBundle_WhenStopped_ThenItsNameIsForgotten)
{
    container.startBundle(host.add("alpha"));

    container.stopBundle("libalpha.so");

    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
}

TEST_F(StopBundle, GivenStartedBundle_WhenStopped_ThenNothingIsLogged)
{
    container.startBundle(host.add("alpha"));

    container.stopBundle("libalpha.so");

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StopBundle, GivenStartedBundle_WhenStopped_ThenItStaysInstalled)
{
    container.startBundle(host.add("alpha"));
    const long id = host.bundleIn("libalpha.so").GetBundleId();

    container.stopBundle("libalpha.so");
    container.startBundle("libalpha.so");

    EXPECT_EQ(host.bundleIn("libalpha.so").GetBundleId(), id);
}

TEST_F(StopBundle, GivenUnknownName_WhenStopped_ThenItIsRecordedWithAnEmptyLocation)
{
    container.stopBundle("unknown");

    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(""));
}

TEST_F(StopBundle, GivenUnknownName_WhenStopped_ThenNothingIsLogged)
{
    container.stopBundle("unknown");

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StopBundle, GivenActiveBundleNotStartedHere_WhenItsFileNameIsStopped_ThenItStaysActive)
{
    host.context().InstallBundles(host.locationOf(host.add("alpha"))).front().Start();

    container.stopBundle("libalpha.so");

    EXPECT_EQ(stateOf("libalpha.so"), active);
}

TEST_F(StopBundle, GivenTwoBundlesInTheFile_WhenStopped_ThenBothAreStoppedInOrder)
{
    container.startBundle(host.add("two_bundles"));
    script.clear();

    container.stopBundle("libtwo_bundles.so");

    EXPECT_THAT(script.events(), ElementsAre("stop two_bundles_first", "stop two_bundles_second"));
    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
}

TEST_F(StopBundle, GivenBundleStoppedElsewhere_WhenStopped_ThenItsNameIsForgotten)
{
    container.startBundle(host.add("alpha"));
    host.bundleIn("libalpha.so").Stop();

    container.stopBundle("libalpha.so");

    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StopBundle, GivenBundleThatIsOnlyInstalled_WhenStopped_ThenItsNameIsForgotten)
{
    container.startBundle(host.add("alpha"));
    host.bundleIn("libalpha.so").Uninstall();
    host.context().InstallBundles(host.locationOf("libalpha.so"));
    ASSERT_EQ(stateOf("libalpha.so"), installed);

    container.stopBundle("libalpha.so");

    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StopBundle, GivenBundleUninstalledElsewhere_WhenStopped_ThenTheEntryStays)
{
    container.startBundle(host.add("alpha"));
    host.bundleIn("libalpha.so").Uninstall();

    container.stopBundle("libalpha.so");

    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("libalpha.so")));
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StopBundle, GivenBundleWhoseStopThrows_WhenStopped_ThenOneRecordCarriesTheCause)
{
    container.startBundle(host.add("stop_throws"));

    container.stopBundle("libstop_throws.so");

    const std::string location = host.locationOf("libstop_throws.so");
    EXPECT_THAT(
        log.records(),
        ElementsAre(LogRecord{0x10, "Error while stoping " + location + ": Bundle stop_throws (location=" + location +
                                        "), BundleActivator::Stop() failed: planned fault: stop_throws"}));
}

TEST_F(StopBundle, GivenBundleWhoseStopThrows_WhenStopped_ThenItsNameIsForgotten)
{
    container.startBundle(host.add("stop_throws"));

    container.stopBundle("libstop_throws.so");

    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
    EXPECT_EQ(stateOf("libstop_throws.so"), resolved);
}

TEST_F(StopBundle, GivenBundleWhoseStopThrowsNoException_WhenStopped_ThenTheRecordCarriesTheFrameworksWords)
{
    container.startBundle(host.add("stop_throws_int"));

    container.stopBundle("libstop_throws_int.so");

    const std::string location = host.locationOf("libstop_throws_int.so");
    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x10, "Error while stoping " + location +
                                                               ": Bundle stop_throws_int (location=" + location +
                                                               "), BundleActivator::Stop() failed: unknown"}));
    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
}

TEST_F(StopBundle, GivenFirstOfTwoBundlesThrows_WhenStopped_ThenTheSecondIsStoppedToo)
{
    container.startBundle(host.add("two_bundles"));
    script.on("stop two_bundles_first", [](auto) { throw std::runtime_error{"planned fault"}; });
    script.clear();

    container.stopBundle("libtwo_bundles.so");

    EXPECT_THAT(script.events(), ElementsAre("stop two_bundles_first", "stop two_bundles_second"));
}

TEST_F(StopBundle, GivenMaskWithout0x10_WhenTheStopThrows_ThenNothingIsLogged)
{
    container.startBundle(host.add("stop_throws"));
    us_container::diagnosticLog().setEnabledSeverities(~0x10U);

    container.stopBundle("libstop_throws.so");

    EXPECT_THAT(log.records(), IsEmpty());
    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
}

TEST_F(StopBundle, GivenFirstBundleThatUninstallsTheSecond_WhenStopped_ThenTheSecondIsSaidNotToHaveStopped)
{
    container.startBundle(host.add("two_bundles"));
    const std::string location = host.locationOf("libtwo_bundles.so");
    script.on("stop two_bundles_first", [&](auto) { host.context().GetBundles(location).at(1).Uninstall(); });

    container.stopBundle("libtwo_bundles.so");

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x10, "Error while stoping " + location +
                                                               ": Bundle two_bundles_second (location=" + location +
                                                               ") is uninstalled"},
                                           LogRecord{0x10, "Did not stop " + location}));
}

TEST_F(StopBundle, GivenFirstBundleThatUninstallsTheSecond_WhenStopped_ThenTheNameIsForgottenForTheFirst)
{
    container.startBundle(host.add("two_bundles"));
    const std::string location = host.locationOf("libtwo_bundles.so");
    script.on("stop two_bundles_first", [&](auto) { host.context().GetBundles(location).at(1).Uninstall(); });

    container.stopBundle("libtwo_bundles.so");

    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
}

TEST_F(StopBundle, GivenActivatorThatStopsAnother_WhenStopped_ThenBothAreForgotten)
{
    container.startBundle(host.add("alpha"));
    container.startBundle(host.add("beta"));
    script.on("stop alpha", [this](auto) { container.stopBundle("libbeta.so"); });

    container.stopBundle("libalpha.so");

    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
}

TEST_F(StopBundle, GivenActivatorThatRuns_WhenAnotherThreadUsesTheContainer_ThenItWaits)
{
    bool otherWaited = false;
    std::unique_ptr<OtherThread> other;
    script.on("stop alpha", [&](auto) {
        other = std::make_unique<OtherThread>([this] { container.listManuallyLoadedBundles(); });
        otherWaited = !other->finishesWithin(glance);
    });
    container.startBundle(host.add("alpha"));

    container.stopBundle("libalpha.so");

    EXPECT_TRUE(otherWaited);
    EXPECT_TRUE(other->finishesWithin());
}

TEST_F(StopBundle, GivenInvalidContext_WhenStopped_ThenNothingIsRecorded)
{
    MicroServicesContainer broken{cppmicroservices::BundleContext{}, host.bundleDirectory()};

    broken.stopBundle("unknown");

    EXPECT_THAT(broken.listManuallyLoadedBundles(), IsEmpty());
}

TEST_F(StopBundle, GivenSinkThatThrows_WhenTheStopThrows_ThenItsExceptionLeavesTheLockFree)
{
    container.startBundle(host.add("stop_throws"));
    log.onRecord([](const LogRecord&) { throw std::runtime_error{"planned fault: sink"}; });

    EXPECT_THROW(container.stopBundle("libstop_throws.so"), std::runtime_error);

    EXPECT_TRUE(lockIsFree(container));
}

} // namespace
} // namespace ostrel::test
