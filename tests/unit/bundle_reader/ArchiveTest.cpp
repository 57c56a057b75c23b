#include "bundle_reader/BundleFile.h"
#include "support/TemporaryDirectory.h"
#include "unit/ZipText.h"

#include <gmock/gmock.h>

#include <system_error>

using namespace ostrel::bundle_reader;
using namespace ostrel::test;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::Optional;

namespace {

std::string library()
{
    return contentOf(UNIT_PLAIN_LIBRARY);
}

auto namesAre(const char* name)
{
    return ElementsAre(Field(&Folder::name, name));
}

TEST(Archive, GivenBareZip_WhenRead_ThenItIsZipWithItsManifests)
{
    const Contents contents = inspect(zipText({{"b/manifest.json", "two"}, {"a/manifest.json", "one"}}));

    EXPECT_EQ(contents.format, Format::zip);
    ASSERT_EQ(contents.archive, Archive::readable);
    ASSERT_EQ(contents.folders.size(), 2U);
    EXPECT_EQ(contents.folders[0].name, "a");
    EXPECT_THAT(contents.folders[0].manifest, Optional(std::string{"one"}));
    EXPECT_EQ(contents.folders[1].name, "b");
    EXPECT_THAT(contents.folders[1].manifest, Optional(std::string{"two"}));
}

TEST(Archive, GivenZipAppendedToLibrary_WhenRead_ThenItIsFound)
{
    const Contents contents = inspect(library() + bundleZip("n"));

    EXPECT_EQ(contents.format, Format::elf);
    EXPECT_EQ(contents.archive, Archive::readable);
    EXPECT_THAT(contents.folders, namesAre("n"));
}

TEST(Archive, GivenZipWithComment_WhenRead_ThenItIsFound)
{
    const auto zip = zipText({{"n/manifest.json", "{}"}}, "a comment that says PK and more");

    EXPECT_THAT(inspect(library() + zip).folders, namesAre("n"));
}

TEST(Archive, GivenTwoAppended_WhenRead_ThenTheLastCounts)
{
    EXPECT_THAT(inspect(library() + bundleZip("old") + bundleZip("new")).folders, namesAre("new"));
}

TEST(Archive, GivenZipAsResourceInZip_WhenRead_ThenTheOuterCounts)
{
    const auto zip = zipText({{"n/manifest.json", "{}"}, {"n/inner.zip", bundleZip("inner")}});

    EXPECT_THAT(inspect(zip).folders, namesAre("n"));
}

TEST(Archive, GivenZipBehindText_WhenRead_ThenItIsFoundAndNoBareZip)
{
    const Contents contents = inspect("#!/bin/sh\n" + bundleZip("n"));

    EXPECT_EQ(contents.format, Format::other);
    EXPECT_THAT(contents.folders, namesAre("n"));
}

TEST(Archive, GivenFolderEntryAlone_WhenRead_ThenFolderHasNoManifest)
{
    const Contents contents = inspect(zipText({{"n/", ""}}));

    ASSERT_THAT(contents.folders, namesAre("n"));
    EXPECT_FALSE(contents.folders[0].manifest);
}

TEST(Archive, GivenManifestDeeper_WhenRead_ThenFolderHasNoManifest)
{
    const Contents contents = inspect(zipText({{"n/sub/manifest.json", "{}"}}));

    ASSERT_THAT(contents.folders, namesAre("n"));
    EXPECT_FALSE(contents.folders[0].manifest);
}

TEST(Archive, GivenManifestInCapitals_WhenRead_ThenItIsTheManifest)
{
    const Contents contents = inspect(zipText({{"n/MANIFEST.JSON", "{}"}}));

    ASSERT_THAT(contents.folders, namesAre("n"));
    EXPECT_THAT(contents.folders[0].manifest, Optional(std::string{"{}"}));
}

TEST(Archive, GivenManifestAtRoot_WhenRead_ThenItIsToldAndNoFolder)
{
    const Contents contents = inspect(zipText({{"manifest.json", "{}"}}));

    EXPECT_TRUE(contents.rootManifest);
    EXPECT_TRUE(contents.folders.empty());
}

TEST(Archive, GivenFilesBesideTheManifest_WhenRead_ThenTheyAreTold)
{
    EXPECT_FALSE(inspect(zipText({{"n/", ""}, {"n/manifest.json", "{}"}, {"data.txt", "x"}, {"m/", ""}})).moreFiles);
    EXPECT_TRUE(inspect(zipText({{"n/manifest.json", "{}"}, {"n/data.txt", "x"}})).moreFiles);
    EXPECT_TRUE(inspect(zipText({{"n/in/manifest.json", "{}"}})).moreFiles);
}

TEST(Archive, GivenManifestAboveLimit_WhenRead_ThenDamageSaysSo)
{
    const Contents contents = inspect(zipText({{"n/manifest.json", std::string(manifestLimit + 1, ' ')}}));

    EXPECT_EQ(contents.archive, Archive::damaged);
    EXPECT_THAT(contents.damage, HasSubstr("larger than a manifest may be, 16 MiB"));
}

TEST(Archive, GivenManifestsTogetherAboveLimit_WhenRead_ThenDamageSaysSo)
{
    const std::string manifest(manifestLimit, ' ');
    ZipEntries entries;
    for (const char* folder : {"a", "b", "c", "d"}) {
        entries.emplace_back(std::string{folder} + "/manifest.json", manifest);
    }
    EXPECT_EQ(inspect(zipText(entries)).archive, Archive::readable);

    entries.emplace_back("e/manifest.json", "{}");
    const Contents contents = inspect(zipText(entries));
    EXPECT_EQ(contents.archive, Archive::damaged);
    EXPECT_THAT(contents.damage, HasSubstr("'e/manifest.json'"));
    EXPECT_THAT(contents.damage, HasSubstr("all of them together"));
    EXPECT_TRUE(contents.folders.empty());
}

TEST(Archive, GivenMoreEntriesThanTheFormatCounts_WhenRead_ThenDamageSaysSo)
{
    ZipEntries entries;
    for (int i = 0; i < 65536; ++i) {
        entries.emplace_back("n/" + std::to_string(i), "");
    }
    const Contents contents = inspect(zipText(entries));

    EXPECT_EQ(contents.archive, Archive::damaged);
    EXPECT_THAT(contents.damage, HasSubstr("65534 entries"));

    entries.resize(65534);
    EXPECT_EQ(inspect(zipText(entries)).archive, Archive::readable);
}

TEST(Archive, GivenManifestAtLimit_WhenRead_ThenItIsReadable)
{
    EXPECT_EQ(inspect(zipText({{"n/manifest.json", std::string(manifestLimit, ' ')}})).archive, Archive::readable);
}

TEST(Archive, GivenText_WhenRead_ThenThereIsNone)
{
    const Contents contents = inspect("Nothing but text.");

    EXPECT_EQ(contents.format, Format::other);
    EXPECT_EQ(contents.archive, Archive::none);
}

TEST(Archive, GivenEmptyFile_WhenRead_ThenThereIsNone)
{
    const TemporaryDirectory directory;

    const Contents contents = read(directory.write("empty", ""));

    EXPECT_EQ(contents.format, Format::other);
    EXPECT_EQ(contents.archive, Archive::none);
}

TEST(Archive, GivenProgramThatReadsArchives_WhenRead_ThenItHasNone)
{
    EXPECT_EQ(read("/proc/self/exe").archive, Archive::none);
}

TEST(Archive, GivenFileOnDisk_WhenRead_ThenItIsAsInMemory)
{
    const TemporaryDirectory directory;

    EXPECT_THAT(read(directory.write("n.bundle", library() + bundleZip("n"))).folders, namesAre("n"));
}

TEST(Read, GivenNoSuchFile_WhenRead_ThenErrorNamesIt)
{
    try {
        read("/no/such/file");
        FAIL() << "nothing was thrown";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
        EXPECT_THAT(error.what(), HasSubstr("'/no/such/file'"));
    }
}

TEST(Read, GivenDirectory_WhenRead_ThenItThrows)
{
    const TemporaryDirectory directory;

    EXPECT_THROW(read(directory.path()), std::system_error);
}

} // namespace
