#include "cli/ProgramRun.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace ostrel::test {

namespace {

const char* const threeHeads = "Bundles:\nManually loaded service types:\nBundle services:\n";

std::string directoryError(const std::string& shown, const std::string& why, const std::string& remedy)
{
    return "ostrel-host: error: " + shown + ": the bundle directory cannot be read\n  why: " + why +
           "\n  do:  " + remedy + "\n";
}

} // namespace

TEST(BundleDirectory, GivenEmptyDirectory_ThenThreeHeadsAndStatusZero)
{
    const TemporaryDirectory directory;

    const ProgramResult result = runHost({"run", directory.path(), "--report"});

    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, threeHeads);
    EXPECT_EQ(result.err, "ostrel-host: warning: \"" + directory.path().string() + "\" holds no bundle\n");
}

TEST(BundleDirectory, GivenNothingThere_ThenStatusThree)
{
    const TemporaryDirectory directory;
    const std::string missing = directory.path() / "missing";

    const ProgramResult result = runHost({"run", missing});

    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              directoryError(missing, "it does not exist", "check the spelling, or build the bundles first"));
}

TEST(BundleDirectory, GivenEmptyArgument_ThenStatusThree)
{
    EXPECT_EQ(runHost({"run", ""}).status, 3);
}

TEST(BundleDirectory, GivenPathThatIsTooLong_ThenTheRemedyIsAShorterOne)
{
    const std::string name(5000, 'n');

    const ProgramResult result = runHost({"run", name});

    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.err,
              directoryError(name, "File name too long", "give it by a shorter path, from a directory nearer to it"));
}

TEST(BundleDirectory, GivenEntryWhoseKindCannotBeTold_ThenEachCommandNamesIt)
{
    const TemporaryDirectory directory;
    std::filesystem::create_symlink(std::string(300, 'x'), directory.path() / "link");

    for (const char* const command : {"run", "plan", "explain", "inspect"}) {
        const ProgramResult result = runHost({command, directory.path()});

        EXPECT_EQ(result.status, 3) << command;
        EXPECT_EQ(result.out, "") << command;
        EXPECT_EQ(result.err, "ostrel-host: error: " + directory.path().string() +
                                  "/link: what lies there cannot be read\n"
                                  "  why: File name too long\n"
                                  "  do:  remove it, or let it lead to a file\n")
            << command;
    }
}

TEST(BundleDirectory, GivenLinksInACircle_ThenTheRemedyIsToMendThem)
{
    const TemporaryDirectory directory;
    const std::string name = directory.path() / "round";
    std::filesystem::create_symlink("round", name);

    const ProgramResult result = runHost({"run", name});

    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.err, directoryError(name, "Too many levels of symbolic links",
                                         "mend the links on its path, which lead round in a circle"));
}

TEST(BundleDirectory, GivenFile_ThenStatusThree)
{
    const TemporaryDirectory directory;
    const std::string file = directory.write("libtext.so", "text");

    const ProgramResult result = runHost({"run", file});

    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.err,
              directoryError(file, "it is not a directory", "give the directory that holds the bundle files"));
}

TEST(BundleDirectory, GivenNameThatIsNotUtf8_ThenStatusThreeAndTheByteIsShownInHexadecimal)
{
    const TemporaryDirectory directory;
    const std::string name = directory.path() / "b\xff";
    std::filesystem::create_directory(name);

    const ProgramResult result = runHost({"run", name});

    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.err, directoryError(directory.path().string() + "/b\\xFF", "its name is not UTF-8",
                                         "rename it, or give a link to it that has a UTF-8 name"));
}

TEST(BundleDirectory, GivenNameBeyondAscii_ThenItIsRead)
{
    const TemporaryDirectory directory;
    const std::string name = directory.path() / "B\u00fcndel \U0001f4e6";
    std::filesystem::create_directory(name);

    EXPECT_EQ(runHost({"run", name, "--report"}).out, threeHeads);
}

} // namespace ostrel::test
