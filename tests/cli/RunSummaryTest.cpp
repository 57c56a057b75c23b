#include "cli/CommandRun.h"
#include "cli/ZipBundle.h"
#include "support/TestBundles.h"

#include <gmock/gmock.h>

#include <cstdlib>

namespace ostrel::test {

using testing::HasSubstr;
using testing::IsEmpty;

namespace {

class RunSummary : public CommandRun {
protected:
    void addTest(const std::string& target, const std::string& fileName) const
    {
        std::filesystem::copy_file(testBundle(target), directory.path() / fileName);
    }
};

} // namespace

TEST_F(RunSummary, GivenBundles_ThenEachHasALineByNameAndCountsFollow)
{
    write("z", R"([{"mode": "day"}])");
    write("b", R"([{"mode": "night"}])");
    addTest("three_services", "c.so");

    const ProgramResult result = run({"--when", "mode=day"});

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out,
              R"(component.b: refused: its only alternative declares mode "night", but the condition is "day"
component.z: started: alternative 1 of 1 matches
lamps: started: it declares no filters, and no condition is required
2 started, 1 refused; 2 services loaded, 1 refused
)");
}

TEST_F(RunSummary, GivenReportAndConsole_ThenBothAreThereAndTheSummaryIsNot)
{
    const ProgramResult both = run({"--report", "--console"});

    EXPECT_EQ(both.out, run({"--console"}).out + run({"--report"}).out);
    EXPECT_EQ(run({"--report"}).out, "Bundles:\nManually loaded service types:\nBundle services:\n");
}

TEST_F(RunSummary, GivenNamesThatForgeLines_ThenTheyAreEscaped)
{
    directory.write("a.zip", zipBundle("a", R"({"bundle.symbolic_name": "a",
        "zq": {"component": {"name": "x\n9 started\u001b[2J"}}})"));

    EXPECT_EQ(run().out, "x\\n9 started\\x1B[2J: started: it declares no filters, and no condition is required\n"
                         "1 started; 0 services loaded\n");
}

TEST_F(RunSummary, GivenSilentMistakes_ThenEachIsALine)
{
    write("a", R"([{"language": "en"}])");
    directory.write("notes", "text");
    directory.write("b.zip", zipBundle("b", R"({"bundle.symbolic_name": "b",
        "zq": {"component": {"name": "component.a"}}})"));

    EXPECT_EQ(run({"--when", "langauge=en"}).err,
              "ostrel-host: warning: 1 file passed over: \"<bundles>/notes\": it is neither a shared object nor a zip "
              "archive\n"
              "ostrel-host: warning: 2 bundles have the component name \"component.a\": \"<bundles>/a.zip\", "
              "\"<bundles>/b.zip\"; the container knows the last one alone, so it stops only that one\n"
              "ostrel-host: warning: neither a bundle nor a service declares the condition \"langauge\": did you mean "
              "language?\n");
}

TEST_F(RunSummary, GivenConditionThatAServiceDeclares_ThenNothingIsSaid)
{
    addTest("three_services", "c.so");

    EXPECT_EQ(run({"--when", "mode=day"}).err, "");
    EXPECT_THAT(run({"--when", "mod=day"}).err, HasSubstr("\"mod\": did you mean mode?"));
}

TEST_F(RunSummary, GivenNothingAdmitted_ThenExplainIsNamed)
{
    write("a", "[]");

    EXPECT_EQ(run().err, "ostrel-host: warning: the conditions admit none of 1 bundle; 'ostrel-host explain' says why, "
                         "and what would\n");
}

TEST_F(RunSummary, GivenFoldersAlone_ThenItSaysThatTheyAreNotEntered)
{
    std::filesystem::create_directory(path("folder"));

    EXPECT_EQ(run().err,
              "ostrel-host: warning: \"<bundles>\" holds no bundle; the directories in it are not entered\n");
}

TEST_F(RunSummary, GivenLevelNone_ThenNothingIsSaid)
{
    EXPECT_EQ(run({"--log-level", "none"}).err, "");
}

class KeepGoing : public RunSummary {};

TEST_F(KeepGoing, GivenFilesAndStartsThatFail_ThenTheRestRunsAndAllAreNamed)
{
    write("a");
    directory.write("b.so", "text");
    addTest("start_throws", "c.so");
    addTest("start_throws_int", "d.so");
    addTest("three_services", "e.so");

    const ProgramResult result = run({"--keep-going"});

    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(result.out,
              R"(<bundles>/b.so: failed: the file is no bundle: it is neither a shared object nor a zip archive
component.a: started: it declares no filters, and no condition is required
component.start_throws: failed: its start threw an exception: planned fault: start_throws
component.start_throws_int: failed: its start threw something that is no std::exception: the framework does not tell what it was
lamps: started: it declares no filters, and no condition is required
2 started, 3 failed; 3 services loaded
)");
    EXPECT_EQ(result.err,
              R"(ostrel-host: note: goes on without what fails
ostrel-host: note: goes on without '<bundles>/c.so'
ostrel-host: note: goes on without '<bundles>/d.so'
ostrel-host: error: <bundles>/b.so: the file is no bundle [not-a-bundle]
  why: it is neither a shared object nor a zip archive
  do:  build it again if it is to be a bundle; else take it out of the directory
ostrel-host: error: <bundles>/c.so: the bundle "start_throws" did not start: its start threw an exception [start-throws]
  why: planned fault: start_throws
  do:  repair its activator, or refuse the bundle by other conditions
ostrel-host: error: <bundles>/d.so: the bundle "start_throws_int" did not start: its start threw something that is no std::exception [start-throws]
  why: the framework does not tell what it was
  do:  repair its activator, or refuse the bundle by other conditions
)");
}

TEST_F(KeepGoing, GivenTwoFilesWithOneBundle_ThenTheFirstByNameStays)
{
    write("a");
    std::filesystem::copy_file(path("a.zip"), path("b.zip"));

    const ProgramResult result = run({"--keep-going", "--report"});

    EXPECT_EQ(result.status, 4);
    EXPECT_THAT(result.out, HasSubstr("    a, 1, ACTIVE\n"));
    EXPECT_THAT(result.err, HasSubstr("error: <bundles>/b.zip: the bundle \"a\", version 1.0.0, is there already "
                                      "[duplicate-bundle]\n  why: \"<bundles>/a.zip\" holds it too\n"));
}

TEST_F(KeepGoing, GivenNothingThatFails_ThenItIsLikeAnyRun)
{
    write("a");
    addTest("three_services", "e.so");

    const ProgramResult result = run({"--keep-going"});

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out, run().out);
}

TEST_F(KeepGoing, GivenBundleThatStartsAFailingOne_ThenBothAreLeftOutAndTheRestRuns)
{
    add("starts_another", "a.so");
    addTest("start_throws", "b.so");
    write("c");

    const ProgramResult result = run({"--keep-going"});

    EXPECT_EQ(result.status, 4);
    EXPECT_THAT(result.out, HasSubstr("1 started, 2 failed; 0 services loaded\n"));
}

TEST_F(KeepGoing, GivenReportThatFailsAfterAll_ThenWhatFailedBeforeIsToldToo)
{
    directory.write("a.so", "text");
    add("unreadable_service");

    const ProgramResult result = run({"--keep-going", "--report"});

    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr("error: <bundles>/a.so: the file is no bundle [not-a-bundle]\n"));
    EXPECT_THAT(result.err, HasSubstr("error: <bundles>: the services cannot be reported\n"
                                      "  why: planned fault: unreadable_service\n"));
}

TEST_F(KeepGoing, GivenItEnds_ThenNoLinkIsLeft)
{
    const TemporaryDirectory temporary;
    addTest("start_throws", "c.so");
    Surroundings surroundings;
    surroundings.environment = {"TMPDIR=" + temporary.path().string()};

    EXPECT_EQ(run({"--keep-going"}, surroundings).status, 4);

    EXPECT_TRUE(std::filesystem::is_empty(temporary.path()));
}

TEST_F(KeepGoing, GivenFactoryThatThrows_ThenTheSummaryIsPrintedAndStatusFour)
{
    const ProgramResult result = runHost({"run", OSTREL_TEST_FACTORY_THROWS_INT, "--keep-going"});

    EXPECT_EQ(result.status, 4);
    EXPECT_THAT(result.out, HasSubstr("1 started; 0 services loaded, 1 refused\n"));
    EXPECT_THAT(result.err, HasSubstr(": the services cannot be loaded\n"));
}

} // namespace ostrel::test
