#include "bundle_reader/file/FileList.h"

#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <filesystem>

namespace {

using namespace ostrel::bundle_reader;
using ::testing::ElementsAre;
namespace fs = std::filesystem;

class ListFiles : public ::testing::Test {
protected:
    FileList list(const std::string& suffix = "") const { return listFiles(directory.path().string() + suffix); }

    ostrel::test::TemporaryDirectory directory;
};

TEST_F(ListFiles, GivenFilesAndLinksToFiles_WhenListed_ThenTheyComeInByteOrder)
{
    directory.write("b", "");
    directory.write("\xff", "");
    directory.write("B", "");
    fs::create_symlink("b", directory.path() / "a");

    EXPECT_THAT(list().files, ElementsAre("B", "a", "b", "\xff"));
    EXPECT_THAT(list("/").files, ElementsAre("B", "a", "b", "\xff"));
    EXPECT_FALSE(list().hasFolders);
    EXPECT_EQ(list().error, 0);
}

TEST_F(ListFiles, GivenLinksThatLeadToNoFile_WhenListed_ThenTheyAreLeftOut)
{
    fs::create_symlink("nowhere", directory.path() / "dangling");
    fs::create_symlink("circle", directory.path() / "circle");

    EXPECT_THAT(list().files, ElementsAre());
    EXPECT_EQ(list().error, 0);
}

TEST_F(ListFiles, GivenFolderOrLinkToOne_WhenListed_ThenItIsNoFileButTold)
{
    fs::create_symlink("/", directory.path() / "link");
    EXPECT_THAT(list().files, ElementsAre());
    EXPECT_TRUE(list().hasFolders);

    fs::remove(directory.path() / "link");
    EXPECT_FALSE(list().hasFolders);

    fs::create_directory(directory.path() / "folder");
    EXPECT_TRUE(list().hasFolders);
}

TEST_F(ListFiles, GivenNoDirectory_WhenListed_ThenTheErrorNamesIt)
{
    const FileList missing = list("/missing");

    EXPECT_EQ(missing.error, ENOENT);
    EXPECT_EQ(missing.unreadable, directory.path().string() + "/missing");
}

} // namespace
