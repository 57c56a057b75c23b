#include "cli/ProgramRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ostrel::test {

using testing::StartsWith;

namespace {

const char* const malformed = "malformed filter: component.malformed_filter: unexpected type for filters: "
                              "{\"language\" : \"en\"}\n";
const char* const admitted = "decision: component.malformed_filter: empty filter does match\n"
                             "decision: Starting bundle: component.malformed_filter\n";

ProgramResult runOverMalformedFilter(const std::vector<std::string>& options)
{
    std::vector<std::string> arguments{"run", OSTREL_TEST_MALFORMED_FILTER};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return runHost(arguments);
}

} // namespace

TEST(LogLevel, GivenNone_ThenProblemsAreShown)
{
    EXPECT_EQ(runOverMalformedFilter({}).err, malformed);
}

TEST(LogLevel, GivenLevelNone_ThenNothingIsShown)
{
    EXPECT_EQ(runOverMalformedFilter({"--log-level", "none"}).err, "");
}

TEST(LogLevel, GivenDecisions_ThenProblemsAndDecisionsAreShown)
{
    EXPECT_EQ(runOverMalformedFilter({"--log-level", "decisions"}).err, std::string{malformed} + admitted);
}

TEST(LogLevel, GivenAll_ThenStandardOutputStillHoldsTheReportAlone)
{
    const ProgramResult result = runOverMalformedFilter({"--report", "--log-level", "all"});

    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, StartsWith("Bundles:\n    malformed_filter, 1, ACTIVE\n"));
    EXPECT_EQ(result.out, runOverMalformedFilter({"--report", "--log-level", "none"}).out);
}

} // namespace ostrel::test
