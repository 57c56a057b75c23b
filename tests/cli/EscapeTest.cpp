#include "cli/FaultRun.h"
#include "cli/ZipBundle.h"

#include <gmock/gmock.h>

namespace ostrel::test {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

/// Bundles that hold what a terminal takes for commands.
class Escape : public FaultRun {
protected:
    void addNamed(const std::string& fileName, const std::string& zq) const
    {
        directory.write(fileName,
                        zipBundle("odd\x1b[2J\nname", R"({"bundle.symbolic_name": "odd", "zq": )" + zq + "}"));
    }

    ProgramResult onTerminal(const std::vector<std::string>& options = {}) const
    {
        Surroundings surroundings;
        surroundings.output = Output::terminal;
        return run(options, surroundings);
    }
};

const char* const oddComponent = R"({"component": {"name": "component\u001b]0;title\u0007\u000aof a kind"}})";

} // namespace

TEST_F(Escape, GivenNoTerminal_ThenTheReportIsByteForByte)
{
    addNamed("odd.zip", oddComponent);

    const ProgramResult result = run({"--report"});

    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, StartsWith("Bundles:\n    odd\x1b[2J\nname, 1, ACTIVE\n"));
    EXPECT_THAT(result.out, HasSubstr("component\x1b]0;title\x07\nof a kind"));
}

TEST_F(Escape, GivenTerminal_ThenTheReportIsEscapedAndItsLinesStay)
{
    addNamed("odd.zip", oddComponent);

    const ProgramResult result = onTerminal({"--report"});

    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, StartsWith("Bundles:\n    odd\\x1B[2J\nname, 1, ACTIVE\n"));
    EXPECT_THAT(result.out, HasSubstr("component\\x1B]0;title\\x07\nof a kind"));
    EXPECT_THAT(result.out, Not(HasSubstr("\x1b")));
}

TEST_F(Escape, GivenTerminal_ThenTheConsoleReportsAreEscaped)
{
    addNamed("odd.zip", oddComponent);

    const ProgramResult result = onTerminal({"--console"});

    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, HasSubstr("odd\\x1B[2J\nname | ACTIVE\n"));
    EXPECT_THAT(result.out, Not(HasSubstr("\x1b")));
}

TEST_F(Escape, GivenTerminalAndOddServiceProperty_ThenItIsEscaped)
{
    add("odd_service");

    const ProgramResult result = onTerminal({"--report"});

    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.out, HasSubstr("title = odd\\x1B[31m\\x08\n"));
    EXPECT_THAT(result.out, Not(HasSubstr("\x1b")));
}

TEST_F(Escape, GivenOddExceptionText_ThenItIsOneLine)
{
    EXPECT_EQ(
        runWith("throws_in_start").err,
        R"(ostrel-host: error: <bundles>/throws_in_start.so: the bundle "throws_in_start" did not start: its start )"
        R"(threw an exception [start-throws]
  why: planned\x1B[31m\nfault
  do:  repair its activator, or refuse the bundle by other conditions
)");
}

TEST_F(Escape, GivenJson_ThenItHoldsNothingThatATerminalCouldTakeForACommand)
{
    directory.write("a.zip", zipBundle("a", "{\"bundle.symbolic_name\": \"a\", \"zq\": {\"component\": {\"name\": "
                                            "\"x\\u001b\x7F\u009B\u202E\u2028\u00A0é€😀\"}}}"));

    const std::string out = runHost({"explain", directory.path(), "--json"}).out;

    EXPECT_THAT(out, HasSubstr(R"("name": "x\u001B\u007f\u009b\u202e\u2028)"
                               "\u00A0é€😀\"")); // these are no commands
}

TEST_F(Escape, GivenRecordsWithLineEnds_ThenEachIsOneLine)
{
    addNamed("odd.zip", oddComponent);

    EXPECT_EQ(run({"--log-level", "decisions"}).err,
              "decision: component\\x1B]0;title\\x07\\nof a kind: empty filter does match\n"
              "decision: Starting bundle: component\\x1B]0;title\\x07\\nof a kind\n");
}

TEST_F(Escape, GivenOddFileName_ThenItIsShownWithEscapes)
{
    directory.write("libodd\x1b[1m\n.so", "text");

    EXPECT_EQ(run().err, R"(ostrel-host: error: <bundles>/libodd\x1B[1m\n.so: the file is no bundle [not-a-bundle]
  why: it is neither a shared object nor a zip archive
  do:  build it again if it is to be a bundle; else take it out of the directory
ostrel-host: note: nothing is started; with --keep-going the rest would be
)");
}

TEST_F(Escape, GivenOddSymbolicName_ThenTheErrorThatNamesItIsOneLine)
{
    addNamed("odd.zip", "{}");

    EXPECT_EQ(run().err,
              R"(ostrel-host: error: <bundles>/odd.zip: the bundle "odd\x1B[2J\nname" has no component name )"
              R"([no-component-name]
  why: its manifest has no "zq": {"component": {"name": ...}}, by which the container knows a bundle
  do:  add it to the manifest, and build the bundle again
ostrel-host: note: nothing is started; with --keep-going the rest would be
)");
}

} // namespace ostrel::test
