// The records of an archive, by which it is found, when they say odd things.
#include "bundle_reader/BundleFile.h"
#include "bundle_reader/zip/ZipDirectory.h"
#include "unit/ZipText.h"

#include <gmock/gmock.h>

#include <optional>

using namespace ostrel::bundle_reader;
using namespace ostrel::test;

namespace {

class Directory : public ::testing::Test {
protected:
    static std::size_t endRecord(const std::string& bytes) { return bytes.rfind("PK\x05\x06"); }
    static std::size_t directory(const std::string& bytes) { return bytes.find("PK\x01\x02"); }

    /// The archive with another number at that place.
    static std::string with(std::string bytes, std::size_t at, std::string_view number)
    {
        return bytes.replace(at, number.size(), number);
    }

    static bool hasEndRecord(const std::string& bytes)
    {
        return endRecordAt(MemoryBytes{bytes}, endRecord(bytes)).has_value();
    }

    static std::string fault(const std::string& bytes)
    {
        const auto end = endRecordAt(MemoryBytes{bytes}, endRecord(bytes));
        return end ? faultOf(MemoryBytes{bytes}, *end) : "no end record";
    }

    static bool entryAt(const std::string& bytes, std::uint64_t at, bool ofManifest = false)
    {
        return isEntry(MemoryBytes{bytes}, at, ofManifest);
    }

    const std::string zip = zipText({{"n/manifest.json", "{}"}, {"n/x", "data"}});
};

TEST_F(Directory, GivenEndRecord_WhenItContradictsItself_ThenItIsNone)
{
    EXPECT_TRUE(hasEndRecord(zip));
    const std::size_t end = endRecord(zip);
    EXPECT_FALSE(hasEndRecord(with(zip, end + 4, "\x01"))) << "another disk";
    EXPECT_FALSE(hasEndRecord(with(zip, end + 8, "\x01"))) << "entries of this disk";
    EXPECT_FALSE(hasEndRecord(with(zip, end + 12, "\xff\xff"))) << "size of the directory";
    EXPECT_FALSE(hasEndRecord(with(zip, end + 16, "\xff\xff"))) << "place of the directory";
    EXPECT_FALSE(hasEndRecord(with(zip, end + 20, "\x01"))) << "size of the comment";
    EXPECT_FALSE(hasEndRecord(with(with(zip, end + 8, "\xff\x01"), end + 10, "\xff\x01"))) << "more than fit";
    EXPECT_FALSE(hasEndRecord(with(with(zip, end + 8, std::string(2, '\0')), end + 10, std::string(2, '\0'))))
        << "none, but a directory";
    EXPECT_FALSE(hasEndRecord(zip.substr(0, zip.size() - 1)));
    EXPECT_FALSE(hasEndRecord(with(zip, directory(zip), "X"))) << "no directory there";
}

TEST_F(Directory, GivenFewerBytesThanARecord_WhenItsEndIsLookedFor_ThenThereIsNone)
{
    EXPECT_FALSE(endRecordBefore(MemoryBytes{"PK\x05\x06"}, 0, 4));
    EXPECT_FALSE(endRecordBefore(MemoryBytes{""}, 0, 0));
}

TEST_F(Directory, GivenCommentThatHoldsRecords_WhenTheEndIsLookedFor_ThenTheOneThatEndsThereCounts)
{
    const std::string inner = zipText({{"i/manifest.json", "{}"}});
    const std::string comment = inner + "!";
    std::string outer = zip + comment;
    outer[zip.size() - 2] = static_cast<char>(comment.size());

    const auto position = endRecordBefore(MemoryBytes{outer}, 0, outer.size());

    ASSERT_TRUE(position);
    EXPECT_EQ(*position, zip.size() - 22);
}

TEST_F(Directory, GivenDirectory_WhenItIsBroken_ThenTheTextSaysHow)
{
    EXPECT_EQ(fault(zip), "");
    const std::size_t first = directory(zip);
    const std::size_t second = zip.find("PK\x01\x02", first + 1);
    EXPECT_EQ(fault(with(zip, second, "X")), "its directory is broken");
    EXPECT_EQ(fault(with(zip, second + 28, "\xff\xff")), "its directory is broken") << "a name beyond its end";
    EXPECT_EQ(fault(with(zip, first + 42, "\x01")), "an entry is not where the directory says");
    EXPECT_EQ(fault(with(zip, first + 42, "\xff\xff\xff\x7f")), "an entry is not where the directory says");
    EXPECT_EQ(fault(with(zip, first + 20, "\xff\xff")), "the data of an entry are cut short");
    EXPECT_EQ(fault(with(zip, 28, "\xff\xff")), "the data of an entry are cut short") << "extra field of the entry";

    const std::size_t end = endRecord(zip);
    EXPECT_EQ(fault(with(with(zip, end + 8, "\x01"), end + 10, "\x01")), "its directory is broken") << "one too many";
}

TEST_F(Directory, GivenManyBrokenArchives_WhenTheLastIsLookedFor_ThenOnlySomeAreTried)
{
    const std::string broken = with(bundleZip("n"), 0, "X");
    std::string some = zip;
    for (int i = 0; i < 63; ++i) {
        some += broken;
    }
    const std::string tooMany = some + broken;

    EXPECT_TRUE(lastArchive(MemoryBytes{some}, 0, some.size()));
    EXPECT_FALSE(lastArchive(MemoryBytes{tooMany}, 0, tooMany.size()));
}

TEST_F(Directory, GivenPart_WhenTheArchiveReachesOutOfIt_ThenItIsNotFound)
{
    const std::string bytes = "before" + zip + "behind";
    const MemoryBytes source{bytes};

    EXPECT_TRUE(lastArchive(source, 6, 6 + zip.size()));
    EXPECT_FALSE(lastArchive(source, 7, 6 + zip.size()));
    const std::string commented = zipText({{"n/x", "data"}}, "comment");
    EXPECT_FALSE(lastArchive(MemoryBytes{commented}, 0, commented.size() - 1));
}

TEST_F(Directory, GivenArchiveAtTheBeginning_WhenAnyOfItsRecordsIsBroken_ThenItIsNotFound)
{
    const auto found = [](const std::string& bytes) { return archiveAtBeginning(MemoryBytes{bytes}).has_value(); };
    const std::string followed = zip + "behind";
    EXPECT_TRUE(found(followed));
    EXPECT_FALSE(found(with(followed, 6, "\x08"))) << "sizes behind the data";
    EXPECT_FALSE(found(with(followed, directory(zip) + 42, "\x01"))) << "an entry elsewhere";
    EXPECT_FALSE(found(with(followed, endRecord(zip), "X")));
    EXPECT_FALSE(found(with(followed, endRecord(zip) + 16, std::string_view{"\x00\x00", 2})))
        << "it would not begin at the beginning";
    EXPECT_FALSE(found(zip.substr(0, endRecord(zip) - 10)));
    EXPECT_FALSE(found(std::string{"PK\x05\x06"} + std::string(18, '\0') + "behind")) << "an empty one";
}

TEST_F(Directory, GivenHeaderOfAnEntry_WhenItMakesNoSense_ThenItIsNone)
{
    EXPECT_TRUE(entryAt(zip, 0));
    EXPECT_FALSE(entryAt(zip, 1));
    EXPECT_FALSE(entryAt(with(zip, 4, "\x40"), 0)) << "a version that there is not";
    EXPECT_FALSE(entryAt(with(zip, 8, "\x64"), 0)) << "a method that there is not";
    EXPECT_FALSE(entryAt(with(zip, 26, std::string(2, '\0')), 0)) << "no name";
    EXPECT_FALSE(entryAt(with(zip, 26, "\xff\x7f") + std::string(40000, 'x'), 0)) << "a name that is no path";
    EXPECT_FALSE(entryAt(zip.substr(0, 31), 0)) << "a name that is cut";
    EXPECT_FALSE(entryAt(with(zip, 30, "\n"), 0)) << "a name that is no text";
}

TEST_F(Directory, GivenHeaderOfAnEntry_WhenItIsOfAManifest_ThenItsNameTells)
{
    EXPECT_TRUE(entryAt(zip, 0, true));
    EXPECT_FALSE(entryAt(zipText({{"n/x", ""}}), 0, true));
    EXPECT_FALSE(entryAt(zipText({{"n/manifest.jsan", ""}}), 0, true));
    EXPECT_FALSE(entryAt(zipText({{"/manifest.json", ""}}), 0, true)) << "of no bundle";
}

TEST_F(Directory, GivenManifest_WhenItIsNotAsLongAsTheDirectorySays_ThenThatIsTold)
{
    const std::string text = "{\"bundle.symbolic_name\": \"n\"}" + std::string(1000, ' ');
    const std::string packed = zipInMemory([&text](zip_t* archive) {
        zip_file_add(archive, "n/manifest.json", zip_source_buffer(archive, text.data(), text.size(), 0), 0);
    });
    const std::size_t size = directory(packed) + 24;

    EXPECT_EQ(inspect(packed).archive, Archive::readable);
    for (const char* wrong : {"\x10\x00\x00", "\xff\xff\x00"}) {
        const Contents contents = inspect(with(packed, size, std::string_view{wrong, 3}));
        EXPECT_EQ(contents.archive, Archive::damaged);
        EXPECT_EQ(contents.damage, "'n/manifest.json' has not the size that the directory says");
    }
}

} // namespace
