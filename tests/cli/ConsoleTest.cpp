#include "cli/ProgramRun.h"
#include "support/TemporaryDirectory.h"
#include "support/TestBundles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace ostrel::test {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

const std::string tableHead =
    " Id  |                                  Library |                                     Name | Status\n" +
    std::string(90, '-') + "\n";
const std::string systemRow = "   0 |                            system_bundle | ACTIVE\n";

} // namespace

TEST(RunConsole, GivenEmptyDirectory_ThenBothReportsShowTheFrameworkAlone)
{
    const TemporaryDirectory empty;

    const ProgramResult result = runHost({"run", empty.path(), "--console"});

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, tableHead + systemRow + "Manually loaded service types: \nsystem_bundle:\n");
    EXPECT_EQ(result.err, "ostrel-host: warning: \"" + empty.path().string() + "\" holds no bundle\n");
}

TEST(RunConsole, GivenBundleWithServices_ThenTheyAreListedWithTheirUsersAndTheOtherReportIsNot)
{
    const TemporaryDirectory directory;
    std::filesystem::copy_file(testBundle("three_services"), directory.path() / "three_services.so");

    const ProgramResult result = runHost({"run", directory.path(), "--console", "--when", "mode=day"});

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(result.out, StartsWith(tableHead + "   1 |                           three_services | ACTIVE\n" +
                                       systemRow + "Manually loaded service types: \n  (service.id="));
    EXPECT_THAT(result.out, HasSubstr("three_services:\n"
                                      "  Service: [three_services::Lamp] (used by: system_bundle)\n"
                                      "  Service: [three_services::Lamp]\n"
                                      "  Service: [three_services::Lamp] (used by: system_bundle)\n"
                                      "system_bundle:\n"));
    EXPECT_THAT(result.out, Not(HasSubstr("Bundle services:")));
}

TEST(RunConsole, GivenRefusedBundle_ThenItStandsInTheTableAllTheSame)
{
    const TemporaryDirectory directory;
    std::filesystem::copy_file(testBundle("three_services"), directory.path() / "three_services.so");

    const ProgramResult result = runHost({"run", directory.path(), "--console", "--require", "mode=day"});

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, tableHead + "   1 |                           three_services | INSTALLED\n" + systemRow +
                              "Manually loaded service types: \nthree_services:\nsystem_bundle:\n");
}

TEST(RunConsole, GivenStandardOutputThatCannotBeWritten_ThenStatusSix)
{
    const TemporaryDirectory empty;

    EXPECT_EQ(runHost({"run", empty.path(), "--console"}, Output::fullDisk).status, 6);
    EXPECT_EQ(runHost({"run", empty.path(), "--console"}, Output::closed).status, 6);
    EXPECT_EQ(runHost({"run", empty.path(), "--console"}, Output::closedPipe).status, 6);
}

} // namespace ostrel::test
