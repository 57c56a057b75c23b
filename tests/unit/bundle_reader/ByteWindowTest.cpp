// Numbers and pieces of bytes, at the edges of what there is.
#include "bundle_reader/file/ByteWindow.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace ostrel::bundle_reader;

TEST(ByteWindow, GivenNumber_WhenRead_ThenTheOrderOfItsBytesCounts)
{
    const std::string bytes{"\x01\x02\x03", 3};

    EXPECT_EQ(numberAt(bytes, 1, 2, ByteOrder::big), 0x0203U);
    EXPECT_EQ(numberAt(bytes, 1, 2, ByteOrder::little), 0x0302U);
}

TEST(ByteWindow, GivenNumberThatReachesPastTheEnd_WhenRead_ThenItIsZero)
{
    const std::string bytes{"\x01\x02\x03", 3};

    EXPECT_EQ(numberAt(bytes, 2, 2, ByteOrder::little), 0U);
    EXPECT_EQ(numberAt(bytes, 4, 1, ByteOrder::little), 0U);
    EXPECT_EQ(numberAt(bytes, ~std::uint64_t{0}, 2, ByteOrder::little), 0U);
    const MemoryBytes source{bytes};
    EXPECT_EQ(ByteWindow(source).number(2, 2, ByteOrder::little), 0U);
}

TEST(ByteWindow, GivenPieces_WhenRead_ThenTheyAreThoseOfTheSource)
{
    const MemoryBytes source{"0123456789"};
    ByteWindow window{source, 4};

    EXPECT_EQ(window.at(0, 2), "01");
    EXPECT_EQ(window.at(2, 2), "23");
    EXPECT_EQ(window.at(3, 2), "34");
    EXPECT_EQ(window.at(1, 8), "12345678");
    EXPECT_EQ(window.at(8, 8), "89");
    EXPECT_EQ(window.at(11, 1), "");
    EXPECT_TRUE(window.holds(5, "56"));
    EXPECT_FALSE(window.holds(9, "9a"));
}

} // namespace
