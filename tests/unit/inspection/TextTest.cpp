#include <gtest/gtest.h>

#include <inspection/Text.h>

namespace {

using namespace ostrel::inspection;

TEST(EscapedText, GivenLineEnd_WhenEscaped_ThenNoLineIsForged)
{
    EXPECT_EQ(escaped("a\nb\x1b[2J"), "a\\nb\\x1B[2J");
}

TEST(EscapedText, GivenLongText_WhenEscaped_ThenNothingIsCut)
{
    EXPECT_EQ(escaped(std::string(1000, 'x')), std::string(1000, 'x'));
}

TEST(EscapedLines, GivenLines_WhenEscaped_ThenTheirEndsStayAndNothingElseDoes)
{
    EXPECT_EQ(escapedLines("a\n\x1b\r\n\nb"), "a\n\\x1B\\r\n\nb");
    EXPECT_EQ(escapedLines(""), "");
    EXPECT_EQ(escapedLines("a\n"), "a\n");
}

TEST(NearestWord, GivenSlip_WhenAskedFor_ThenTheWordIsFound)
{
    EXPECT_EQ(nearest("langauge", {"mode", "language"}), "language");
    EXPECT_EQ(nearest("colour", {"mode", "language"}), "");
}

} // namespace
