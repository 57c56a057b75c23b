#include "contract/ThrownText.h"

#include <cppmicroservices/AnyMap.h>

#include <gtest/gtest.h>

using namespace cppmicroservices;
using ostrel::test::thrownText;

namespace {

constexpr AnyMap::map_type kinds[] = {AnyMap::ORDERED_MAP, AnyMap::UNORDERED_MAP,
                                      AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS};

AnyMap nested(AnyMap::map_type kind)
{
    const AnyMap leaf(AnyMap::UNORDERED_MAP, {{"w", 9}});
    return AnyMap(kind, {{"n", AnyMap(AnyMap::ORDERED_MAP, {{"x", 5}, {"vec", std::vector<Any>{1, 2, leaf}}})},
                         {"b.c", 3},
                         {"i", 4},
                         {"vs", std::vector<std::string>{"a"}}});
}

} // namespace

TEST(AnyMapKind, GivenHowItWasMade_WhenAsked_ThenTheKindFollows)
{
    EXPECT_EQ(AnyMap().GetType(), AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS);
    EXPECT_EQ((AnyMap{{"a", 1}}.GetType()), AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS);
    EXPECT_EQ(AnyMap(std::map<std::string, Any>{}).GetType(), AnyMap::ORDERED_MAP);
    EXPECT_EQ(AnyMap(std::unordered_map<std::string, Any>{}).GetType(), AnyMap::UNORDERED_MAP);
    EXPECT_EQ(thrownText<std::logic_error>([] { AnyMap(static_cast<AnyMap::map_type>(9)); }), "invalid map type");
}

TEST(AnyMapKeys, GivenKeysThatDifferByCase_WhenCaseDoesNotCount_ThenTheFirstSpellingStays)
{
    AnyMap map{{"Key", 1}, {"key", 2}};
    const auto [at, isNew] = map.insert({"KEY", 3});

    EXPECT_EQ(map.size(), 1U);
    EXPECT_FALSE(isNew);
    EXPECT_EQ(at->first, "Key");
    EXPECT_EQ(map.at("kEY").ToString(), "1");
    map["KEY"] = 7;
    EXPECT_EQ(map.begin()->first, "Key");
    EXPECT_EQ(map.begin()->second.ToString(), "7");
}

TEST(AnyMapKeys, GivenKeysThatDifferByCase_WhenCaseCounts_ThenBothAreHeld)
{
    for (const auto kind : {AnyMap::ORDERED_MAP, AnyMap::UNORDERED_MAP}) {
        const AnyMap map(kind, {{"Key", 1}, {"key", 2}});

        EXPECT_EQ(map.size(), 2U);
        EXPECT_EQ(map.count("KEY"), 0U);
        EXPECT_TRUE(map.find("KEY") == map.cend());
    }
}

TEST(AnyMapAt, GivenAMissingKey_WhenAsked_ThenTheTextIsThatOfTheKind)
{
    EXPECT_EQ(thrownText<std::out_of_range>([] { AnyMap(AnyMap::ORDERED_MAP).at("a"); }), "map::at");
    EXPECT_EQ(thrownText<std::out_of_range>([] { AnyMap(AnyMap::UNORDERED_MAP).at("a"); }), "unordered_map::at");
    EXPECT_EQ(thrownText<std::out_of_range>([] { AnyMap().at("a"); }), "unordered_map::at");
}

TEST(AnyMapEquality, GivenEqualEntries_WhenTheKindDiffers_ThenTheMapsDiffer)
{
    for (const auto one : kinds) {
        for (const auto other : kinds) {
            EXPECT_EQ(AnyMap(one, {{"Key", 1}}) == AnyMap(other, {{"Key", 1}}), one == other);
        }
        EXPECT_FALSE(AnyMap(one, {{"Key", 1}}) == AnyMap(one, {{"key", 1}}));
        EXPECT_TRUE(AnyMap(one, {{"Key", 1}}) != AnyMap(one, {{"Key", 2}}));
    }
}

TEST(AnyMapIterator, GivenNoMap_WhenUsed_ThenItThrows)
{
    EXPECT_EQ(thrownText<std::logic_error>([] { *any_map::iterator(); }), "cannot dereference an invalid iterator");
    EXPECT_EQ(thrownText<std::logic_error>([] { ++any_map::const_iterator().operator++(); }),
              "cannot increment an invalid iterator");
    EXPECT_TRUE(any_map::iterator() == any_map::iterator());
}

TEST(AnyMapIterator, GivenOrderedKeys_WhenIterated_ThenBytesDecide)
{
    const AnyMap map(AnyMap::ORDERED_MAP, {{"x", 1}, {"Y", 2}});
    std::string keys;
    for (const auto& [key, value] : map) {
        keys += key;
    }

    EXPECT_EQ(keys, "Yx");
}

TEST(CompoundKey, GivenAWayThroughMapsAndVectors_WhenFollowed_ThenTheValueIsFound)
{
    for (const auto kind : kinds) {
        const AnyMap map = nested(kind);

        EXPECT_EQ(map.AtCompoundKey("n.x").ToString(), "5");
        EXPECT_EQ(map.AtCompoundKey("n.vec.1").ToString(), "2");
        EXPECT_EQ(map.AtCompoundKey("n.vec.1x").ToString(), "2");
        EXPECT_EQ(map.AtCompoundKey("n.vec.2.w").ToString(), "9");
        EXPECT_EQ(map.AtCompoundKey("n.vec.-2").ToString(), "2");
        EXPECT_EQ(map.AtCompoundKey("i").ToString(), "4");
    }
}

TEST(CompoundKey, GivenAWayThatEnds_WhenFollowed_ThenTheTextSaysWhere)
{
    const auto text = [](const char* key) {
        return thrownText<std::exception>([key] { nested(AnyMap::UNORDERED_MAP).AtCompoundKey(key); });
    };

    EXPECT_EQ(text("zz"), "unordered_map::at");
    EXPECT_EQ(text("b.c"), "unordered_map::at");
    EXPECT_EQ(text("n.X"), "map::at");
    EXPECT_EQ(text("n."), "map::at");
    EXPECT_EQ(text("i.x"), "Unsupported Any type at 'i' for dotted get");
    EXPECT_EQ(text("vs.0"), "Unsupported Any type at 'vs' for dotted get");
    EXPECT_EQ(text("n.vec.0.x"), "Unsupported Any type at '0' for dotted get");
    EXPECT_EQ(text("n.vec.9"), "vector::_M_range_check: __n (which is 9) >= this->size() (which is 3)");
    EXPECT_EQ(text("n.vec.x"), "stoi");
}

TEST(CompoundKey, GivenADefault_WhenTheWayEnds_ThenTheDefaultIsReturned)
{
    const AnyMap map = nested(AnyMap::ORDERED_MAP);

    for (const char* key : {"zz", "b.c", "i.x", "n.vec.9", "n.vec.x", "n..x"}) {
        EXPECT_EQ(map.AtCompoundKey(key, std::string("none")).ToString(), "none") << key;
    }
    EXPECT_EQ(map.AtCompoundKey("n.x", std::string("none")).ToString(), "5");
}

TEST(AnyMapOrder, GivenKeysOfAnyCase_WhenHashed_ThenTheHashIsThatOfTheKeyInLowerCase)
{
    // The order in which such a map is iterated and written follows from it.
    const AnyMap::unordered_any_cimap::hasher hash;
    const std::string plain("service.id");
    const std::string longOne(100, 'x');

    EXPECT_EQ(hash("Service.ID"), std::hash<std::string>()(plain));
    EXPECT_EQ(hash(std::string(100, 'X')), std::hash<std::string>()(longOne));
    EXPECT_EQ(hash(""), std::hash<std::string>()(std::string()));
}

TEST(AnyMapCompoundKey, GivenADotBehindAnIndex_WhenReadWithADefault_ThenTheDotHasNoMeaning)
{
    const AnyMap map(AnyMap::ORDERED_MAP,
                     {{"v", std::vector<Any>{7, AnyMap(AnyMap::ORDERED_MAP, {{"", 8}})}}, {"i", 9}});
    const Any none(std::string("none"));

    EXPECT_EQ(map.AtCompoundKey("v.0.", none).ToString(), "7");
    EXPECT_EQ(map.AtCompoundKey("v.1.", none).ToString(), "{ : 8}");
    EXPECT_EQ(map.AtCompoundKey("v.0..", none).ToString(), "none");
    EXPECT_EQ(map.AtCompoundKey("v.1..", none).ToString(), "none");
    EXPECT_EQ(map.AtCompoundKey("i.", none).ToString(), "none");
    EXPECT_EQ(map.AtCompoundKey("v.1.").ToString(), "8");
    EXPECT_THROW(map.AtCompoundKey("v.0."), std::invalid_argument);
}
