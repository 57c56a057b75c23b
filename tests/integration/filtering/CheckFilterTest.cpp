// The decision table, row by row: what is decided, and what is written in which order.
#include "integration/filtering/FilteringFixture.h"

#include <list>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;

const FilterMap nothingAsked;
const FilterMap optionalOnly{{"a", optional("1")}};
const FilterMap oneRequired{{"a", required("1")}, {"b", optional("2")}};

TEST_F(CheckFilter, GivenNoDeclaration_WhenNothingIsAsked_ThenItAdmits)
{
    EXPECT_TRUE(check(Any{}, nothingAsked));

    EXPECT_THAT(log.records(), ElementsAre(emptyMatches));
}

TEST_F(CheckFilter, GivenNoDeclaration_WhenNothingIsRequired_ThenItAdmits)
{
    EXPECT_TRUE(check(Any{}, optionalOnly));

    EXPECT_THAT(log.records(), ElementsAre(emptyMatches));
}

TEST_F(CheckFilter, GivenNoDeclaration_WhenAnAttributeIsRequired_ThenItRefuses)
{
    EXPECT_FALSE(check(Any{}, oneRequired));

    EXPECT_THAT(log.records(), ElementsAre(emptyLacks));
}

TEST_F(CheckFilter, GivenEmptyList_WhenNothingIsAsked_ThenItRefuses)
{
    EXPECT_FALSE(check(listOf(), nothingAsked));

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x8, "subject: filters: []"}, matchesNot));
}

TEST_F(CheckFilter, GivenEmptyList_WhenAnAttributeIsRequired_ThenItRefuses)
{
    EXPECT_FALSE(check(listOf(), oneRequired));

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x8, "subject: filters: []"}, matchesNot));
}

TEST_F(CheckFilter, GivenListWhoseElementMatches_WhenChecked_ThenItAdmits)
{
    EXPECT_TRUE(check(listOf(alternative({{"a", text("1")}})), oneRequired));

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x8, R"(subject: filters: [{"a" : "1"}])"}, matches));
}

TEST_F(CheckFilter, GivenListWhoseSecondElementMatches_WhenChecked_ThenTheFirstLeavesNoRecord)
{
    const Any declaration = listOf(alternative({{"a", text("9")}}), alternative({{"a", text("1")}}));

    EXPECT_TRUE(check(declaration, oneRequired));

    EXPECT_THAT(log.records(), ElementsAre(filters(declaration), matches));
}

TEST_F(CheckFilter, GivenOtherElementsBeforeTheMatch_WhenChecked_ThenEachIsReported)
{
    const Any declaration = listOf(text("x"), Any{}, 5, alternative({{"a", text("1")}}));

    EXPECT_TRUE(check(declaration, oneRequired));

    EXPECT_THAT(log.records(), ElementsAre(filters(declaration), skipping, skipping, skipping, matches));
}

TEST_F(CheckFilter, GivenOtherElementBehindTheMatch_WhenChecked_ThenItIsNotLookedAt)
{
    const Any declaration = listOf(text("x"), alternative({{"a", text("1")}}), 5);

    EXPECT_TRUE(check(declaration, oneRequired));

    EXPECT_THAT(log.records(), ElementsAre(filters(declaration), skipping, matches));
}

TEST_F(CheckFilter, GivenListWithoutMatch_WhenChecked_ThenItRefuses)
{
    const Any declaration = listOf(alternative({{"a", text("9")}}), alternative({{"c", text("1")}}));

    EXPECT_FALSE(check(declaration, oneRequired));

    EXPECT_THAT(log.records(), ElementsAre(filters(declaration), matchesNot));
}

TEST_F(CheckFilter, GivenListWithoutMatchAndWithOtherElements_WhenChecked_ThenEachOfThoseIsReported)
{
    const Any declaration = listOf(5, alternative({{"a", text("9")}}), text("x"));

    EXPECT_FALSE(check(declaration, oneRequired));

    EXPECT_THAT(log.records(), ElementsAre(filters(declaration), skipping, skipping, matchesNot));
}

TEST_F(CheckFilter, GivenListOfOtherElementsOnly_WhenNothingIsAsked_ThenItRefuses)
{
    const Any declaration = listOf(5, text("x"));

    EXPECT_FALSE(check(declaration, nothingAsked));

    EXPECT_THAT(log.records(), ElementsAre(filters(declaration), skipping, skipping, matchesNot));
}

TEST_F(CheckFilter, GivenAlternativeWithoutEntries_WhenNothingIsAsked_ThenItMatches)
{
    const Any declaration = listOf(alternative({}));

    EXPECT_TRUE(check(declaration, nothingAsked));

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x8, "subject: filters: [{}]"}, matches));
}

TEST_F(CheckFilter, GivenAlternativeWithoutEntries_WhenNothingIsRequired_ThenItMatches)
{
    EXPECT_TRUE(check(listOf(alternative({})), optionalOnly));
}

TEST_F(CheckFilter, GivenAlternativeWithoutEntries_WhenAnAttributeIsRequired_ThenTheNextElementIsLookedAt)
{
    const Any declaration = listOf(alternative({}), text("x"), alternative({{"a", text("1")}}));

    EXPECT_TRUE(check(declaration, oneRequired));

    EXPECT_THAT(log.records(), ElementsAre(filters(declaration), skipping, matches));
}

TEST_F(CheckFilter, GivenAnyAlternative_WhenNothingIsAsked_ThenTheFirstOneMatches)
{
    const Any declaration = listOf(5, alternative({{"a", text("x")}}), alternative({{"b", text("y")}}));

    EXPECT_TRUE(check(declaration, nothingAsked));

    EXPECT_THAT(log.records(), ElementsAre(filters(declaration), skipping, matches));
}

TEST_F(CheckFilter, GivenEmptySubjectName_WhenChecked_ThenTheRecordBeginsWithTheLiteral)
{
    EXPECT_TRUE(ostrel::us_container::checkFilter(Any{}, nothingAsked, ""));

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x8, ": empty filter does match"}));
}

/// A declaration that is no list of `Any`.
struct OddDeclaration {
    std::string name;
    Any value;

    friend std::ostream& operator<<(std::ostream& stream, const OddDeclaration& odd) { return stream << odd.name; }
};

class CheckFilterOfOtherType : public CheckFilter, public ::testing::WithParamInterface<OddDeclaration> {};

TEST_P(CheckFilterOfOtherType, GivenDeclaration_WhenNothingIsRequired_ThenItIsReportedAndAdmits)
{
    EXPECT_TRUE(check(GetParam().value, optionalOnly));

    EXPECT_THAT(log.records(), ElementsAre(unexpected(GetParam().value), emptyMatches));
}

TEST_P(CheckFilterOfOtherType, GivenDeclaration_WhenAnAttributeIsRequired_ThenItIsReportedAndRefuses)
{
    EXPECT_FALSE(check(GetParam().value, oneRequired));

    EXPECT_THAT(log.records(), ElementsAre(unexpected(GetParam().value), emptyLacks));
}

std::vector<OddDeclaration> oddDeclarations()
{
    const Any matching = alternative({{"a", text("1")}});
    return {
        {"SingleMap", matching},
        {"Text", text("a=1")},
        {"EmptyText", text("")},
        {"Number", Any{5}},
        {"Boolean", Any{true}},
        {"VectorOfMaps", Any{std::vector<AnyMap>{cppmicroservices::any_cast<AnyMap>(matching)}}},
        {"VectorOfTexts", Any{std::vector<std::string>{"a"}}},
        {"EmptyVectorOfTexts", Any{std::vector<std::string>{}}},
        {"VectorOfNumbers", Any{std::vector<int>{1}}},
        {"ListOfAny", Any{std::list<Any>{matching}}},
        {"StandardMap", Any{std::map<std::string, Any>{{"a", text("1")}}}},
    };
}

INSTANTIATE_TEST_SUITE_P(EachType, CheckFilterOfOtherType, ::testing::ValuesIn(oddDeclarations()),
                         [](const auto& info) { return info.param.name; });

TEST_F(CheckFilter, GivenSingleMap_WhenReported_ThenItsJsonIsQuoted)
{
    check(alternative({{"a", text("1")}}), nothingAsked);

    EXPECT_THAT(log.records(),
                ElementsAre(LogRecord{0x100, R"(subject: unexpected type for filters: {"a" : "1"})"}, emptyMatches));
}

/// An element of a list that is no `AnyMap`.
class CheckFilterWithOtherElement : public CheckFilter, public ::testing::WithParamInterface<OddDeclaration> {};

TEST_P(CheckFilterWithOtherElement, GivenElement_WhenNothingIsAsked_ThenItIsSkipped)
{
    const Any declaration = listOf(GetParam().value);

    EXPECT_FALSE(check(declaration, nothingAsked));

    EXPECT_THAT(log.records(), ElementsAre(filters(declaration), skipping, matchesNot));
}

std::vector<OddDeclaration> oddElements()
{
    const Any matching = alternative({{"a", text("1")}});
    return {
        {"Empty", Any{}},
        {"Text", text("x")},
        {"Number", Any{5}},
        {"StandardMap", Any{std::map<std::string, Any>{{"a", text("1")}}}},
        {"ListInList", listOf(matching)},
        {"VectorOfMaps", Any{std::vector<AnyMap>{cppmicroservices::any_cast<AnyMap>(matching)}}},
    };
}

INSTANTIATE_TEST_SUITE_P(EachType, CheckFilterWithOtherElement, ::testing::ValuesIn(oddElements()),
                         [](const auto& info) { return info.param.name; });

} // namespace
} // namespace ostrel::test
