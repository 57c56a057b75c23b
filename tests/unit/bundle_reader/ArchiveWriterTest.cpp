// Archives that are made here, read by the bytes of their first record and by the reader.
#include "bundle_reader/zip/ArchiveWriter.h"

#include "bundle_reader/BundleFile.h"

#include <gmock/gmock.h>

#include <optional>
#include <string>

using namespace ostrel::bundle_reader;

namespace {

const std::string content(1000, 'x');

std::string archiveOf(int level, std::optional<std::time_t> modified = std::nullopt)
{
    ArchiveWriter writer;
    writer.addFile("manifest.json", content, level, modified);
    return writer.finish();
}

/// A number of two bytes in the record that begins the archive.
unsigned numberAt(const std::string& archive, std::size_t offset)
{
    return static_cast<unsigned char>(archive.at(offset)) | static_cast<unsigned char>(archive.at(offset + 1)) << 8U;
}

constexpr std::size_t method = 8;
constexpr std::size_t time = 10;
constexpr std::size_t date = 12;

TEST(ArchiveWriter, GivenLevel_WhenAFileIsAdded_ThenOnlyZeroStoresIt)
{
    EXPECT_EQ(numberAt(archiveOf(0), method), 0U);
    EXPECT_THAT(archiveOf(0), testing::HasSubstr(content));
    for (const int level : {1, 6, 9}) {
        EXPECT_EQ(numberAt(archiveOf(level), method), 8U) << level;
        EXPECT_LT(archiveOf(level).size(), content.size()) << level;
    }
}

TEST(ArchiveWriter, GivenNoTime_WhenAFileIsAdded_ThenItIsOfTheEarliestThereIs)
{
    const std::string archive = archiveOf(0);

    EXPECT_EQ(numberAt(archive, time), 0U);
    EXPECT_EQ(numberAt(archive, date), 1U << 5U | 1U); // 1980-01-01
    EXPECT_EQ(archive, archiveOf(0));
}

TEST(ArchiveWriter, GivenTime_WhenAFileIsAdded_ThenItIsOfThat)
{
    EXPECT_NE(archiveOf(0, 1600000000), archiveOf(0));
    EXPECT_EQ(archiveOf(0, 1600000000), archiveOf(0, 1600000000));
}

TEST(ArchiveWriter, GivenFilesInFolders_WhenRead_ThenEachFolderIsThereOnce)
{
    ArchiveWriter writer;
    writer.addFolder("n/");
    writer.addFolder("n/");
    writer.addFile("n/manifest.json", "{}", 9, std::nullopt);
    writer.addFile("m/manifest.json", "[]", 0, std::nullopt);
    const Contents contents = inspect(writer.finish());

    ASSERT_EQ(contents.folders.size(), 2U);
    EXPECT_EQ(contents.folders[0].name, "m");
    EXPECT_EQ(contents.folders[0].manifest, "[]");
    EXPECT_EQ(contents.folders[1].name, "n");
    EXPECT_EQ(contents.folders[1].manifest, "{}");
}

} // namespace
