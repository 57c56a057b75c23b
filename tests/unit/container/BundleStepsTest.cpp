#include "container/BundleSteps.h"

#include "container/DiagnosticLog.h"
#include "support/Host.h"
#include "support/RecordCapture.h"

#include <gmock/gmock.h>

namespace ostrel::test {
namespace {

using cppmicroservices::Bundle;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using us_container::startIfValid;
using us_container::stopAndCheck;

class StartIfValid : public HostFixture {};
class StopAndCheck : public HostFixture {
protected:
    /// Installs and starts a bundle.
    Bundle started(const std::string& target)
    {
        Bundle bundle = host.context().InstallBundles(host.locationOf(host.add(target))).front();
        bundle.Start();
        return bundle;
    }

    RecordCapture log;
};

TEST_F(StartIfValid, GivenInvalidHandle_WhenStarted_ThenItSaysSo)
{
    Bundle invalid;

    EXPECT_FALSE(startIfValid(invalid));
}

TEST_F(StartIfValid, GivenInvalidHandle_WhenStarted_ThenNothingIsLogged)
{
    const RecordCapture log;
    Bundle invalid;

    startIfValid(invalid);

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StartIfValid, GivenInstalledBundle_WhenStarted_ThenItIsActive)
{
    Bundle bundle = host.context().InstallBundles(host.locationOf(host.add("alpha"))).front();

    EXPECT_TRUE(startIfValid(bundle));

    EXPECT_EQ(bundle.GetState(), Bundle::STATE_ACTIVE);
}

TEST_F(StartIfValid, GivenBundleWhoseStartThrows_WhenStarted_ThenTheExceptionReachesTheCaller)
{
    Bundle bundle = host.context().InstallBundles(host.locationOf(host.add("start_throws"))).front();

    EXPECT_THROW(startIfValid(bundle), std::runtime_error);
}

TEST_F(StopAndCheck, GivenInvalidHandle_WhenStopped_ThenItIsNotDown)
{
    Bundle invalid;

    EXPECT_FALSE(stopAndCheck(invalid, "some location"));
}

TEST_F(StopAndCheck, GivenInvalidHandle_WhenStopped_ThenOneRecordNamesTheLocation)
{
    Bundle invalid;

    stopAndCheck(invalid, "some location");

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x10, "Invalid bundle: some location"}));
}

TEST_F(StopAndCheck, GivenInvalidHandleAndEmptyLocation_WhenStopped_ThenTheRecordIsTheLiteralAlone)
{
    Bundle invalid;

    stopAndCheck(invalid, "");

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x10, "Invalid bundle: "}));
}

TEST_F(StopAndCheck, GivenInvalidHandleAndMaskWithoutItsBit_WhenStopped_ThenNothingIsLogged)
{
    us_container::diagnosticLog().setEnabledSeverities(~0x10U);
    Bundle invalid;

    stopAndCheck(invalid, "some location");

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StopAndCheck, GivenActiveBundle_WhenStopped_ThenItIsDown)
{
    Bundle bundle = started("alpha");

    EXPECT_TRUE(stopAndCheck(bundle, "some location"));

    EXPECT_EQ(bundle.GetState(), Bundle::STATE_RESOLVED);
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StopAndCheck, GivenInstalledBundle_WhenStopped_ThenItIsDown)
{
    Bundle bundle = host.context().InstallBundles(host.locationOf(host.add("alpha"))).front();

    EXPECT_TRUE(stopAndCheck(bundle, "some location"));

    EXPECT_EQ(bundle.GetState(), Bundle::STATE_INSTALLED);
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StopAndCheck, GivenBundleWhoseStopThrows_WhenStopped_ThenItIsDownAllTheSame)
{
    Bundle bundle = started("stop_throws");

    EXPECT_TRUE(stopAndCheck(bundle, "some location"));

    EXPECT_EQ(log.records().size(), 1U);
}

TEST_F(StopAndCheck, GivenUninstalledBundle_WhenStopped_ThenTwoRecordsSayWhy)
{
    Bundle bundle = started("alpha");
    bundle.Uninstall();

    EXPECT_FALSE(stopAndCheck(bundle, "L"));

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x10, "Error while stoping L: Bundle alpha (location=" +
                                                               host.locationOf("libalpha.so") + ") is uninstalled"},
                                           LogRecord{0x10, "Did not stop L"}));
}

} // namespace
} // namespace ostrel::test
