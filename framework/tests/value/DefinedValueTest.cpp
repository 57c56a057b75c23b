#include <cppmicroservices/AnyMap.h>

#include <gtest/gtest.h>

using namespace cppmicroservices;

TEST(AnyEquality, GivenAnEmptyRightSide_WhenCompared_ThenItIsUnequal)
{
    EXPECT_FALSE(Any(5) == Any());
    EXPECT_FALSE(Any() == Any());
    EXPECT_FALSE((AnyMap{{"a", Any()}} == AnyMap{{"a", Any()}}));
}

TEST(AnyIndent, GivenAControlCharacter_WhenWrittenWithIndentation_ThenBlanksStillIndent)
{
    const Any value(std::vector<std::string>{"\x01", "a"});

    EXPECT_EQ(value.ToJSON(true), "[\n    \"\\u0001\",\n    \"a\"\n]");
    EXPECT_EQ(value.ToCPP(true), "AnyVector {{\n    std::string(\"\\u0001\"),\n    std::string(\"a\")\n}}");
}

TEST(AnyMapMove, GivenAMovedFromMap_WhenRead_ThenItIsEmptyAndKeepsItsKind)
{
    for (const auto kind : {AnyMap::ORDERED_MAP, AnyMap::UNORDERED_MAP, AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS}) {
        AnyMap from(kind, {{"a", 1}});
        const AnyMap to(std::move(from));

        EXPECT_TRUE(from.empty()); // NOLINT: what a moved-from map is, is the point
        EXPECT_EQ(from.GetType(), kind);
        EXPECT_EQ(to.size(), 1U);
        from["b"] = 2;
        EXPECT_EQ(from.at("b").ToString(), "2");
    }
}

TEST(AnyMapAssign, GivenAValueInsideOfTheMap_WhenAssignedToTheMap_ThenItReplacesIt)
{
    AnyMap map{{"inner", AnyMap(AnyMap::ORDERED_MAP, {{"a", 1}})}};
    map = ref_any_cast<AnyMap>(map.at("inner"));

    EXPECT_EQ(map.GetType(), AnyMap::ORDERED_MAP);
    EXPECT_EQ(map.at("a").ToString(), "1");
}

TEST(AnyMoveIn, GivenATemporary_WhenHeld_ThenItIsMovedAndNotCopied)
{
    std::vector<int> numbers(3, 7);
    const int* const data = numbers.data();
    const Any any(std::move(numbers));

    EXPECT_EQ(ref_any_cast<std::vector<int>>(any).data(), data);
}

TEST(AnyText, GivenValuesNestedTooDeeply_WhenWritten_ThenItThrowsAndTheNextOneIsWritten)
{
    Any deep(1);
    for (int i = 0; i < 5000; ++i) {
        std::vector<Any> around;
        around.push_back(std::move(deep));
        deep = std::move(around);
    }

    EXPECT_THROW(deep.ToString(), std::length_error);
    EXPECT_THROW(deep.ToJSON(), std::length_error);
    EXPECT_EQ(Any(std::vector<Any>{1}).ToJSON(), "[1]");
}
