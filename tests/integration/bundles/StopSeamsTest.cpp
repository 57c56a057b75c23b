#include "container/DiagnosticLog.h"
#include "support/ContainerFixture.h"
#include "support/Seams.h"

#include <gmock/gmock.h>

namespace ostrel::test {
namespace {

using cppmicroservices::Bundle;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class StopBundleSeams : public ContainerFixture {
protected:
    void SetUp() override
    {
        container.startBundle(host.add("alpha"));
        location = host.locationOf("libalpha.so");
    }

    std::string location;
    Seams seams;
};

TEST_F(StopBundleSeams, GivenInvalidHandle_WhenStopped_ThenOneRecordSaysSo)
{
    seams.getBundles = [](const std::string&) { return std::vector<Bundle>{Bundle{}}; };

    container.stopBundle("libalpha.so");

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x10, "Invalid bundle: " + location}));
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(location));
}

TEST_F(StopBundleSeams, GivenInvalidHandleAtAnEmptyLocation_WhenStopped_ThenTheRecordIsTheLiteralAlone)
{
    seams.getBundles = [](const std::string&) { return std::vector<Bundle>{Bundle{}}; };

    container.stopBundle("unknown");

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x10, "Invalid bundle: "}));
}

TEST_F(StopBundleSeams, GivenInvalidHandleBeforeAnother_WhenStopped_ThenTheOtherIsStopped)
{
    Bundle real = host.bundleIn("libalpha.so");
    seams.getBundles = [&](const std::string&) { return std::vector<Bundle>{Bundle{}, real}; };

    container.stopBundle("libalpha.so");

    EXPECT_EQ(real.GetState(), resolved);
    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x10, "Invalid bundle: " + location}));
    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
}

TEST_F(StopBundleSeams, GivenStopThatThrowsNoException_WhenStopped_ThenTwoRecordsSayWhatIsKnown)
{
    seams.stop = [](Bundle&) { throw 42; };

    container.stopBundle("libalpha.so");

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x10, "Unknown error while stoping " + location},
                                           LogRecord{0x10, "Did not stop " + location}));
}

TEST_F(StopBundleSeams, GivenStopThatThrowsButStops_WhenStopped_ThenTheNameIsForgotten)
{
    seams.stop = [](Bundle& bundle) {
        reallyStop(bundle);
        throw 42;
    };

    container.stopBundle("libalpha.so");

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x10, "Unknown error while stoping " + location}));
    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
}

class StateAfterStop : public StopBundleSeams, public ::testing::WithParamInterface<Bundle::State> {};

TEST_P(StateAfterStop, GivenStateThatIsNotDown_WhenStopped_ThenTheEntryStaysAndOneRecordSaysSo)
{
    seams.stop = [](Bundle&) {};
    seams.getState = [](const Bundle&) { return GetParam(); };

    container.stopBundle("libalpha.so");

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x10, "Did not stop " + location}));
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(location));
}

INSTANTIATE_TEST_SUITE_P(EachState, StateAfterStop,
                         ::testing::Values(Bundle::STATE_UNINSTALLED, Bundle::STATE_STARTING, Bundle::STATE_STOPPING,
                                           Bundle::STATE_ACTIVE),
                         [](const auto& info) {
                             std::ostringstream name;
                             name << info.param;
                             return name.str();
                         });

TEST_F(StopBundleSeams, GivenStopThatDoesNothing_WhenUnloadedTwice_ThenTheNameIsVisitedAgain)
{
    seams.stop = [](Bundle&) {};

    container.unload();
    container.unload();

    EXPECT_THAT(log.records(),
                ElementsAre(LogRecord{0x10, "Did not stop " + location}, LogRecord{0x10, "Did not stop " + location}));
}

TEST_F(StopBundleSeams, GivenStopThatDoesNothing_WhenReloaded_ThenTheBundleIsFoundByItsLocation)
{
    std::vector<std::string> calls;
    seams.stop = [](Bundle&) {};
    seams.installBundles = [&](const platform::Utf16Path&) {
        calls.push_back("install");
        return std::vector<Bundle>{};
    };
    seams.start = [&](Bundle& bundle) { calls.push_back("start " + bundle.GetLocation()); };

    container.reload();

    EXPECT_THAT(calls, ElementsAre("start " + location));
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(location));
}

TEST_F(StopBundleSeams, GivenStateThatThrows_WhenStopped_ThenItsExceptionLeavesTheLockFree)
{
    seams.getState = [](const Bundle&) -> Bundle::State { throw std::runtime_error{"planned fault"}; };

    EXPECT_THROW(container.stopBundle("libalpha.so"), std::runtime_error);

    EXPECT_TRUE(lockIsFree(container));
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(location));
}

TEST_F(StopBundleSeams, GivenLookupThatThrows_WhenSeveralAreStopped_ThenTheRestIsNotVisited)
{
    container.startBundle(host.add("beta"));
    seams.getBundles = [](const std::string&) -> std::vector<Bundle> { throw std::runtime_error{"planned fault"}; };

    EXPECT_THROW(container.stopBundles({"unknown", "unknown too"}), std::runtime_error);

    EXPECT_EQ(container.listManuallyLoadedBundles().size(), 3U);
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(StopBundleSeams, GivenMaskWithout0x10_WhenTheHandleIsInvalid_ThenNothingIsLogged)
{
    us_container::diagnosticLog().setEnabledSeverities(~0x10U);
    seams.getBundles = [](const std::string&) { return std::vector<Bundle>{Bundle{}}; };

    container.stopBundle("libalpha.so");

    EXPECT_THAT(log.records(), IsEmpty());
}

} // namespace
} // namespace ostrel::test
