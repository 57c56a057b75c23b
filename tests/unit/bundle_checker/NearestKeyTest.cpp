#include "bundle_checker/NearestKey.h"

#include <gmock/gmock.h>

namespace {

using ostrel::bundle_checker::nearestKey;

const std::vector<std::string_view> known{"name", "version", "vendor", "ostrelFilters", "symbolic_name"};

TEST(NearestKey, GivenOneSlip_WhenAskedFor_ThenTheKeyIsFound)
{
    EXPECT_EQ(nearestKey("ostrelFilter", known), "ostrelFilters");
    EXPECT_EQ(nearestKey("ostrellFilters", known), "ostrelFilters");
    EXPECT_EQ(nearestKey("ostralFilters", known), "ostrelFilters");
    EXPECT_EQ(nearestKey("nmae", known), "name");
    EXPECT_EQ(nearestKey("eman", known), "");
}

TEST(NearestKey, GivenSeveralSlips_WhenAskedFor_ThenOneLetterOfThreeMayBeWrong)
{
    EXPECT_EQ(nearestKey("ostrlFiltrs", known), "ostrelFilters");
    EXPECT_EQ(nearestKey("oxxxxlFilters", known), "ostrelFilters");
    EXPECT_EQ(nearestKey("oxxxxxFilters", known), "");
    EXPECT_EQ(nearestKey("ostrelFiltersabcd", known), "ostrelFilters");
    EXPECT_EQ(nearestKey("ostrelFiltersabcde", known), "");
}

TEST(NearestKey, GivenAnotherCaseOfLetters_WhenAskedFor_ThenItDoesNotCount)
{
    EXPECT_EQ(nearestKey("SYMBOLIC-NAME", known), "symbolic_name");
}

TEST(NearestKey, GivenTwoNearOnes_WhenAskedFor_ThenTheNearerIsFound)
{
    EXPECT_EQ(nearestKey("verdor", {"version", "vendor"}), "vendor");
    EXPECT_EQ(nearestKey("abcx", {"abcxyz", "abcd", "abce"}), "abcd");
}

TEST(NearestKey, GivenNothingNear_WhenAskedFor_ThenThereIsNone)
{
    EXPECT_EQ(nearestKey("", known), "");
    EXPECT_EQ(nearestKey("colour", known), "");
    EXPECT_EQ(nearestKey("name", {}), "");
    EXPECT_EQ(nearestKey(std::string(1 << 20, 'n'), known), "");
}

} // namespace
