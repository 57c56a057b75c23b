#include "bundle_reader/BundleFile.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>

#include <cstddef>

using namespace ostrel::bundle_reader;
using namespace ostrel::test;
using testing::Contains;
using testing::IsEmpty;
using testing::Not;

namespace {

std::string library()
{
    return contentOf(UNIT_PLAIN_LIBRARY);
}

TEST(Elf, GivenLibrary_WhenRead_ThenItsNeedsAreTold)
{
    const Contents contents = inspect(library());

    EXPECT_EQ(contents.format, Format::elf);
    EXPECT_FALSE(contents.truncated);
    EXPECT_EQ(contents.archive, Archive::none);
    EXPECT_THAT(contents.needed, Contains(UNIT_NEEDED_NAME));
}

TEST(Elf, GivenLibraryCutAnywhere_WhenRead_ThenItIsTruncated)
{
    const std::string whole = library();
    for (std::size_t size = 4; size < whole.size(); size += 1 + size / 50) {
        SCOPED_TRACE(size);
        const Contents contents = inspect(whole.substr(0, size));
        EXPECT_EQ(contents.format, Format::elf);
        EXPECT_TRUE(contents.truncated);
        EXPECT_THAT(contents.damage, Not(IsEmpty()));
    }
}

TEST(Elf, GivenLastByteMissing_WhenRead_ThenItIsTruncated)
{
    const std::string whole = library();

    EXPECT_TRUE(inspect(whole.substr(0, whole.size() - 1)).truncated);
}

TEST(Elf, GivenSmallLibraryOf32Bits_WhenRead_ThenItIsWhole)
{
    // A header of class 32 without tables: type ET_DYN, machine 386.
    std::string bytes{"\x7f"
                      "ELF\x01\x01\x01",
                      7};
    bytes.resize(52, '\0');
    bytes[16] = 3;
    bytes[18] = 3;

    const Contents contents = inspect(bytes);
    EXPECT_EQ(contents.format, Format::elf);
    EXPECT_FALSE(contents.truncated);

    EXPECT_TRUE(inspect(bytes.substr(0, 51)).truncated);
}

TEST(Elf, GivenObjectFile_WhenRead_ThenItIsNoSharedObject)
{
    std::string bytes = library();
    bytes[16] = 1; // ET_REL

    EXPECT_EQ(inspect(bytes).format, Format::other);
}

} // namespace
