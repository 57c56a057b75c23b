#include "bundle_reader/zip/ArchiveReader.h"
#include "support/TemporaryDirectory.h"
#include "unit/ZipText.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <stdexcept>
#include <string>

namespace {

using namespace ostrel::bundle_reader;
using ostrel::test::zipText;
using ::testing::HasSubstr;

class Reader : public ::testing::Test {
protected:
    std::string write(const std::string& bytes) const { return directory.write("file", bytes).string(); }

    static std::string failure(const std::string& path, const Contents& contents)
    {
        try {
            ArchiveReader reader{path, contents};
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "nothing was thrown";
    }

    ostrel::test::TemporaryDirectory directory;
    const std::string archive = zipText({{"a/", ""}, {"a/one", "first"}, {"a/two", ""}});
};

TEST_F(Reader, givesTheEntriesOfAnArchiveBehindOtherBytes)
{
    const std::string path = write(std::string(5000, 'x') + archive);
    const ArchiveReader reader{path, read(path)};
    ASSERT_EQ(3U, reader.entries().size());
    EXPECT_EQ("a/", reader.entries()[0].name);
    EXPECT_EQ("a/one", reader.entries()[1].name);
    EXPECT_EQ(5U, reader.entries()[1].size);
    EXPECT_EQ(5U, reader.entries()[1].packedSize);
    EXPECT_EQ("first", reader.read(1));
    EXPECT_EQ("", reader.read(2));
    EXPECT_EQ("first", reader.read(1)) << "again";
    EXPECT_THROW(reader.read(3), std::out_of_range);
}

TEST_F(Reader, keepsTheFileThatItOpened)
{
    const std::string path = write(archive);
    const ArchiveReader reader{path, read(path)};
    std::filesystem::rename(directory.write("other", "other"), path);
    EXPECT_EQ("first", reader.read(1));
    std::filesystem::remove(path);
    EXPECT_EQ("first", reader.read(1));
}

TEST_F(Reader, refusesAnotherFileThanTheOneThatWasRead)
{
    const std::string path = write(archive);
    const Contents contents = read(path);
    std::filesystem::rename(directory.write("other", archive), path);
    EXPECT_THAT(failure(path, contents), HasSubstr("'" + path + "': the file was removed, replaced or changed"));
    std::filesystem::remove(path);
    EXPECT_THAT(failure(path, contents), HasSubstr("'" + path + "': the file was removed, replaced or changed"));
    std::filesystem::create_directory(path);
    EXPECT_THAT(failure(path, contents), HasSubstr("'" + path + "'"));
}

TEST_F(Reader, noticesThatItsFileIsWrittenTo)
{
    const std::string path = write(archive);
    const ArchiveReader reader{path, read(path)};
    write(archive + archive);
    EXPECT_THROW(reader.read(1), std::runtime_error);
}

} // namespace
