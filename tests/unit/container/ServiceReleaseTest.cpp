#include "container/ServiceRelease.h"

#include "support/RecordCapture.h"

#include <gmock/gmock.h>

#include <pthread.h>
#include <stdexcept>
#include <thread>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using us_container::releaseLogged;

class ReleaseLogged : public ::testing::Test {
protected:
    RecordCapture log;
};

TEST_F(ReleaseLogged, GivenRelease_WhenRun_ThenItIsCalledOnce)
{
    int calls = 0;

    releaseLogged("name", [&] { ++calls; });

    EXPECT_EQ(calls, 1);
}

TEST_F(ReleaseLogged, GivenReleaseThatWorks_WhenRun_ThenNothingIsLogged)
{
    releaseLogged("name", [] {});

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(ReleaseLogged, GivenReleaseThatThrows_WhenRun_ThenOneRecordNamesTheService)
{
    releaseLogged("name", [] { throw std::runtime_error{"planned fault"}; });

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x200, "Error while unloading service name"}));
}

TEST_F(ReleaseLogged, GivenReleaseThatThrowsNoException_WhenRun_ThenTheRecordIsTheSame)
{
    releaseLogged("name", [] { throw 42; });

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x200, "Error while unloading service name"}));
}

TEST_F(ReleaseLogged, GivenEmptyName_WhenTheReleaseThrows_ThenTheRecordIsTheLiteralAlone)
{
    releaseLogged("", [] { throw 42; });

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x200, "Error while unloading service "}));
}

TEST_F(ReleaseLogged, GivenMaskWithoutItsBit_WhenTheReleaseThrows_ThenNothingIsLogged)
{
    us_container::diagnosticLog().setEnabledSeverities(~0x200U);

    releaseLogged("name", [] { throw 42; });

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(ReleaseLogged, GivenReleaseThatEndsTheThread_WhenRun_ThenTheThreadEnds)
{
    bool returned = false;

    std::thread{[&] {
        releaseLogged("name", [] { pthread_exit(nullptr); });
        returned = true;
    }}.join();

    EXPECT_FALSE(returned);
    EXPECT_THAT(log.records(), IsEmpty());
}

} // namespace
} // namespace ostrel::test
