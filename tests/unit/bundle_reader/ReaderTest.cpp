#include "bundle_reader/BundleFile.h"
#include "support/TemporaryDirectory.h"
#include "unit/ZipText.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <system_error>

namespace {

using namespace ostrel::bundle_reader;
using ostrel::test::zipText;
using ::testing::HasSubstr;

/// A small archive is kept in memory, a larger one read from its file; both are told the same.
class Reader : public ::testing::TestWithParam<bool> {
protected:
    std::string write(const std::string& bytes) const { return directory.write("file", bytes).string(); }

    static ArchiveReader readerOf(const std::string& path)
    {
        return ArchiveReader{openArchive(path, ostrel::bundle_reader::read(path).place)};
    }

    bool isLarge() const { return GetParam(); }

    ostrel::test::TemporaryDirectory directory;
    const std::string archive = zipText(
        {{"a/", ""}, {"a/one", "first"}, {"a/two", ""}, {"a/pad", std::string(isLarge() ? smallArchive : 10, 'p')}});
};

TEST_P(Reader, GivenArchiveBehindOtherBytes_WhenRead_ThenItsEntriesAreGiven)
{
    const ArchiveReader reader = readerOf(write(std::string(5000, 'x') + archive));
    ASSERT_EQ(4U, reader.entries().size());
    EXPECT_EQ("a/", reader.entries()[0].name);
    EXPECT_EQ("a/one", reader.entries()[1].name);
    EXPECT_EQ(5U, reader.entries()[1].size);
    EXPECT_EQ(5U, reader.entries()[1].packedSize);
    EXPECT_EQ("first", reader.read(1));
    EXPECT_EQ("", reader.read(2));
    EXPECT_EQ("first", reader.read(1)) << "again";
    EXPECT_THROW(reader.read(4), std::out_of_range);
}

TEST_P(Reader, GivenFileThatIsReplacedOrRemoved_WhenRead_ThenItIsTheOneThatWasOpened)
{
    const std::string path = write(archive);
    const ArchiveReader reader = readerOf(path);
    std::filesystem::rename(directory.write("other", "other"), path);
    EXPECT_EQ("first", reader.read(1));
    std::filesystem::remove(path);
    EXPECT_EQ("first", reader.read(1));
}

INSTANTIATE_TEST_SUITE_P(Small, Reader, ::testing::Values(false));
INSTANTIATE_TEST_SUITE_P(Large, Reader, ::testing::Values(true));

class KeptArchive : public ::testing::Test {
protected:
    ostrel::test::TemporaryDirectory directory;

    Contents contentsOf(std::size_t size) const
    {
        const std::size_t around = zipText({{"a/x", ""}}).size();
        const std::string zip = zipText({{"a/x", std::string(size - around, 'x')}});
        EXPECT_EQ(size, zip.size());
        return read(directory.write("file", "before" + zip).string());
    }
};

TEST_F(KeptArchive, GivenArchiveUpToTheLimit_WhenRead_ThenItsBytesAreKeptAndTheFileIsNotNeeded)
{
    const Contents contents = contentsOf(smallArchive);
    std::filesystem::remove(directory.path() / "file");

    ASSERT_TRUE(contents.place.kept);
    EXPECT_EQ(smallArchive, contents.place.kept->size());
    EXPECT_EQ('x', ArchiveReader{openArchive("gone", contents.place)}.read(0).at(0));
}

TEST_F(KeptArchive, GivenArchiveAboveTheLimit_WhenRead_ThenItIsNotKept)
{
    EXPECT_FALSE(contentsOf(smallArchive + 1).place.kept);
}

TEST_F(KeptArchive, GivenArchiveThatIsDamaged_WhenRead_ThenItIsNotKept)
{
    std::string zip = zipText({{"n/manifest.json", "unmistakable"}});
    zip[zip.find("unmistakable")] = 'X';

    const Contents contents = inspect(zip);

    EXPECT_EQ(Archive::damaged, contents.archive);
    EXPECT_FALSE(contents.place.kept);
}

class LargeArchive : public ::testing::Test {
protected:
    std::string write(const std::string& bytes) const { return directory.write("file", bytes).string(); }

    static std::string failure(const std::string& path, const Contents& contents)
    {
        try {
            const ArchiveReader reader{openArchive(path, contents.place)};
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "nothing was thrown";
    }

    ostrel::test::TemporaryDirectory directory;
    const std::string archive = zipText({{"a/one", "first"}, {"a/pad", std::string(smallArchive, 'p')}});
};

TEST_F(LargeArchive, GivenAnotherFileThanTheOneThatWasRead_WhenOpened_ThenItIsRefused)
{
    const std::string path = write(archive);
    const Contents contents = read(path);
    const std::string gone =
        "cannot read the archive in '" + path + "': the file was removed, replaced or changed since it was first read";
    std::filesystem::rename(directory.write("other", archive), path);
    EXPECT_EQ(gone, failure(path, contents));
    std::filesystem::remove(path);
    EXPECT_EQ(gone, failure(path, contents));
    std::filesystem::create_directory(path);
    EXPECT_EQ("cannot read the archive in '" + path + "': Is a directory", failure(path, contents));
}

TEST_F(LargeArchive, GivenFileThatIsWrittenTo_WhenEntryIsRead_ThenTheErrorNamesItAndTheFile)
{
    const std::string path = write(archive);
    const ArchiveReader reader{openArchive(path, read(path).place)};
    write(archive + archive);
    try {
        reader.read(0);
        FAIL() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_EQ("cannot read the archive in '" + path +
                      "': 'a/one': the file was removed, replaced or changed since it was first read",
                  std::string{error.what()});
    }
}

TEST_F(LargeArchive, GivenEntryThatIsSaidToBeLargerThanAnyMayBe_WhenRead_ThenTheErrorTellsTheLimit)
{
    std::string bytes = archive;
    const std::size_t size = bytes.rfind("a/one") - 46 + 24;
    bytes.replace(size, 4, "\xff\xff\xff\x7f", 4);
    const std::string path = write(bytes);
    const ArchiveReader reader{openArchive(path, read(path).place)};
    try {
        reader.read(0);
        FAIL() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(), HasSubstr("'a/one': it is larger than an entry may be, 1024 MiB"));
    }
}

TEST_F(LargeArchive, GivenEntryThatIsNotAsLongAsTheDirectorySays_WhenRead_ThenTheErrorTells)
{
    std::string bytes = archive;
    bytes[bytes.rfind("a/one") - 46 + 24] = 6;
    const std::string path = write(bytes);
    const ArchiveReader reader{openArchive(path, read(path).place)};
    try {
        reader.read(0);
        FAIL() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(), HasSubstr("'a/one': "));
    }
}

TEST(Stamp, GivenNoFile_WhenAsked_ThenItIsThatOfNone)
{
    EXPECT_EQ(FileStamp{}, stampOf("/no/such/file"));
}

TEST(Read, GivenPathWithAZeroByte_WhenRead_ThenNoFileOfAShorterNameIsOpened)
{
    EXPECT_THROW(read(std::string{"/proc/self/exe\0.so", 18}), std::system_error);
}

} // namespace
