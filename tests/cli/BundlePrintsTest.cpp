#include "cli/CanonicalReport.h"
#include "cli/FaultRun.h"

namespace ostrel::test {

namespace {

class BundlePrints : public FaultRun {};

// To a file, the library of C and std::cout write when the process ends.
const char* const printed = "start: write\nstop: write\nstart: printf\nstart: cout\nstop: printf\nstop: cout\n";

std::string reportOf(const std::string& name)
{
    return canonicalReport("Bundles:\n    " + name + R"(, 1, ACTIVE
        bundle.activator = 1
        bundle.symbolic_name = )" +
                           name + R"(
        bundle.version = 1.0.0
        zq = {component : {name : component.)" +
                           name + R"(}}
Manually loaded service types:
Bundle services:
    )" + name + ":\n");
}

std::string consoleReportOf(const std::string& name)
{
    const std::string rule(90, '-');
    return " Id  |                                  Library |                                     Name | Status\n" +
           rule + "\n   1 | " + std::string(40 - name.size(), ' ') + name +
           " | ACTIVE\n   0 |                            system_bundle | ACTIVE\n"
           "Manually loaded service types: \n" +
           name + ":\nsystem_bundle:\n";
}

} // namespace

TEST_F(BundlePrints, GivenAllMeansOfPrinting_ThenStandardOutputHoldsTheReportAlone)
{
    const ProgramResult result = runWith("prints", {"--report"});

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(canonicalReport(result.out), reportOf("prints"));
    EXPECT_EQ(result.err, printed);
}

TEST_F(BundlePrints, GivenAllMeansOfPrinting_ThenStandardOutputHoldsTheConsoleReportsAlone)
{
    const ProgramResult result = runWith("prints", {"--console"});

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, consoleReportOf("prints"));
    EXPECT_EQ(result.err, printed);
}

TEST_F(BundlePrints, GivenThreadsThatPrintAllTheTime_ThenTheConsoleReportsAreWhole)
{
    add("prints_in_thread");

    const ProgramResult result = run({"--console"});

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, consoleReportOf("prints_in_thread"));
    EXPECT_EQ(result.err.substr(0, 6), "noise\n");
}

TEST_F(BundlePrints, GivenStandardOutputThatIsClosed_ThenStatusSixAndStandardErrorHasTheRest)
{
    add("prints");

    const ProgramResult result = run({}, Surroundings{{}, Output::closed, 80, {}});

    EXPECT_EQ(result.status, 6);
    // What the bundle printed is written out before an error is shown.
    EXPECT_EQ(result.err, std::string{printed} +
                              "ostrel-host: error: standard output: the result cannot be written\n"
                              "  why: Bad file descriptor\n  do:  check where standard output goes\n");
}

} // namespace ostrel::test
