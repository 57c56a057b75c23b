// Where in a file an archive is looked for, and what is said of damage at each of these places.
#include "bundle_reader/BundleFile.h"
#include "bundle_reader/zip/ZipLocator.h"
#include "support/LargeLibrary.h"
#include "support/TemporaryDirectory.h"
#include "unit/ZipText.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>

using namespace ostrel::bundle_reader;
using namespace ostrel::test;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

namespace {

constexpr const char* cutShort = "its end record is missing, as in a file that was cut short";
constexpr const char* brokenDirectory = "it holds a manifest, but its directory is broken";

std::string library()
{
    return contentOf(UNIT_PLAIN_LIBRARY);
}

/// The library with `archive` in one of the rooms that it has.
std::string libraryAround(const std::string& archive, const std::string& room)
{
    std::string bytes = library();
    const auto at = bytes.find(room + "!\x01\x02");
    EXPECT_NE(std::string::npos, at);
    return bytes.replace(at, archive.size(), archive);
}

auto namesAre(const char* name)
{
    return ElementsAre(Field(&Folder::name, name));
}

void expectDamage(const std::string& bytes, const char* why)
{
    const Contents contents = inspect(bytes);
    EXPECT_EQ(contents.archive, Archive::damaged);
    EXPECT_EQ(contents.damage, why);
    EXPECT_THAT(contents.folders, IsEmpty());
}

/// An archive whose entries tell their sizes behind the data, as those of programs that write to a pipe.
std::string streamedZip()
{
    std::string zip = bundleZip("n");
    zip[6] = 0x8;
    return zip;
}

TEST(Places, GivenArchiveInSectionOfEitherTool_WhenRead_ThenItIsFound)
{
    EXPECT_THAT(inspect(libraryAround(bundleZip("n"), "room")).folders, namesAre("n"));
    EXPECT_THAT(inspect(libraryAround(bundleZip("n"), "us")).folders, namesAre("n"));
}

TEST(Places, GivenArchiveInAnotherPartOfALibrary_WhenRead_ThenThereIsNone)
{
    const Contents contents = inspect(libraryAround(bundleZip("n"), "other"));

    EXPECT_EQ(contents.archive, Archive::none);
    EXPECT_EQ(contents.damage, "");
}

TEST(Places, GivenArchivesInBothSections_WhenRead_ThenTheLaterInTheFileCounts)
{
    const std::string bytes = library();
    const bool ownIsLater = bytes.find("room!\x01\x02") > bytes.find("us!\x01\x02");
    std::string both = libraryAround(bundleZip("own"), "room");
    const std::string installed = bundleZip("installed");
    both.replace(both.find("us!\x01\x02"), installed.size(), installed);

    EXPECT_THAT(inspect(both).folders, namesAre(ownIsLater ? "own" : "installed"));
}

TEST(Places, GivenArchiveInSectionAndAppended_WhenRead_ThenTheAppendedCounts)
{
    EXPECT_THAT(inspect(libraryAround(bundleZip("in"), "room") + bundleZip("behind")).folders, namesAre("behind"));
}

TEST(Places, GivenAppendedArchiveWithBytesBehindIt_WhenRead_ThenItIsFound)
{
    EXPECT_THAT(inspect(library() + bundleZip("n") + std::string(60000, 'x')).folders, namesAre("n"));
    expectDamage(library() + bundleZip("n") + std::string(70000, 'x'), cutShort);
}

TEST(Places, GivenArchiveAtTheBeginning_WhenAnythingFollows_ThenItIsFound)
{
    for (const std::size_t behind : {std::size_t{1}, std::size_t{60000}, std::size_t{500000}}) {
        SCOPED_TRACE(behind);
        const Contents contents = inspect(zipText({{"n/", ""}, {"n/manifest.json", "{}"}}) + std::string(behind, 'x'));
        EXPECT_EQ(contents.format, Format::zip);
        EXPECT_THAT(contents.folders, namesAre("n"));
    }
}

TEST(Places, GivenArchiveAtTheBeginningThatDoesNotTellItsSizes_WhenFarFromTheEnd_ThenItIsCalledDamaged)
{
    EXPECT_THAT(inspect(streamedZip() + std::string(100, 'x')).folders, namesAre("n"));
    expectDamage(streamedZip() + std::string(100000, 'x'), cutShort);
}

TEST(Places, GivenArchiveAtTheBeginningWithBrokenDirectory_WhenSomethingFollows_ThenItIsCalledDamaged)
{
    std::string zip = bundleZip("n");
    zip[zip.find("PK\x01\x02")] = 'X';

    expectDamage(zip + std::string(100000, 'x'), cutShort);
}

TEST(Places, GivenEndRecordThatNamesNothing_WhenRead_ThenTheTextSaysSo)
{
    std::string zip = bundleZip("n");
    zip[zip.find("PK\x01\x02")] = 'X';

    expectDamage(zip, "its end record names a directory that is not there");
    expectDamage("text" + zip, "its end record names a directory that is not there");
}

TEST(Places, GivenDirectoryThatLeadsElsewhere_WhenRead_ThenTheTextSaysSo)
{
    std::string zip = bundleZip("n");
    zip[0] = 'X';
    expectDamage(library() + zip, "an entry is not where the directory says");

    std::string longer = bundleZip("n");
    longer[longer.find("PK\x01\x02") + 20] = '\x7f'; // packed size
    expectDamage(library() + longer, "the data of an entry are cut short");

    std::string named = bundleZip("n");
    named[named.find("PK\x01\x02") + 28] = '\x7f'; // name size
    expectDamage(named, "its directory is broken");
}

TEST(Places, GivenArchiveAboveTheFormat_WhenItEndsTheFile_ThenTheTextSaysSo)
{
    std::string zip = bundleZip("n");
    zip.insert(zip.rfind("PK\x05\x06"), std::string{"PK\x06\x07"} + std::string(16, '\0'));

    expectDamage(library() + zip,
                 "it is in the format for large archives (zip64), which is not read; an archive may have 65534 "
                 "entries and 2 GiB at most");
}

TEST(Places, GivenArchiveInSectionThatIsBroken_WhenItHoldsAManifest_ThenTheTextSaysSo)
{
    for (const char* room : {"room", "us"}) {
        std::string noEnd = bundleZip("n");
        noEnd[noEnd.rfind("PK\x05\x06")] = 'X';
        expectDamage(libraryAround(noEnd, room), brokenDirectory);

        std::string noDirectory = bundleZip("n");
        noDirectory[noDirectory.find("PK\x01\x02")] = 'X';
        expectDamage(libraryAround(noDirectory, room), brokenDirectory);
    }
}

TEST(Places, GivenArchiveInSectionThatIsBroken_WhenItHoldsNoManifest_ThenThereIsNone)
{
    std::string zip = zipText({{"n/other.json", "{}"}});
    zip[zip.rfind("PK\x05\x06")] = 'X';

    EXPECT_EQ(inspect(libraryAround(zip, "room")).archive, Archive::none);
}

TEST(Places, GivenEmptyArchive_WhenItEndsTheFile_ThenItCountsAndElsewhereItDoesNot)
{
    const std::string empty = std::string{"PK\x05\x06"} + std::string(18, '\0');

    EXPECT_EQ(inspect(empty).archive, Archive::readable);
    EXPECT_EQ(inspect(library() + empty).archive, Archive::readable);
    EXPECT_EQ(inspect(libraryAround(empty, "room")).archive, Archive::none);
}

TEST(Places, GivenLongestComment_WhenItEndsTheFile_ThenTheArchiveIsFound)
{
    const auto zip = zipText({{"n/manifest.json", "{}"}}, std::string(0xffff, 'c'));

    EXPECT_THAT(inspect(library() + zip).folders, namesAre("n"));
    EXPECT_THAT(inspect("text" + zip).folders, namesAre("n"));
}

TEST(Places, GivenManyArchivesInARow_WhenRead_ThenTheLastCounts)
{
    std::string many;
    for (int i = 0; i < 100; ++i) {
        many += bundleZip("n" + std::to_string(i));
    }

    EXPECT_THAT(inspect(many).folders, namesAre("n99"));
}

TEST(Places, GivenFileAboveTwoGigabytes_WhenAnArchiveEndsIt_ThenItIsFound)
{
    const TemporaryDirectory directory;
    const auto file = directory.write("large", library());
    std::filesystem::resize_file(file, (std::uint64_t{5} << 30U) + 1);
    std::ofstream{file, std::ios::app | std::ios::binary} << bundleZip("n");

    const Contents contents = read(file.string());

    EXPECT_EQ(contents.format, Format::elf);
    EXPECT_THAT(contents.folders, namesAre("n"));
    EXPECT_GT(contents.place.begin, std::uint64_t{5} << 30U);
}

TEST(Places, GivenLibraryThatHoldsMuchElse_WhenRead_ThenArchiveAndNeedsAreFound)
{
    const TemporaryDirectory directory;
    const auto file = directory.path() / "large";
    writeLargeLibrary(file, libraryAround(bundleZip("n"), "room"), 3 << 20);

    const Contents contents = read(file.string());

    EXPECT_FALSE(contents.truncated);
    EXPECT_THAT(contents.folders, namesAre("n"));
    EXPECT_THAT(contents.needed, testing::Contains(UNIT_NEEDED_NAME));

    std::filesystem::resize_file(file, std::filesystem::file_size(file) - 1);
    EXPECT_TRUE(read(file.string()).truncated);
}

TEST(Places, GivenFileWithAnArchiveAtItsEnd_WhenAsked_ThenItEndsWithOne)
{
    const TemporaryDirectory directory;

    EXPECT_TRUE(endsWithArchive(directory.write("a", library() + bundleZip("n")).string()));
    EXPECT_FALSE(endsWithArchive(directory.write("b", bundleZip("n") + "x").string()));
    EXPECT_FALSE(endsWithArchive(directory.write("c", "").string()));
    EXPECT_TRUE(endsWithArchive(directory.write("d", std::string{"PK\x05\x06"} + std::string(18, '\0')).string()));
}

TEST(Places, GivenLibraryWithArchive_WhenOnlyItsHeadersAreRead_ThenNoArchiveIsLookedFor)
{
    const TemporaryDirectory directory;

    const Contents contents = readHeaders(directory.write("a", library() + bundleZip("n")).string());

    EXPECT_EQ(contents.format, Format::elf);
    EXPECT_THAT(contents.needed, testing::Contains(UNIT_NEEDED_NAME));
    EXPECT_EQ(contents.archive, Archive::none);
    EXPECT_THAT(contents.folders, IsEmpty());
    EXPECT_EQ(readHeaders(directory.write("b", bundleZip("n")).string()).format, Format::other);
}

} // namespace
