#include "container/ServiceRelease.h"

#include "support/RecordCapture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>

namespace ostrel::test {
namespace {

using ostrel::us_container::releaseLogged;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ReleaseLogged : public ::testing::Test {
protected:
    RecordCapture log;
};

TEST_F(ReleaseLogged, GivenReleaseThatWorks_WhenRun_ThenNoRecordIsWritten)
{
    bool ran = false;

    releaseLogged("name", [&ran] { ran = true; });

    EXPECT_TRUE(ran);
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(ReleaseLogged, GivenReleaseThatThrowsAnException_WhenRun_ThenTheNameAloneIsReported)
{
    releaseLogged("name", [] { throw std::runtime_error{"planned fault"}; });

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x200, "Error while unloading service name"}));
}

TEST_F(ReleaseLogged, GivenReleaseThatThrowsAnInt_WhenRun_ThenItIsReportedInTheSameWords)
{
    releaseLogged("name", [] { throw 42; });

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x200, "Error while unloading service name"}));
}

TEST_F(ReleaseLogged, GivenEmptyName_WhenTheReleaseThrows_ThenTheRecordEndsInABlank)
{
    releaseLogged("", [] { throw 42; });

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x200, "Error while unloading service "}));
}

TEST_F(ReleaseLogged, GivenSeverityMasked_WhenTheReleaseThrows_ThenNothingComesOut)
{
    ostrel::us_container::diagnosticLog().setEnabledSeverities(~std::uint32_t{0x200});

    EXPECT_NO_THROW(releaseLogged("name", [] { throw 42; }));

    EXPECT_THAT(log.records(), IsEmpty());
}

} // namespace
} // namespace ostrel::test
