// The rule by which one alternative matches.
#include "integration/filtering/FilteringFixture.h"

#include <memory>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;

const FilterMap twoRequired{{"a", required("1")}, {"b", required("2")}};
const FilterMap bothOptional{{"a", optional("1")}, {"b", optional("2")}};

TEST_F(CheckFilter, GivenOneOfTwoRequiredAttributes_WhenChecked_ThenThatIsEnough)
{
    EXPECT_TRUE(check(listOf(alternative({{"a", text("1")}})), twoRequired));
    EXPECT_TRUE(check(listOf(alternative({{"b", text("2")}})), twoRequired));
}

TEST_F(CheckFilter, GivenBothRequiredAttributes_WhenOneHasAnotherValue_ThenItIsRejected)
{
    EXPECT_FALSE(check(listOf(alternative({{"a", text("1")}, {"b", text("3")}})), twoRequired));
    EXPECT_FALSE(check(listOf(alternative({{"a", text("3")}, {"b", text("2")}})), twoRequired));
}

TEST_F(CheckFilter, GivenBothRequiredAttributes_WhenBothHaveTheirValues_ThenItMatches)
{
    EXPECT_TRUE(check(listOf(alternative({{"a", text("1")}, {"b", text("2")}})), twoRequired));
}

TEST_F(CheckFilter, GivenUnaskedAttributeAlone_WhenOthersAreRequired_ThenItIsRejected)
{
    EXPECT_FALSE(check(listOf(alternative({{"c", text("x")}})), twoRequired));
}

TEST_F(CheckFilter, GivenUnaskedAttributeAlone_WhenNothingIsRequired_ThenItMatches)
{
    EXPECT_TRUE(check(listOf(alternative({{"c", text("x")}})), bothOptional));
}

TEST_F(CheckFilter, GivenUnaskedAttributeBesideARequiredOne_WhenChecked_ThenItIsIgnored)
{
    EXPECT_TRUE(check(listOf(alternative({{"b", text("2")}, {"c", text("x")}})), twoRequired));
}

TEST_F(CheckFilter, GivenOptionalAttribute_WhenItHasAnotherValue_ThenItIsRejected)
{
    EXPECT_FALSE(check(listOf(alternative({{"a", text("9")}})), bothOptional));
}

TEST_F(CheckFilter, GivenOptionalAttributeAlone_WhenAnotherIsRequired_ThenItIsRejected)
{
    EXPECT_FALSE(check(listOf(alternative({{"a", text("1")}})), FilterMap{{"a", optional("1")}, {"b", required("2")}}));
}

TEST_F(CheckFilter, GivenOneOfManyRequiredAttributes_WhenChecked_ThenAnyOfThemIsEnough)
{
    FilterMap manyRequired;
    for (char letter = 'a'; letter <= 'z'; ++letter) {
        manyRequired[std::string(1, letter)] = required("1");
    }

    for (char letter = 'a'; letter <= 'z'; ++letter) {
        EXPECT_TRUE(check(listOf(alternative({{std::string(1, letter), text("1")}})), manyRequired)) << letter;
    }
}

TEST_F(CheckFilter, GivenEmptyAttributeName_WhenItIsRequired_ThenItIsAnAttributeLikeOthers)
{
    EXPECT_TRUE(check(listOf(alternative({{"", text("1")}})), FilterMap{{"", required("1")}}));
    EXPECT_FALSE(check(listOf(alternative({{"", text("2")}})), FilterMap{{"", required("1")}}));
}

/// What a declared value compares equal to, and what not.
struct ValueCase {
    std::string name;
    Any declared;
    std::string expected;
    bool equal;

    friend std::ostream& operator<<(std::ostream& stream, const ValueCase& value) { return stream << value.name; }
};

class CheckFilterValue : public CheckFilter, public ::testing::WithParamInterface<ValueCase> {};

TEST_P(CheckFilterValue, GivenDeclaredValue_WhenComparedWithTheExpectedText_ThenItIsAsListed)
{
    const Any declaration = listOf(alternative({{"a", GetParam().declared}}));

    EXPECT_EQ(check(declaration, FilterMap{{"a", optional(GetParam().expected)}}), GetParam().equal);
    EXPECT_EQ(check(declaration, FilterMap{{"a", required(GetParam().expected)}}), GetParam().equal);
}

std::vector<ValueCase> valueCases()
{
    using namespace std::string_literals;
    return {
        {"Integer", Any{1}, "1", true},
        {"IntegerWithLeadingZero", Any{1}, "01", false},
        {"IntegerWithLeadingBlank", Any{1}, " 1", false},
        {"IntegerWithTrailingBlank", Any{1}, "1 ", false},
        {"NegativeInteger", Any{-7}, "-7", true},
        {"TrueIsOne", Any{true}, "1", true},
        {"TrueIsNotItsName", Any{true}, "true", false},
        {"FalseIsZero", Any{false}, "0", true},
        {"Double", Any{1.5}, "1.5", true},
        {"WholeDouble", Any{2.0}, "2", true},
        {"Text", text("day"), "day", true},
        {"TextInOtherCase", text("Day"), "day", false},
        {"TextWithTrailingBlank", text("day "), "day", false},
        {"PrefixOfTheExpectedText", text("da"), "day", false},
        {"TextLongerThanExpected", text("days"), "day", false},
        {"EmptyText", text(""), "", true},
        {"EmptyTextIsNoWildcard", text("day"), "", false},
        {"TextBeyondAZeroByte", text("day\0x"s), "day\0y"s, false},
        {"TextWithAZeroByte", text("day\0x"s), "day\0x"s, true},
        {"NoWildcards", text("*"), "day", false},
        {"List", listOf(text("x"), text("y")), "[x,y]", true},
        {"EmptyList", listOf(), "[]", true},
        {"Map", alternative({{"k", text("v")}}), "{k : v}", true},
    };
}

INSTANTIATE_TEST_SUITE_P(EachValue, CheckFilterValue, ::testing::ValuesIn(valueCases()),
                         [](const auto& info) { return info.param.name; });

TEST_F(CheckFilter, GivenAttributeInOtherCase_WhenItsValueDiffers_ThenItIsIgnored)
{
    EXPECT_TRUE(check(listOf(manifestAlternative("Mode", "night")), FilterMap{{"mode", optional("day")}}));
}

TEST_F(CheckFilter, GivenAttributeInOtherCase_WhenItIsRequired_ThenItIsNotNamed)
{
    EXPECT_FALSE(check(listOf(manifestAlternative("Mode", "day")), FilterMap{{"mode", required("day")}}));
}

TEST_F(CheckFilter, GivenAttributeInTheSameCase_WhenItIsRequired_ThenItIsNamed)
{
    EXPECT_TRUE(check(listOf(manifestAlternative("Mode", "day")), FilterMap{{"Mode", required("day")}}));
}

TEST_F(CheckFilter, GivenAttributeInOneCase_WhenBothSpellingsAreRequired_ThenTheOneSatisfiesTheRule)
{
    const FilterMap bothSpellings{{"Mode", required("day")}, {"mode", required("night")}};

    EXPECT_TRUE(check(listOf(manifestAlternative("Mode", "day")), bothSpellings));
}

TEST_F(CheckFilter, GivenHashedMapWithExactKeys_WhenChecked_ThenItIsAnAlternativeToo)
{
    AnyMap map{AnyMap::UNORDERED_MAP};
    map["Mode"] = std::string{"day"};

    EXPECT_TRUE(check(listOf(Any{map}), FilterMap{{"Mode", required("day")}}));
    EXPECT_FALSE(check(listOf(Any{map}), FilterMap{{"mode", required("day")}}));
}

TEST_F(CheckFilter, GivenConditions_WhenChecked_ThenTheyAreLeftAsTheyWere)
{
    FilterMap conditions{{"a", required("1")}};

    check(listOf(alternative({{"c", text("x")}})), conditions);

    EXPECT_EQ(conditions, (FilterMap{{"a", required("1")}}));
}

/// A value of which the copies in being can be counted.
struct Tracked {
    std::shared_ptr<int> share = std::make_shared<int>(0);

    friend std::ostream& operator<<(std::ostream& stream, const Tracked&) { return stream << "tracked"; }
};

/// Copies are released whether the alternative matches, is rejected, or cannot be evaluated.
TEST_F(CheckFilter, GivenAlternativeThatIsCopied_WhenChecked_ThenTheCopyIsReleased)
{
    const Tracked value;
    const Any rejected = alternative({{"a", text("9")}, {"t", value}});
    const Any failing = alternative({{"t", value}, {"z", Any{}}});
    const Any matching = alternative({{"a", text("1")}, {"t", value}});
    const long before = value.share.use_count();

    check(listOf(rejected), FilterMap{{"a", optional("1")}});
    check(listOf(failing), FilterMap{});
    check(listOf(matching), FilterMap{{"a", optional("1")}});

    EXPECT_EQ(value.share.use_count(), before);
}

TEST_F(CheckFilter, GivenManyAttributes_WhenChecked_ThenTheResultDoesNotDependOnTheKindOfMap)
{
    for (const auto kind : {AnyMap::ORDERED_MAP, AnyMap::UNORDERED_MAP, AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS}) {
        AnyMap map{kind};
        FilterMap conditions;
        for (char letter = 'a'; letter <= 'z'; ++letter) {
            map[std::string(1, letter)] = 1;
            conditions[std::string(1, letter)] = optional("1");
        }
        EXPECT_TRUE(check(listOf(Any{map}), conditions));
        conditions["m"] = optional("2");
        EXPECT_FALSE(check(listOf(Any{map}), conditions));
    }
}

} // namespace
} // namespace ostrel::test
