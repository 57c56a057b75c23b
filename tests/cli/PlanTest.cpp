#include "cli/CommandRun.h"
#include "cli/Json.h"
#include "cli/ZipBundle.h"
#include "support/TestBundles.h"

#include <gmock/gmock.h>

namespace ostrel::test {

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class PlanCommand : public CommandRun {
protected:
    Json json(std::vector<std::string> options) const
    {
        options.emplace_back("--json");
        const ProgramResult result = command("plan", options);
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(faultsBy("plan", result.out), "");
        return Json{result.out};
    }

    /// Plans into a file of another directory.
    std::string planned(const std::vector<std::string>& options) const
    {
        const std::string file = plans.path() / "plan.json";
        std::vector<std::string> all = options;
        all.insert(all.end(), {"-o", file});
        EXPECT_EQ(command("plan", all).status, 0);
        return file;
    }

    ProgramResult runPlan(const std::string& file, std::vector<std::string> options = {}) const
    {
        options.insert(options.end(), {"--plan", file});
        return run(options);
    }

    TemporaryDirectory plans;
};

} // namespace

TEST_F(PlanCommand, GivenBundles_ThenOneLineSumsUpAndEachHasOne)
{
    write("a", R"([{"language": "en"}])");
    write("b", R"([{"language": "de"}])");
    directory.write("c.txt", "text");

    const ProgramResult result = command("plan", {"--when", "language=en"});

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out,
              R"(1 of 2 starts; 1 refused: value differs
<bundles>/a.zip: component.a starts: alternative 1 of 1 matches
<bundles>/b.zip: component.b is refused: its only alternative declares language "de", but the condition is "en"
<bundles>/c.txt: is passed over: it is neither a shared object nor a zip archive
)");
    EXPECT_EQ(result.err,
              "ostrel-host: warning: 1 file passed over: \"<bundles>/c.txt\": it is neither a shared object "
              "nor a zip archive\n");
}

TEST_F(PlanCommand, GivenFailureAndNoKeepGoing_ThenTheRestIsNotReachedAsInTheRun)
{
    write("a");
    directory.write("b.so", "text");
    write("c", R"([{"language": "de"}])");

    const Json plan = json({"--when", "language=en"});
    EXPECT_THAT(plan["bundles"].texts("outcome"), ElementsAre("not-reached", "fail", "not-reached"));
    EXPECT_THAT(plan["bundles"].texts("reason"), ElementsAre("no-declaration", "not-a-bundle", "value-differs"));
    EXPECT_EQ(plan["summary"]["notReached"].number(), 2);
    EXPECT_EQ(plan["summary"]["reasons"]["not-a-bundle"].number(), 1);

    const ProgramResult result = run({"--when", "language=en"});
    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(result.out, "");
}

TEST_F(PlanCommand, GivenFailureAndKeepGoing_ThenTheRunDoesWhatIsPlanned)
{
    write("a");
    directory.write("b.so", "text");
    write("c", R"([{"language": "de"}])");

    EXPECT_THAT(json({"--when", "language=en", "--keep-going"})["bundles"].texts("outcome"),
                ElementsAre("start", "fail", "skip"));

    EXPECT_EQ(run({"--when", "language=en", "--keep-going"}).out,
              R"(<bundles>/b.so: failed: the file is no bundle: it is neither a shared object nor a zip archive
component.a: started: it declares no filters, and no condition is required
component.c: refused: its only alternative declares language "de", but the condition is "en"
1 started, 1 refused, 1 failed; 0 services loaded
)");
}

TEST_F(PlanCommand, GivenBundleWhoseStartThrows_ThenNoCodeOfItRuns)
{
    std::filesystem::copy_file(testBundle("start_throws"), directory.path() / "a.so");

    EXPECT_EQ(command("plan").out, "1 of 1 starts\n<bundles>/a.so: component.start_throws starts: it declares no "
                                   "filters, and no condition is required\n");
}

TEST_F(PlanCommand, GivenPlan_WhenItIsJson_ThenEachFileHasItsHash)
{
    directory.write("a.so", "abc");

    EXPECT_EQ(json({})["bundles"][0]["sha256"].text(),
              "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST_F(PlanCommand, GivenOutFile_ThenItHoldsTheJsonAndTheTextIsPrinted)
{
    write("a");

    const ProgramResult result = command("plan", {"-o", plans.path() / "p"});

    EXPECT_EQ(result.out, command("plan").out);
    EXPECT_EQ(faultsBy("plan", contentOf(plans.path() / "p")), "");
    EXPECT_EQ(command("plan", {"--json", "-o", plans.path() / "p"}).out, "");
    EXPECT_THAT(std::distance(std::filesystem::directory_iterator{plans.path()}, {}), 1) << "nothing else is left";
}

TEST_F(PlanCommand, GivenOutFileThatCannotBeWritten_ThenStatusSix)
{
    const ProgramResult result = command("plan", {"-o", path("no/such/folder")});

    EXPECT_EQ(result.status, 6);
    EXPECT_EQ(result.err, R"(ostrel-host: warning: "<bundles>" holds no bundle
ostrel-host: error: <bundles>/no/such/folder: the file cannot be written
  why: No such file or directory
  do:  give another place, or make room there
)");
}

TEST_F(PlanCommand, GivenDeviceAsOutFile_ThenItIsWrittenToAndStaysADevice)
{
    write("a");

    EXPECT_EQ(command("plan", {"-o", "/dev/null"}).status, 0);
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    const ProgramResult full = command("plan", {"-o", "/dev/full"});
    EXPECT_EQ(full.status, 6);
    EXPECT_EQ(full.err, R"(ostrel-host: error: /dev/full: the file cannot be written
  why: No space left on device
  do:  give another place, or make room there
)");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST_F(PlanCommand, GivenDirectoryAsOutFile_ThenStatusSix)
{
    const ProgramResult result = command("plan", {"-o", directory.path()});

    EXPECT_EQ(result.status, 6);
    EXPECT_THAT(result.err, HasSubstr("error: <bundles>: the file cannot be written\n  why: Is a directory\n"));
}

TEST_F(PlanCommand, GivenPlanThatHolds_WhenRun_ThenItsConditionsAreTaken)
{
    write("a", R"([{"language": "en"}])");
    write("b", R"([{"language": "de"}])");

    const ProgramResult result = runPlan(planned({"--require", "language=de"}));

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, run({"--require", "language=de"}).out);
}

TEST_F(PlanCommand, GivenPlanToKeepGoing_WhenRun_ThenItKeepsGoing)
{
    write("a");
    directory.write("b.so", "text");

    const ProgramResult result = runPlan(planned({"--keep-going"}));

    EXPECT_EQ(result.status, 4);
    EXPECT_THAT(result.out, HasSubstr("1 started, 1 failed; 0 services loaded\n"));
}

TEST_F(PlanCommand, GivenChangesSince_WhenRun_ThenEachIsNamedAndNothingIsStarted)
{
    write("a", R"([{"language": "en"}])");
    write("b");
    std::filesystem::copy_file(testBundle("stop_throws"), directory.path() / "c.so");
    const std::string file = planned({"--when", "language=en"});
    write("a", R"([{"language": "de"}])", "1.1.0");
    write("d");
    std::filesystem::remove(path("b.zip"));

    const ProgramResult result = runPlan(file);

    EXPECT_EQ(result.status, 7);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(withoutPath(result.err, plans.path()),
              R"(ostrel-host: error: <bundles>/plan.json: the plan does not hold any more
  why: "<bundles>/a.zip": its content is another one; its version was "1.0.0" and is "1.1.0"; it was to be started )"
              R"((alternative-matches), and is now to be refused (value-differs)
       "<bundles>/b.zip": a bundle of it is gone: "b"
       "<bundles>/d.zip": a bundle of it is new: "d"
  do:  make a new plan with 'ostrel-host plan', look at it, and run that one
)");
}

TEST_F(PlanCommand, GivenOtherContentWithTheSameManifest_WhenRun_ThenThePlanDoesNotHold)
{
    std::filesystem::copy_file(testBundle("stop_throws"), directory.path() / "c.so");
    const std::string file = planned({});
    std::string bytes = contentOf(path("c.so"));
    bytes[9] = static_cast<char>(bytes[9] ^ 1); // a byte of the head that nobody reads
    directory.write("c.so", bytes);

    const ProgramResult result = runPlan(file);

    EXPECT_EQ(result.status, 7);
    EXPECT_THAT(result.err, HasSubstr("  why: \"<bundles>/c.so\": its content is another one\n"));
}

TEST_F(PlanCommand, GivenConditionsBesideAPlan_ThenStatusTwo)
{
    const ProgramResult result = runPlan(planned({}), {"--when", "a=1"});

    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.err, R"(ostrel-host: error: --plan has conditions of its own
  why: --when and --require would be others
  do:  leave them out, or make a new plan with them
)");
}

TEST_F(PlanCommand, GivenFileThatIsNoPlan_ThenStatusTwoAndTheFault)
{
    const std::string missing = path("missing");
    const std::string text = plans.write("text", "text");

    const ProgramResult notThere = runPlan(missing);
    EXPECT_EQ(notThere.status, 2);
    EXPECT_EQ(notThere.err, R"(ostrel-host: error: <bundles>/missing: the plan cannot be read
  why: No such file or directory
  do:  give the file that 'ostrel-host plan DIR -o FILE' wrote
)");
    const ProgramResult notJson = runPlan(text);
    EXPECT_EQ(notJson.status, 2);
    EXPECT_EQ(withoutPath(notJson.err, plans.path()), R"(ostrel-host: error: <bundles>/text: the plan cannot be read
  why: it is no plan: line 1, column 2: Invalid value.
  do:  write it anew with 'ostrel-host plan DIR -o FILE'
)");
}

} // namespace ostrel::test
