#include "bundle_reader/manifest/Json.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <string>

using namespace ostrel::bundle_reader;
using Kind = JsonValue::Kind;
using testing::IsEmpty;

namespace {

/// The value of the key "a", which must be the only one.
JsonValue valueIn(const std::string& text, JsonDialect dialect = JsonDialect::strict)
{
    const Json json = readJson(text, dialect);
    EXPECT_FALSE(json.fault.has_value()) << text << ": " << json.fault->words;
    if (json.fault || json.root.members.size() != 1) {
        ADD_FAILURE() << text;
        return {};
    }
    EXPECT_EQ(json.root.members.front().key, "a");
    return json.root.members.front().value;
}

JsonValue valueOf(const std::string& value, JsonDialect dialect = JsonDialect::strict)
{
    return valueIn("{\"a\":" + value + "}", dialect);
}

TEST(JsonValue, GivenWords_WhenRead_ThenTheyAreOfTheirKinds)
{
    EXPECT_EQ(valueOf("null").kind, Kind::null);
    EXPECT_EQ(valueOf("true").kind, Kind::boolean);
    EXPECT_TRUE(valueOf("true").boolean);
    EXPECT_EQ(valueOf("false").kind, Kind::boolean);
    EXPECT_FALSE(valueOf("false").boolean);
}

TEST(JsonValue, GivenNumbersThatAreInts_WhenRead_ThenTheyAreIntegers)
{
    for (const int number : {0, 7, -7, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        const JsonValue value = valueOf(std::to_string(number));
        EXPECT_EQ(value.kind, Kind::integer) << number;
        EXPECT_EQ(value.integer, number);
    }
    EXPECT_EQ(valueOf("-0").kind, Kind::integer);
}

TEST(JsonValue, GivenIntegersThatAreNoInts_WhenRead_ThenTheyAreWide)
{
    for (const std::int64_t number : {2147483648LL, -2147483649LL, 4294967295LL, 4294967296LL, -4294967296LL,
                                      std::numeric_limits<long long>::max(), std::numeric_limits<long long>::min()}) {
        const JsonValue value = valueOf(std::to_string(number));
        EXPECT_EQ(value.kind, Kind::wideInteger) << number;
        EXPECT_EQ(value.integer, number);
        EXPECT_FALSE(value.aboveSigned);
    }
}

TEST(JsonValue, GivenIntegersAboveTheSignedOnes_WhenRead_ThenTheyAreMarked)
{
    const JsonValue first = valueOf("9223372036854775808");
    EXPECT_EQ(first.kind, Kind::wideInteger);
    EXPECT_TRUE(first.aboveSigned);
    EXPECT_EQ(first.integer, std::numeric_limits<std::int64_t>::min());

    const JsonValue last = valueOf("18446744073709551615");
    EXPECT_EQ(last.kind, Kind::wideInteger);
    EXPECT_TRUE(last.aboveSigned);
    EXPECT_EQ(last.integer, -1);
}

TEST(JsonValue, GivenOtherNumbers_WhenRead_ThenTheyAreDoubles)
{
    EXPECT_EQ(valueOf("1.5").kind, Kind::number);
    EXPECT_EQ(valueOf("1.5").number, 1.5);
    EXPECT_EQ(valueOf("-2e3").number, -2000.0);
    EXPECT_EQ(valueOf("18446744073709551616").kind, Kind::number);
    EXPECT_EQ(valueOf("18446744073709551616").number, 18446744073709551616.0);
    EXPECT_EQ(valueOf("-9223372036854775809").kind, Kind::number);
    EXPECT_TRUE(std::signbit(valueOf("-0.0").number));
}

// The frameworks' parser is off by one unit of the last place here; what they give is what is read.
TEST(JsonValue, GivenDialect_WhenRead_ThenItDecidesHowExactNumbersAre)
{
    constexpr double exact = 0.9868011474609375;
    const std::string digits = "0.9868011474609375";
    EXPECT_EQ(valueOf(digits, JsonDialect::commented).number, exact);
    EXPECT_EQ(valueOf(digits, JsonDialect::lenient).number, exact);
    EXPECT_NE(valueOf(digits).number, exact);
    EXPECT_DOUBLE_EQ(valueOf(digits).number, exact);
}

TEST(JsonValue, GivenExponentNextToTheSmallestInt_WhenRead_ThenTheNumberIsZero)
{
    for (const JsonDialect dialect : {JsonDialect::strict, JsonDialect::lenient}) {
        for (const char* const exponent : {"e-2147483639", "E-2147483639", "e-100000000", "e-99999999", "e-400",
                                           "e-00000000000000000000400", "e-99999999999999999999999999"}) {
            const JsonValue value = valueOf("0.00000000001" + std::string{exponent}, dialect);
            EXPECT_EQ(value.kind, Kind::number) << exponent;
            EXPECT_EQ(value.number, 0.0) << exponent;
        }
        EXPECT_TRUE(std::signbit(valueOf("-0.00000000001e-2147483639", dialect).number));
        EXPECT_EQ(valueOf("123e-00000000000000000001", dialect).number, 12.3);
        EXPECT_EQ(valueOf("1.5e+0000000000000000001", dialect).number, 15.0);
    }
}

TEST(JsonValue, GivenSuchExponent_WhenRead_ThenTheOtherNumbersAreReadAsEver)
{
    const std::string list = "[1, 2147483648, 0.9868011474609375, 0.1e-2147483639, -1.5E+2, 0.9868011474609375]";
    for (const JsonDialect dialect : {JsonDialect::strict, JsonDialect::lenient}) {
        const double usual = valueOf("0.9868011474609375", dialect).number;
        const JsonValue value = valueOf(list, dialect);
        ASSERT_EQ(value.items.size(), 6u);
        EXPECT_EQ(value.items[0].kind, Kind::integer);
        EXPECT_EQ(value.items[1].kind, Kind::wideInteger);
        EXPECT_EQ(value.items[2].number, usual);
        EXPECT_EQ(value.items[3].number, 0.0);
        EXPECT_EQ(value.items[4].number, -150.0);
        EXPECT_EQ(value.items[5].number, usual);
    }
}

TEST(JsonValue, GivenTexts_WhenRead_ThenEscapesAreResolved)
{
    EXPECT_EQ(valueOf(R"("")").text, "");
    EXPECT_EQ(valueOf(R"("")").kind, Kind::text);
    EXPECT_EQ(valueOf(R"("\"\\\/\b\f\n\r\t")").text, "\"\\/\b\f\n\r\t");
    EXPECT_EQ(valueOf(R"("\u00e4\u20AC\ud83d\ude00")").text, "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(valueOf(R"("x\u0000y")").text, (std::string{"x\0y", 3}));
}

TEST(JsonValue, GivenBytesThatAreNoUtf8_WhenRead_ThenTheyAreKept)
{
    EXPECT_EQ(valueOf("\"\xFF\x80\"").text, "\xFF\x80");
    EXPECT_EQ(valueOf(R"("\udc00")").text, "\xED\xB0\x80");
}

TEST(JsonValue, GivenListsAndMaps_WhenRead_ThenAllThatTheyHoldIsThereInOrder)
{
    const Json json = readJson(R"({"b": [1, null, "x", []], "a": {"c": {}}, "b": 2, "B": 3})");
    ASSERT_FALSE(json.fault);

    const auto& members = json.root.members;
    ASSERT_EQ(members.size(), 4u);
    EXPECT_EQ(members[0].key, "b");
    EXPECT_EQ(members[1].key, "a");
    EXPECT_EQ(members[2].key, "b");
    EXPECT_EQ(members[3].key, "B");
    ASSERT_EQ(members[0].value.kind, Kind::list);
    ASSERT_EQ(members[0].value.items.size(), 4u);
    EXPECT_EQ(members[0].value.items[0].integer, 1);
    EXPECT_EQ(members[0].value.items[1].kind, Kind::null);
    EXPECT_EQ(members[0].value.items[2].text, "x");
    EXPECT_EQ(members[0].value.items[3].kind, Kind::list);
    EXPECT_THAT(members[0].value.items[3].items, IsEmpty());
    ASSERT_EQ(members[1].value.kind, Kind::map);
    ASSERT_EQ(members[1].value.members.size(), 1u);
    EXPECT_EQ(members[1].value.members[0].key, "c");
    EXPECT_EQ(members[1].value.members[0].value.kind, Kind::map);
    EXPECT_EQ(members[2].value.integer, 2);
    EXPECT_EQ(members[3].value.integer, 3);
}

TEST(JsonValue, GivenDialect_WhenRead_ThenItDecidesWhatIsLetThrough)
{
    const std::string marked = "\xEF\xBB\xBF{}";
    const std::string commented = "/* a */ {} // b";
    const std::string comma = R"({"a": [1,],})";
    for (const std::string& text : {marked, commented}) {
        EXPECT_TRUE(readJson(text, JsonDialect::strict).fault) << text;
        EXPECT_FALSE(readJson(text, JsonDialect::commented).fault) << text;
        EXPECT_FALSE(readJson(text, JsonDialect::lenient).fault) << text;
    }
    EXPECT_TRUE(readJson(comma, JsonDialect::strict).fault);
    EXPECT_TRUE(readJson(comma, JsonDialect::commented).fault);
    EXPECT_FALSE(readJson(comma, JsonDialect::lenient).fault);
}

// As the frameworks have it.
TEST(JsonValue, GivenZeroByteBehindTheRoot_WhenRead_ThenTheRestIsIgnored)
{
    const Json json = readJson({"{\"a\": 1}\0 x", 12});
    EXPECT_FALSE(json.fault);
    EXPECT_EQ(json.root.members.size(), 1u);
}

/// Every value and key must stand where it says.
void expectPlaces(const std::string& text, const JsonValue& value)
{
    const std::string from = text.substr(value.offset);
    switch (value.kind) {
    case Kind::null:
        EXPECT_EQ(from.substr(0, 4), "null");
        break;
    case Kind::boolean:
        EXPECT_EQ(from.substr(0, value.boolean ? 4 : 5), value.boolean ? "true" : "false");
        break;
    case Kind::integer:
        EXPECT_EQ(from.substr(0, std::to_string(value.integer).size()), std::to_string(value.integer));
        break;
    case Kind::wideInteger:
    case Kind::number:
        ADD_FAILURE() << "no such values here";
        break;
    case Kind::text:
        EXPECT_EQ(from.substr(0, value.text.size() + 2), '"' + value.text + '"');
        break;
    case Kind::list:
        EXPECT_EQ(from.substr(0, 1), "[");
        break;
    case Kind::map:
        EXPECT_EQ(from.substr(0, 1), "{");
        break;
    }
    for (const JsonValue& item : value.items) {
        expectPlaces(text, item);
    }
    for (const JsonMember& member : value.members) {
        EXPECT_EQ(text.substr(member.offset, member.key.size() + 2), '"' + member.key + '"');
        EXPECT_LT(member.offset, member.value.offset);
        expectPlaces(text, member.value);
    }
}

TEST(JsonValue, GivenStrictText_WhenRead_ThenEachValueTellsItsPlace)
{
    const std::string text = " \t\r\n {\"a\" : \"x,:]}\" ,\"b\":[ [ ] ,{},null,true , false,1234 , -5,{ \"c\":[]}]\n,"
                             "\"d\":{\"e\":{\"f\":\"g\"} , \"h\" : [[[1],2],3]}, \"\":\"\"}";
    const Json json = readJson(text);
    ASSERT_FALSE(json.fault);
    EXPECT_EQ(json.root.offset, 5u);
    EXPECT_EQ(json.root.members.size(), 4u);
    expectPlaces(text, json.root);
}

TEST(JsonValue, GivenCommentsAndCommas_WhenRead_ThenEachValueTellsItsPlace)
{
    const std::string text =
        "\xEF\xBB\xBF// {\"x\": \"\n /*/ \"[ */{/**/\"a\"/*\"b\"*/:// c \"\n[1/*2*/,// 3\n 4/* ,*/,]"
        "/* \" */,\"d\":{\"e\":[[],],},/***/ \"f\":\"//\",/*\"*/}//\"\n";
    const Json json = readJson(text, JsonDialect::lenient);
    ASSERT_FALSE(json.fault) << json.fault->words << json.fault->offset;
    EXPECT_EQ(json.root.members.size(), 3u);
    expectPlaces(text, json.root);
}

TEST(JsonValue, GivenAllThatMayNest_WhenRead_ThenTheDeepestValueIsThere)
{
    const std::string text =
        "{\"a\":" + std::string(nestingLimit - 1, '[') + "7" + std::string(nestingLimit - 1, ']') + "}";
    JsonValue value = valueIn(text);
    for (int i = 0; i < nestingLimit - 1; ++i) {
        ASSERT_EQ(value.items.size(), 1u);
        value = JsonValue{value.items.front()};
    }
    EXPECT_EQ(value.integer, 7);
}

TEST(JsonValue, GivenManyNeighbours_WhenRead_ThenNestingIsCountedByDepthAlone)
{
    std::string text = R"({"a": [)";
    for (int i = 0; i < 2 * nestingLimit; ++i) {
        text += "[{}],";
    }
    EXPECT_EQ(valueIn(text + "1]}").items.size(), 2u * nestingLimit + 1);
}

TEST(Position, GivenOffsets_WhenAsked_ThenLinesAndColumnsCountFromOne)
{
    const std::string text = "ab\n\ncd";
    const auto at = [&text](std::size_t offset) {
        const Position position = positionOf(text, offset);
        return std::make_pair(position.line, position.column);
    };
    EXPECT_EQ(at(0), std::make_pair(std::size_t{1}, std::size_t{1}));
    EXPECT_EQ(at(2), std::make_pair(std::size_t{1}, std::size_t{3}));
    EXPECT_EQ(at(3), std::make_pair(std::size_t{2}, std::size_t{1}));
    EXPECT_EQ(at(4), std::make_pair(std::size_t{3}, std::size_t{1}));
    EXPECT_EQ(at(6), std::make_pair(std::size_t{3}, std::size_t{3}));
}

} // namespace
