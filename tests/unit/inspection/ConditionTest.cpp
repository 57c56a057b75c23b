#include "inspection/Condition.h"

#include <gmock/gmock.h>

using namespace ostrel::inspection;
using ostrel::us_container::FilterMap;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

TEST(Conditions, GivenFilterMap_WhenTaken_ThenTheyLieByNameInByteOrder)
{
    const FilterMap filterMap{{"b", {"2", true}}, {"a", {"1", false}}, {"B", {"", false}}};

    const Conditions conditions = toConditions(filterMap);

    EXPECT_THAT(conditions,
                ElementsAre(Condition{"B", "", false}, Condition{"a", "1", false}, Condition{"b", "2", true}));
    EXPECT_EQ(toFilterMap(conditions), filterMap);
    EXPECT_THAT(toConditions({}), IsEmpty());
}

TEST(Conditions, GivenTwoOfOneName_WhenTurnedIntoAFilterMap_ThenTheLastCounts)
{
    EXPECT_EQ(toFilterMap({{"a", "1", true}, {"a", "2", false}}), (FilterMap{{"a", {"2", false}}}));
}

TEST(Conditions, GivenEach_WhenTurnedIntoArguments_ThenTheyAreThoseOfTheHost)
{
    EXPECT_THAT(toArguments({{"a", "1", false}, {"b", "x=y", true}, {"c", "", false}}),
                ElementsAre("--when", "a=1", "--require", "b=x=y", "--when", "c="));
}

} // namespace
