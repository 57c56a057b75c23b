#include "cli/ProgramRun.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

namespace ostrel::test {

namespace {

const char* const cannotWrite = R"(ostrel-host: cannot write the result
  where: standard output
  why:   the reader is gone, or the disk is full
  do:    check where the output goes, then run the command again
)";

class StandardOutput : public testing::TestWithParam<Output> {};

std::string nameOf(const testing::TestParamInfo<Output>& info)
{
    switch (info.param) {
    case Output::fullDisk:
        return "FullDisk";
    case Output::closed:
        return "Closed";
    case Output::closedPipe:
        return "ClosedPipe";
    case Output::captured:
        break;
    }
    return "Captured";
}

} // namespace

TEST_P(StandardOutput, GivenItCannotBeWritten_WhenReporting_ThenStatusSix)
{
    const TemporaryDirectory directory;

    const ProgramResult result = runHost({"run", directory.path()}, GetParam());

    EXPECT_EQ(result.status, 6);
    EXPECT_EQ(result.err, cannotWrite);
}

TEST_P(StandardOutput, GivenItCannotBeWritten_WhenShowingHelp_ThenStatusSix)
{
    const ProgramResult result = runHost({"--help"}, GetParam());

    EXPECT_EQ(result.status, 6);
    EXPECT_EQ(result.err, cannotWrite);
}

INSTANTIATE_TEST_SUITE_P(Unwritable, StandardOutput,
                         testing::Values(Output::fullDisk, Output::closed, Output::closedPipe), nameOf);

} // namespace ostrel::test
