// Which bytes begin a character, at the edges of each length.
#include "text/Utf8.h"

#include <gtest/gtest.h>

#include <string_view>

namespace {

using ostrel::text::characterLength;

TEST(Utf8, GivenFirstAndLastOfEachLength_WhenMeasured_ThenTheyAreCharacters)
{
    EXPECT_EQ(characterLength(std::string_view("\0", 1)), 1U);
    EXPECT_EQ(characterLength("\x7f"), 1U);
    EXPECT_EQ(characterLength("\xc2\x80"), 2U);
    EXPECT_EQ(characterLength("\xdf\xbf and more"), 2U);
    EXPECT_EQ(characterLength("\xe0\xa0\x80"), 3U);
    EXPECT_EQ(characterLength("\xed\x9f\xbf"), 3U);
    EXPECT_EQ(characterLength("\xee\x80\x80"), 3U);
    EXPECT_EQ(characterLength("\xef\xbf\xbf"), 3U);
    EXPECT_EQ(characterLength("\xf0\x90\x80\x80"), 4U);
    EXPECT_EQ(characterLength("\xf4\x8f\xbf\xbf"), 4U);
}

TEST(Utf8, GivenWhatLiesBesideThem_WhenMeasured_ThenItIsNoCharacter)
{
    EXPECT_EQ(characterLength(""), 0U);
    for (const char* const text :
         {"\x80", "\xbf", "\xc0\x80", "\xc1\xbf", "\xe0\x9f\xbf", "\xed\xa0\x80", "\xed\xbf\xbf", "\xf0\x8f\xbf\xbf",
          "\xf4\x90\x80\x80", "\xf5\x80\x80\x80", "\xff"}) {
        EXPECT_EQ(characterLength(text), 0U) << testing::PrintToString(text);
    }
}

TEST(Utf8, GivenCharacterThatIsCutOrBroken_WhenMeasured_ThenItIsNone)
{
    for (const char* const text :
         {"\xc2", "\xe0\xa0", "\xf0\x90\x80", "\xc2\x7f", "\xe0\xa0\xc0", "\xf0\x90\x80\x41"}) {
        EXPECT_EQ(characterLength(text), 0U) << testing::PrintToString(text);
    }
}

} // namespace
