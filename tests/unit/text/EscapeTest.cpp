#include "text/Escape.h"

#include <gmock/gmock.h>

namespace {

using namespace ostrel::text;

TEST(Escaped, GivenPlainText_WhenEscaped_ThenItIsUnchanged)
{
    EXPECT_EQ(escaped("plain ~ é € 😀 \" \\"), "plain ~ é € 😀 \" \\");
}

TEST(Escaped, GivenControlCharacters_WhenEscaped_ThenNoneIsLeft)
{
    EXPECT_EQ(escaped(std::string{"\0\x01\x1b[2J\x1f\x7f", 8}), "\\x00\\x01\\x1B[2J\\x1F\\x7F");
    EXPECT_EQ(escaped("\t\r\n"), "\\t\\r\\n");
}

TEST(Escaped, GivenControlCharactersOfTwoBytes_WhenEscaped_ThenNoneIsLeft)
{
    // U+009B begins a command of a terminal as the escape character and a bracket do; U+00A0 is a blank.
    EXPECT_EQ(escaped("\xC2\x80\xC2\x9B\xC2\x9F\xC2\xA0"), "\\xC2\\x80\\xC2\\x9B\\xC2\\x9F\xC2\xA0");
}

TEST(Escaped, GivenBytesThatAreNoUtf8_WhenEscaped_ThenTheyAreEscapes)
{
    EXPECT_EQ(escaped("\xE9 \x9B \xC3"), "\\xE9 \\x9B \\xC3");
}

TEST(Escaped, GivenLongText_WhenEscaped_ThenItIsCutBetweenCharacters)
{
    EXPECT_EQ(escaped("éé", 4), "éé");
    EXPECT_EQ(escaped("ééé", 4), "éé…");
    EXPECT_EQ(escaped("ééé", 5), "éé…");
}

TEST(Escaped, GivenCharactersThatTurnOrBreakALine_WhenEscaped_ThenNoneIsLeft)
{
    EXPECT_EQ(escaped("a\u202Eb\u2066c\u2028d"), "a\\xE2\\x80\\xAEb\\xE2\\x81\\xA6c\\xE2\\x80\\xA8d");
    EXPECT_EQ(escaped("\u2027 \u202F \u2065 \u206A"), "\u2027 \u202F \u2065 \u206A");
}

} // namespace
