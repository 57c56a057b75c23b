#include "cli/CanonicalReport.h"
#include "cli/Json.h"
#include "cli/ProgramRun.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace ostrel::test {

namespace {

ProgramResult runExamples(std::vector<std::string> options)
{
    options.insert(options.begin(), {"run", OSTREL_TEST_EXAMPLE_BUNDLES, "--report"});
    return runHost(options);
}

std::string golden(const std::string& name)
{
    return contentOf(std::filesystem::path{OSTREL_TEST_GOLDEN} / name);
}

void expectReport(const std::vector<std::string>& options, const std::string& goldenName)
{
    const ProgramResult result = runExamples(options);

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(canonicalReport(result.out), canonicalReport(golden(goldenName)));
}

} // namespace

TEST(RunExamples, GivenEnglishTerminal_ThenSpellingStartsAndStatisticsDoNot)
{
    expectReport({"--when", "language=en", "--when", "mode=terminal"}, "english-terminal.txt");
}

TEST(RunExamples, GivenEnglishServer_ThenTheSpellingServiceIsLoadedToo)
{
    expectReport({"--when", "language=en", "--when", "mode=server"}, "english-server.txt");
}

TEST(RunExamples, GivenGerman_ThenOtherBundlesStart)
{
    expectReport({"--when", "language=de", "--when", "mode=batch"}, "german-batch.txt");
}

TEST(RunExamples, GivenRequiredLanguage_ThenBundlesThatDeclareNoneAreRefused)
{
    expectReport({"--require", "language=de"}, "german-required.txt");
}

TEST(RunExamples, GivenRequiredLanguageThatNoneKnows_ThenThreeHeadsAndStatusZero)
{
    const ProgramResult result = runExamples({"--require", "language=fr"});

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "Bundles:\nManually loaded service types:\nBundle services:\n");
    EXPECT_EQ(result.err, "ostrel-host: warning: the conditions admit none of 7 bundles; 'ostrel-host explain' says "
                          "why, and what would\n");
}

TEST(ExplainExamples, GivenGermanServer_ThenTheTextIsTheGoldenOne)
{
    const ProgramResult result =
        runHost({"explain", OSTREL_TEST_EXAMPLE_BUNDLES, "--when", "language=de", "--require", "mode=server"});

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(withoutPath(result.out, OSTREL_TEST_EXAMPLE_BUNDLES), golden("german-server.explain.txt"));
}

TEST(ExplainExamples, GivenGermanServer_ThenTheJsonIsTheGoldenOne)
{
    const ProgramResult result = runHost({"explain", OSTREL_TEST_EXAMPLE_BUNDLES, "text.pipeline", "text.spelling",
                                          "--when", "language=de", "--require", "mode=server", "--json"});

    EXPECT_EQ(faultsBy("explanation", result.out), "");
    EXPECT_EQ(withoutPath(result.out, OSTREL_TEST_EXAMPLE_BUNDLES), golden("german-server.explain.json"));
}

TEST(PlanExamples, GivenGerman_ThenTheTextIsTheGoldenOne)
{
    const ProgramResult result = runHost({"plan", OSTREL_TEST_EXAMPLE_BUNDLES, "--when", "language=de"});

    EXPECT_EQ(withoutPath(result.out, OSTREL_TEST_EXAMPLE_BUNDLES), golden("german.plan.txt"));
}

TEST(RunExamples, GivenDecisionsWanted_ThenStandardErrorTellsThemInFileOrder)
{
    const ProgramResult result =
        runExamples({"--when", "language=en", "--when", "mode=terminal", "--log-level", "decisions"});

    EXPECT_EQ(result.err, golden("english-terminal.decisions.txt"));
}

TEST(Polish, GivenEnglish_ThenEveryStepIsApplied)
{
    const ProgramResult result = runProgram(OSTREL_TEST_POLISH, {OSTREL_TEST_EXAMPLE_BUNDLES, "en"},
                                            "  Teh \"quick\"  fox -- (\"brown\"),\twich occured \n\n---- wichcraft\n");

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "The \u201cquick\u201d fox \u2013 (\u201cbrown\u201d), which occurred\n\n---- wichcraft\n");
    EXPECT_EQ(result.err, "3 lines, 9 words, 70 bytes\n");
}

TEST(Polish, GivenGerman_ThenQuotesAreGermanAndSpellingIsLeftAlone)
{
    const ProgramResult result =
        runProgram(OSTREL_TEST_POLISH, {OSTREL_TEST_EXAMPLE_BUNDLES, "de", "terminal"}, "Er  sagte \"teh\".");

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "Er sagte \u201eteh\u201c.");
    EXPECT_EQ(result.err, "");
}

TEST(Polish, GivenLanguageThatNoneKnows_ThenItSaysSo)
{
    const ProgramResult result = runProgram(OSTREL_TEST_POLISH, {OSTREL_TEST_EXAMPLE_BUNDLES, "fr"}, "Oui.");

    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "text_polish: no bundle in '" OSTREL_TEST_EXAMPLE_BUNDLES "' polishes this language\n");
}

} // namespace ostrel::test
