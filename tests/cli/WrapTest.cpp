#include "frame/Wrap.h"

#include <gtest/gtest.h>

namespace ostrel::test {

using host::wrapped;

TEST(Wrap, GivenShortLines_ThenTheyStay)
{
    EXPECT_EQ(wrapped("", 10), "");
    EXPECT_EQ(wrapped("one two", 10), "one two\n");
    EXPECT_EQ(wrapped("one two\n\n  three", 10), "one two\n\n  three\n");
}

TEST(Wrap, GivenLineOfJustTheWidth_ThenItStays)
{
    EXPECT_EQ(wrapped("one two", 7), "one two\n");
    EXPECT_EQ(wrapped("one two", 6), "one\ntwo\n");
}

TEST(Wrap, GivenIndentedLine_ThenTheNextOnesAreIndentedLikewise)
{
    EXPECT_EQ(wrapped("  one two three", 7), "  one\n  two\n  three\n");
}

TEST(Wrap, GivenGapInTheLine_ThenTheNextOnesBeginBehindIt)
{
    EXPECT_EQ(wrapped("  0  one two three", 12), "  0  one two\n     three\n");
}

TEST(Wrap, GivenWordThatIsLongerThanTheWidth_ThenItStaysWhole)
{
    EXPECT_EQ(wrapped("  a/path/without/blanks and more", 10), "  a/path/without/blanks\n  and more\n");
    EXPECT_EQ(wrapped("  a/path/without/blanks", 10), "  a/path/without/blanks\n");
}

} // namespace ostrel::test
