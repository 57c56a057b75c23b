#include "container/DiagnosticLog.h"
#include "support/ContainerFixture.h"

#include <boost/log/attributes/value_extraction.hpp>
#include <boost/log/attributes/value_visitation.hpp>
#include <boost/log/core/core.hpp>
#include <gmock/gmock.h>

#include <atomic>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

namespace logging = boost::log;

class Log : public ContainerFixture {};

TEST(LogMask, GivenNewProcess_WhenRead_ThenAllBitsAreSet)
{
    EXPECT_EQ(us_container::diagnosticLog().enabledSeverities(), 0xFFFFFFFFU);
}

TEST_F(Log, GivenMask_WhenSet_ThenItIsReadBack)
{
    us_container::diagnosticLog().setEnabledSeverities(0x218);

    EXPECT_EQ(us_container::diagnosticLog().enabledSeverities(), 0x218U);
}

TEST_F(Log, GivenMask_WhenTheLibraryLogs_ThenItDoesNotChangeTheMask)
{
    us_container::diagnosticLog().setEnabledSeverities(0x8);

    container.startBundle("missing.so");

    EXPECT_EQ(us_container::diagnosticLog().enabledSeverities(), 0x8U);
}

TEST_F(Log, GivenSource_WhenAskedTwice_ThenItIsTheSame)
{
    EXPECT_EQ(&us_container::diagnosticLog(), &us_container::diagnosticLog());
}

TEST_F(Log, GivenMaskOfOtherBitsOnly_WhenInstallFails_ThenNothingIsLogged)
{
    us_container::diagnosticLog().setEnabledSeverities(~(0x8U | 0x200U));

    container.startBundle("missing.so");

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(Log, GivenMaskOfJustItsBit_WhenInstallFails_ThenTheRecordIsWritten)
{
    us_container::diagnosticLog().setEnabledSeverities(0x8);

    container.startBundle("missing.so");

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x8, "Unable to install bundle: "}));
}

TEST_F(Log, GivenRecord_WhenAHostReadsItsAttributes_ThenChannelAndSeverityHaveTheirTypes)
{
    bool hasChannel = false;
    bool hasSeverity = false;
    logging::core::get()->set_filter([&](const logging::attribute_value_set& attributes) {
        const auto channel = logging::extract<std::string>("Channel", attributes);
        const auto severity = logging::extract<std::uint32_t>("Severity", attributes);
        hasChannel = channel && *channel == "ostrel::us_container";
        hasSeverity = severity && *severity == 0x8;
        return true;
    });
    us_container::diagnosticLog().setEnabledSeverities(0x8);

    container.startBundle("missing.so");

    EXPECT_TRUE(hasChannel);
    EXPECT_TRUE(hasSeverity);
}

TEST_F(Log, GivenDisabledCore_WhenInstallFails_ThenNothingIsLogged)
{
    logging::core::get()->set_logging_enabled(false);

    container.startBundle("missing.so");

    EXPECT_THAT(log.records(), IsEmpty());
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(""));
}

TEST_F(Log, GivenCoreFilterThatRejectsAll_WhenInstallFails_ThenNothingIsLogged)
{
    logging::core::get()->set_filter([](const logging::attribute_value_set&) { return false; });

    container.startBundle("missing.so");

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(Log, GivenSinkThatAskedForIt_WhenItsThreadLogsAnew_ThenNothingBlocks)
{
    MicroServicesContainer other{host.context(), host.bundleDirectory()};
    bool isNested = false;
    log.onRecord([&](const LogRecord&) {
        if (!isNested) {
            isNested = true;
            other.startBundle("missing.so");
        }
    });

    container.startBundle("missing.so");

    EXPECT_THAT(log.records(), SizeIs(4));
}

TEST_F(Log, GivenSinkThatIsBusy_WhenAnotherThreadLogs_ThenItNeedNotWait)
{
    MicroServicesContainer other{host.context(), host.bundleDirectory()};
    std::atomic<bool> isNested = false;
    bool otherFinished = false;
    log.onRecord([&](const LogRecord&) {
        if (!isNested.exchange(true)) {
            otherFinished = OtherThread{[&] { other.startBundle("missing.so"); }}.finishesWithin();
        }
    });

    container.startBundle("missing.so");

    EXPECT_TRUE(otherFinished);
}

TEST_F(Log, GivenRecordThatIsPushed_WhenAnotherThreadUsesTheContainer_ThenItWaits)
{
    bool otherWaited = false;
    std::unique_ptr<OtherThread> other;
    us_container::diagnosticLog().setEnabledSeverities(0x8);
    log.onRecord([&](const LogRecord&) {
        other = std::make_unique<OtherThread>([this] { container.listManuallyLoadedBundles(); });
        otherWaited = !other->finishesWithin(glance);
    });

    container.startBundle("missing.so");

    EXPECT_TRUE(otherWaited);
    EXPECT_TRUE(other->finishesWithin());
}

} // namespace
} // namespace ostrel::test
