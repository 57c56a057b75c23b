#include "text/Nearest.h"

#include <gmock/gmock.h>

namespace {

using ostrel::text::nearest;

const std::vector<std::string_view> known{"name", "version", "vendor", "ostrelFilters", "symbolic_name"};

TEST(Nearest, GivenOneSlip_WhenAskedFor_ThenTheKeyIsFound)
{
    EXPECT_EQ(nearest("ostrelFilter", known), "ostrelFilters");
    EXPECT_EQ(nearest("ostrellFilters", known), "ostrelFilters");
    EXPECT_EQ(nearest("ostralFilters", known), "ostrelFilters");
    EXPECT_EQ(nearest("nmae", known), "name");
    EXPECT_EQ(nearest("eman", known), "");
}

TEST(Nearest, GivenSeveralSlips_WhenAskedFor_ThenOneLetterOfThreeMayBeWrong)
{
    EXPECT_EQ(nearest("ostrlFiltrs", known), "ostrelFilters");
    EXPECT_EQ(nearest("oxxxxlFilters", known), "ostrelFilters");
    EXPECT_EQ(nearest("oxxxxxFilters", known), "");
    EXPECT_EQ(nearest("ostrelFiltersabcd", known), "ostrelFilters");
    EXPECT_EQ(nearest("ostrelFiltersabcde", known), "");
}

TEST(Nearest, GivenAnotherCaseOfLetters_WhenAskedFor_ThenItDoesNotCount)
{
    EXPECT_EQ(nearest("SYMBOLIC-NAME", known), "symbolic_name");
}

TEST(Nearest, GivenTwoNearOnes_WhenAskedFor_ThenTheNearerIsFound)
{
    EXPECT_EQ(nearest("verdor", {"version", "vendor"}), "vendor");
    EXPECT_EQ(nearest("abcx", {"abcxyz", "abcd", "abce"}), "abcd");
}

TEST(Nearest, GivenNothingNear_WhenAskedFor_ThenThereIsNone)
{
    EXPECT_EQ(nearest("", known), "");
    EXPECT_EQ(nearest("colour", known), "");
    EXPECT_EQ(nearest("name", {}), "");
    EXPECT_EQ(nearest(std::string(1 << 20, 'n'), known), "");
}

} // namespace
