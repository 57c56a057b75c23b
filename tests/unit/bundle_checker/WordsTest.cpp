#include "bundle_checker/Words.h"

#include <gmock/gmock.h>

namespace {

using namespace ostrel::bundle_checker;

TEST(Ahead, GivenPlaceInALine_WhenAskedFor_ThenTheRestOfTheLineIsShown)
{
    EXPECT_EQ(ahead("one two\nthree", 4), "'two'");
    EXPECT_EQ(ahead("one two\r\nthree", 4), "'two'");
    EXPECT_EQ(ahead("one", 3), "''");
    EXPECT_EQ(ahead("123456789012345678901", 0), "'12345678901234567890…'");
}

} // namespace
