#include "cli/CommandRun.h"
#include "cli/Json.h"
#include "cli/ZipBundle.h"
#include "support/TestBundles.h"

#include <gmock/gmock.h>

namespace ostrel::test {

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

class Explain : public CommandRun {
protected:
    void writeThree() const
    {
        write("english", R"([{"language": "en"}])");
        write("german", R"([{"language": "de"}])");
        write("plain");
    }

    Json json(std::vector<std::string> options) const
    {
        options.emplace_back("--json");
        const ProgramResult result = command("explain", options);
        EXPECT_EQ(faultsBy("explanation", result.out), "");
        return Json{result.out};
    }
};

} // namespace

TEST_F(Explain, GivenRefusedBundle_ThenTheReasonAndTheChangeAreSaid)
{
    writeThree();

    const ProgramResult result = command("explain", {"german", "--when", "language=en"});

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out,
              R"(component.german is refused: its only alternative declares language "de", but the condition is "en"
  file:   <bundles>/german.zip (bundle german)
  change: change --when language=en to --when language=de
  then:   --when language=de
)");
}

TEST_F(Explain, GivenTheChange_WhenRunWithIt_ThenTheBundleStarts)
{
    writeThree();
    const std::vector<std::string> arguments =
        json({"german.zip", "--require", "language=en"})["subjects"][0]["change"]["arguments"].texts();

    EXPECT_THAT(run(arguments).out, HasSubstr("component.german: started: alternative 1 of 1 matches\n"));
}

TEST_F(Explain, GivenNoName_ThenAllAreExplainedInOrder)
{
    writeThree();

    const Json explanation = json({"--require", "language=en"});

    EXPECT_EQ(explanation["schema"].text(), "ostrel.explanation/1");
    EXPECT_EQ(explanation["tool"].text(), "ostrel-host " OSTREL_TEST_VERSION);
    EXPECT_THAT(explanation["subjects"].texts("name"),
                ElementsAre("component.english", "component.german", "component.plain"));
    EXPECT_THAT(explanation["subjects"].texts("reason"),
                ElementsAre("alternative-matches", "value-differs", "no-declaration-but-required"));
    const Json german = explanation["subjects"][1];
    EXPECT_EQ(german["kind"].text(), "bundle");
    EXPECT_EQ(german["file"].text(), "<bundles>/german.zip");
    EXPECT_FALSE(german["admitted"].boolean());
    EXPECT_EQ(german["alternatives"][0]["differs"][0]["declared"].text(), "de");
    EXPECT_THAT(german["change"]["arguments"].texts(), ElementsAre("--require", "language=de"));
    EXPECT_TRUE(explanation["subjects"][0]["change"].isNull());
    EXPECT_TRUE(explanation["conditions"][0]["required"].boolean());
}

TEST_F(Explain, GivenNamesOfEachKind_ThenEachIsFound)
{
    writeThree();

    EXPECT_THAT(json({"plain", "component.english", "german.zip"})["subjects"].texts("bundle"),
                ElementsAre("english", "german", "plain"));
}

TEST_F(Explain, GivenUnknownName_ThenTheNearestIsNamed)
{
    writeThree();

    const ProgramResult result = command("explain", {"germna"});

    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "ostrel-host: error: no bundle is called 'germna'\n"
              "  why: the names of bundles and files are: component.english, component.german, component.plain, "
              "english, english.zip, german, german.zip, plain, plain.zip\n"
              "  do:  did you mean german?\n");
}

TEST_F(Explain, GivenPartOfAName_ThenOneThatHoldsItIsNamed)
{
    writeThree();

    EXPECT_THAT(command("explain", {"nent.germ"}).err, HasSubstr("  do:  did you mean component.german?\n"));
    EXPECT_THAT(command("explain", {"french"}).err, HasSubstr("  do:  give one of these names\n"));
}

TEST_F(Explain, GivenNoBundleAtAll_ThenThatIsWhyTheNameIsUnknown)
{
    EXPECT_EQ(command("explain", {"x"}).err, "ostrel-host: error: no bundle is called 'x'\n"
                                             "  why: the directory holds no bundle\n"
                                             "  do:  give a directory with bundles\n");
}

TEST_F(Explain, GivenNameAndServicesAskedFor_ThenTheServicesOfThatBundleStay)
{
    write("a");
    std::filesystem::copy_file(testBundle("three_services"), directory.path() / "b.so");

    EXPECT_THAT(json({"--services", "lamps"})["subjects"].texts("kind"),
                ElementsAre("bundle", "service", "service", "service"));
    EXPECT_THAT(json({"--services", "a"})["subjects"].texts("kind"), ElementsAre("bundle"));
}

TEST_F(Explain, GivenWrongManifestAmongTen_ThenOneCommandShowsIt)
{
    for (const char digit : std::string{"123456789"}) {
        write(std::string("good") + digit, R"([{"language": "en"}])");
    }
    directory.write("wrong.zip", zipBundle("wrong", "{\n    \"bundle.symbolic_name\": \"wrong\",\n"
                                                    "    \"zq\": {\"component\": {\"name\": \"wrong\"},\n"
                                                    "           \"ostrelFilter\": [{\"language\": \"en\"}]}\n}"));

    const ProgramResult result = command("explain", {"wrong", "--require", "language=en"});

    EXPECT_EQ(result.out, R"(wrong is refused: it declares no filters, but this is required: "language"
  file:   <bundles>/wrong.zip
  hint:   line 4, column 12 of manifest.json: unknown key "ostrelFilter" in "zq": did you mean "ostrelFilters"?
  change: change --require language=en to --when language=en
  then:   --when language=en
)");
}

TEST_F(Explain, GivenFileThatCannotBeInstalled_ThenTheOthersAreExplainedAndStatusFour)
{
    write("a");
    directory.write("b.so", "text");

    const ProgramResult result = command("explain", {"--json"});

    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(faultsBy("explanation", result.out), "");
    EXPECT_THAT(Json{result.out}["subjects"].texts("bundle"), ElementsAre("a"));
    EXPECT_THAT(Json{result.out}["findings"].texts("code"), ElementsAre("not-a-bundle"));
    EXPECT_EQ(result.err, R"(ostrel-host: error: <bundles>/b.so: the file is no bundle [not-a-bundle]
  why: it is neither a shared object nor a zip archive
  do:  build it again if it is to be a bundle; else take it out of the directory
)");
}

TEST_F(Explain, GivenNameOfAnotherFile_ThenTheBadOneDoesNotMatter)
{
    write("a");
    directory.write("b.so", "text");

    EXPECT_EQ(command("explain", {"a"}).status, 0);
    EXPECT_EQ(command("explain", {"b.so"}).status, 4);
}

TEST_F(Explain, GivenNameOfAFileWithoutBundle_ThenItSaysWhyThereIsNone)
{
    directory.write("notes.txt", "text");

    const ProgramResult result = command("explain", {"notes.txt"});

    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(result.err, R"(ostrel-host: error: <bundles>/notes.txt: the file holds no bundle [not-a-bundle]
  why: it is neither a shared object nor a zip archive
  do:  name a file that holds one
)");
}

TEST_F(Explain, GivenConditionThatNobodyDeclares_ThenTheNearestIsNamed)
{
    writeThree();

    EXPECT_EQ(command("explain", {"plain", "--when", "langauge=en"}).err,
              "ostrel-host: warning: no bundle declares the condition \"langauge\": did you mean language?\n");
    EXPECT_EQ(command("explain", {"plain", "--when", "langauge=en", "--log-level", "none"}).err, "");
}

TEST_F(Explain, GivenNoComponentName_ThenTheStartEndsThere)
{
    directory.write("a.zip", zipBundle("a", R"({"bundle.symbolic_name": "a"})"));

    const Json subject = json({})["subjects"][0];

    EXPECT_TRUE(subject["admitted"].isNull());
    EXPECT_EQ(subject["reason"].text(), "no-component-name");
    EXPECT_EQ(subject["name"].text(), "a");
}

TEST_F(Explain, GivenBundleWhoseCodeWouldThrow_ThenNoneOfItRuns)
{
    std::filesystem::copy_file(testBundle("start_throws"), directory.path() / "a.so");

    EXPECT_EQ(command("explain").status, 0);
}

TEST_F(Explain, GivenServicesAskedFor_ThenThoseOfTheStartedBundlesAreExplained)
{
    std::filesystem::copy_file(testBundle("three_services"), directory.path() / "a.so");

    const Json explanation = json({"--services", "--when", "mode=day"});

    EXPECT_THAT(explanation["subjects"].texts("kind"), ElementsAre("bundle", "service", "service", "service"));
    EXPECT_THAT(explanation["subjects"].texts("reason"),
                ElementsAre("no-declaration", "no-zq-map", "value-differs", "alternative-matches"));
    EXPECT_EQ(explanation["subjects"][2]["bundle"].text(), "three_services");
    EXPECT_THAT(explanation["subjects"][2]["change"]["arguments"].texts(), ElementsAre("--when", "mode=night"));
}

TEST_F(Explain, GivenServicesAskedForAndABundleThatPrints_ThenStandardOutputIsTheExplanationAlone)
{
    add("prints");

    const ProgramResult result = command("explain", {"--services", "--json"});

    EXPECT_EQ(faultsBy("explanation", result.out), "");
    EXPECT_THAT(result.err, HasSubstr("start: printf\n"));
}

TEST_F(Explain, GivenServicesAskedForAndAStartThatThrows_ThenThatIsTheError)
{
    std::filesystem::copy_file(testBundle("start_throws"), directory.path() / "a.so");

    const ProgramResult result = command("explain", {"--services"});

    EXPECT_EQ(result.status, 4);
    EXPECT_EQ(result.err, R"(ostrel-host: error: <bundles>/a.so: the bundle "start_throws" did not start: its start )"
                          R"(threw an exception [start-throws]
  why: planned fault: start_throws
  do:  repair its activator, or refuse the bundle by other conditions
)");
}

TEST_F(Explain, GivenNamesThatAreNoUtf8_ThenJsonHasTheirBytesToo)
{
    directory.write("a\xff.zip", zipBundle("a", R"({"bundle.symbolic_name": "a", "zq": {"component": {"name": "x)"
                                                "\xfe\"}}}"));

    const Json subject = json({})["subjects"][0];

    EXPECT_EQ(subject["name"].text(), "x\uFFFD");
    EXPECT_EQ(subject["nameHex"].text(), "78fe");
    EXPECT_THAT(subject["fileHex"].text(), HasSubstr("61ff2e7a6970"));
}

} // namespace ostrel::test
