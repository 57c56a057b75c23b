#include "cli/FaultRun.h"

namespace ostrel::test {

namespace {

/// Bundles that end the process themselves.
class Exit : public FaultRun {
protected:
    void expectExit(const std::string& name, const std::string& during, const std::string& out = "") const
    {
        const ProgramResult result = runWith(name);

        EXPECT_EQ(result.status, 4);
        EXPECT_EQ(result.out.substr(0, out.size() + 1), out);
        EXPECT_EQ(result.err, "ostrel-host: error: <bundles>/" + name + ".so: the bundle \"" + name +
                                  "\" ended the process " + during +
                                  " [exits]\n"
                                  "  why: then no other bundle runs on, nothing more is reported, and no bundle is "
                                  "stopped\n"
                                  "  do:  let the bundle throw an exception instead, which says what is wrong\n");
    }
};

} // namespace

TEST_F(Exit, GivenStart_ThenStatusFourAndTheBundleIsNamed)
{
    expectExit("exits_in_start", "while it was being started: it called exit(42)");
}

TEST_F(Exit, GivenFactory_ThenTheBundleWhoseCodeItIsIsNamed)
{
    expectExit("exits_in_factory", "while the services were being loaded: it called exit(42)");
}

TEST_F(Exit, GivenThreadOfABundle_ThenTheBundleWhoseCodeItIsIsNamed)
{
    expectExit("exits_in_thread", "on another thread while the bundles were being started: it called exit(42)");
}

TEST_F(Exit, GivenQuickExit_ThenStatusFourAndTheBundleIsNamed)
{
    expectExit("quickExits_in_start", "while it was being started: it called quick_exit()");
}

TEST_F(Exit, GivenStop_ThenTheReportIsWrittenBefore)
{
    add("exits_in_stop");

    const ProgramResult result = run({"--report"});

    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(result.out.substr(0, 39), "Bundles:\n    exits_in_stop, 1, ACTIVE\n ");
    EXPECT_EQ(
        result.err.substr(0, result.err.find('\n')),
        "ostrel-host: error: <bundles>/exits_in_stop.so: the bundle \"exits_in_stop\" ended the process while it was "
        "being stopped: it called exit(42) [exits]");
}

TEST_F(Exit, GivenPrintedTextThatWaits_ThenItIsNotLost)
{
    add("prints", "a.so");

    const ProgramResult result = runWith("exits_in_start");

    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(result.err.substr(result.err.find("start: printf")), "start: printf\nstart: cout\n");
}

} // namespace ostrel::test
