#include "cli/CommandRun.h"
#include "cli/Json.h"
#include "support/TestBundles.h"

#include <gmock/gmock.h>

namespace ostrel::test {

using testing::ElementsAre;

namespace {

class InspectCommand : public CommandRun {
protected:
    ProgramResult inspect(const std::string& file, const std::vector<std::string>& options = {}) const
    {
        std::vector<std::string> arguments{"inspect", path(file)};
        arguments.insert(arguments.end(), options.begin(), options.end());
        ProgramResult result = runHost(arguments);
        result.out = withoutPath(result.out, directory.path());
        result.err = withoutPath(result.err, directory.path());
        return result;
    }
};

} // namespace

TEST_F(InspectCommand, GivenDirectory_ThenEachFileAndTheVocabularyAreShown)
{
    write("a", R"([{"language": "en"}, {"language": "de", "mode": 1}])");
    directory.write("b.txt", "text");

    const ProgramResult result = command("inspect");

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out, R"(<bundles>/a.zip: an archive with 1 bundle
  bundle a 1.0.0, component component.a, without an activator
    filters: [{"language": "en"}, {"language": "de", "mode": 1}]
<bundles>/b.txt: a file of another kind
  no bundle: it is neither a shared object nor a zip archive
conditions that are declared:
  language: de, en
  mode: 1
)");
}

TEST_F(InspectCommand, GivenFileThatIsABundle_ThenStatusZeroAndNoVocabulary)
{
    write("a", R"([{"language": "en"}])");

    const ProgramResult result = inspect("a.zip");

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, R"(<bundles>/a.zip: an archive with 1 bundle
  bundle a 1.0.0, component component.a, without an activator
    filters: [{"language": "en"}]
)");
}

TEST_F(InspectCommand, GivenFileThatIsNone_ThenStatusSevenAndWhy)
{
    directory.write("a.txt", "text");

    const ProgramResult result = inspect("a.txt");

    EXPECT_EQ(result.status, 7);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out, R"(<bundles>/a.txt: a file of another kind
  no bundle: the file is no bundle: it is neither a shared object nor a zip archive [not-a-bundle]
  do: build it again if it is to be a bundle; else take it out of the directory
)");
}

TEST_F(InspectCommand, GivenDirectoryWithABadFile_ThenStatusSeven)
{
    write("a");
    directory.write("b.so", "text");

    const ProgramResult result = command("inspect", {"--json"});

    EXPECT_EQ(result.status, 7);
    EXPECT_EQ(faultsBy("inspection", result.out), "");
    const Json files = Json{result.out}["files"];
    EXPECT_TRUE(files[0]["why"].isNull());
    EXPECT_EQ(files[1]["why"].text(), "the file is no bundle: it is neither a shared object nor a zip archive");
    EXPECT_EQ(files[1]["code"].text(), "not-a-bundle");
}

TEST_F(InspectCommand, GivenLibraries_ThenNoCodeOfThemRuns)
{
    std::filesystem::copy_file(testBundle("start_throws"), directory.path() / "a.so");

    const ProgramResult result = command("inspect", {"--json"});

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(faultsBy("inspection", result.out), "");
    const Json file = Json{result.out}["files"][0];
    EXPECT_EQ(file["kind"].text(), "library");
    EXPECT_THAT(file["bundles"].texts("symbolicName"), ElementsAre("start_throws"));
    EXPECT_TRUE(file["bundles"][0]["activator"].boolean());
    EXPECT_EQ(file["bundles"][0]["headers"]["zq"]["component"]["name"].text(), "component.start_throws");
}

TEST_F(InspectCommand, GivenNothingThere_ThenStatusThree)
{
    const ProgramResult result = inspect("missing");

    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, R"(ostrel-host: error: <bundles>/missing: there is no such file or directory
  why: nothing has this name
  do:  check the spelling
)");
}

TEST_F(InspectCommand, GivenEmptyDirectory_ThenThatIsSaid)
{
    const ProgramResult result = command("inspect");

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "no conditions are declared\n");
    EXPECT_EQ(result.err, "ostrel-host: warning: \"<bundles>\" holds no file\n");
}

} // namespace ostrel::test
