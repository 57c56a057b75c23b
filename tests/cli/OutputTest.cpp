#include "cli/ProgramRun.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

namespace ostrel::test {

namespace {

std::string cannotWrite(Output output)
{
    const std::string head = "ostrel-host: error: standard output: the result cannot be written\n  why: ";
    switch (output) {
    case Output::fullDisk:
        return head + "the disk is full\n  do:  make room, or write to another place\n";
    case Output::closedPipe:
        return head + "its reader is gone\n  do:  let the reader read to the end, or write to a file\n";
    default:
        return head + "Bad file descriptor\n  do:  check where standard output goes\n";
    }
}

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
    default:
        return "Written";
    }
}

} // namespace

TEST_P(StandardOutput, GivenItCannotBeWritten_WhenReporting_ThenStatusSix)
{
    const TemporaryDirectory directory;

    const ProgramResult result = runHost({"run", directory.path(), "--log-level", "none"}, GetParam());

    EXPECT_EQ(result.status, 6);
    EXPECT_EQ(result.err, cannotWrite(GetParam()));
}

TEST_P(StandardOutput, GivenItCannotBeWritten_WhenShowingHelp_ThenStatusSix)
{
    const ProgramResult result = runHost({"--help"}, GetParam());

    EXPECT_EQ(result.status, 6);
    EXPECT_EQ(result.err, cannotWrite(GetParam()));
}

INSTANTIATE_TEST_SUITE_P(Unwritable, StandardOutput,
                         testing::Values(Output::fullDisk, Output::closed, Output::closedPipe), nameOf);

} // namespace ostrel::test
