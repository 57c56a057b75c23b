#include "contract/ThrownText.h"

#include <cppmicroservices/AnyMap.h>

#include <gtest/gtest.h>

using namespace cppmicroservices;
using ostrel::test::thrownText;

namespace {

enum Colour { red, green };

struct Case {
    Any value;
    std::string text;
    std::string json;
    std::string cpp;
};

std::vector<Case> cases()
{
    const std::map<std::string, Any> nested{{"k\"", 1}, {"m", std::map<std::string, Any>{}}};
    return {
        {5, "5", "5", "5"},
        {true, "1", "true", "true"},
        {false, "0", "false", "false"},
        {'c', "c", "c", "c"},
        {static_cast<unsigned char>(65), "A", "A", "A"},
        {0.1, "0.1", "0.1", "0.1"},
        {1e20, "1e+20", "1e+20", "1e+20"},
        {123456789.0, "1.23457e+08", "1.23457e+08", "1.23457e+08"},
        {green, "1", "1", "1"},
        {std::string("a/b\x7f\xc3\xa9"), "a/b\x7f\xc3\xa9", "\"a/b\x7f\xc3\xa9\"", "std::string(\"a/b\x7f\xc3\xa9\")"},
        {std::string("\"\\\n\t\r\b\f\x01\x1f"), "\"\\\n\t\r\b\f\x01\x1f", R"("\"\\\n\t\r\b\f\u0001\u001f")",
         R"(std::string("\"\\\n\t\r\b\f\u0001\u001f"))"},
        {static_cast<const char*>("li\"t"), "li\"t", "li\"t", "li\"t"},
        {std::vector<std::string>{"a", "b"}, "[a,b]", R"(["a","b"])",
         R"(AnyVector {{std::string("a"),std::string("b")}})"},
        {std::vector<int>{}, "[]", "[]", "AnyVector {{}}"},
        {std::list<double>{1.5, 2}, "[1.5,2]", "[1.5,2]", "AnyVector {{1.5,2}}"},
        {std::set<std::string>{"z", "a"}, "[a,z]", R"(["a","z"])",
         R"(AnyVector {{std::string("a"),std::string("z")}})"},
        {std::vector<bool>{true, false}, "[1,0]", "[true,false]", "AnyVector {{true,false}}"},
        {nested, "{k\" : 1, m : {}}", "{\"k\"\" : 1, \"m\" : {}}",
         "AnyMap { ORDERED_MAP, {{\"k\"\" , 1}, {\"m\" , AnyMap { ORDERED_MAP, {}}}}}"},
        {std::map<std::string, std::string>{{"a", "b"}}, "{a : b}", R"({"a" : b})",
         R"(AnyMap { ORDERED_MAP, {{"a" , b}}})"},
        {AnyMap(AnyMap::ORDERED_MAP, {{"b", 2}, {"a", std::string("x")}}), "{a : x, b : 2}", R"({"a" : "x", "b" : 2})",
         R"(AnyMap { ORDERED_MAP, {{"a" , std::string("x")}, {"b" , 2}}})"},
        {AnyMap(AnyMap::UNORDERED_MAP, {{"k", 1}}), "{k : 1}", R"({"k" : 1})",
         R"(AnyMap { UNORDERED_MAP, {{"k" , 1}}})"},
        {AnyMap(), "{}", "{}", "AnyMap { UNORDERED_MAP_CASEINSENSITIVE_KEYS, {}}"},
    };
}

} // namespace

TEST(AnyText, GivenAValue_WhenWritten_ThenEachFormIsAsItsTypeSays)
{
    for (const auto& [value, text, json, cpp] : cases()) {
        EXPECT_EQ(value.ToString(), text);
        EXPECT_EQ(value.ToStringNoExcept(), text);
        EXPECT_EQ(value.ToJSON(), json);
        EXPECT_EQ(value.ToCPP(), cpp);
    }
}

TEST(AnyText, GivenAnEmptyOne_WhenWritten_ThenOnlyTheThrowingFormThrows)
{
    EXPECT_EQ(thrownText<std::logic_error>([] { Any().ToString(); }), "empty any");
    EXPECT_EQ(thrownText<std::logic_error>([] { Any(std::vector<Any>{Any()}).ToStringNoExcept(); }), "empty any");
    EXPECT_EQ(Any().ToStringNoExcept(), "");
    EXPECT_EQ(Any().ToJSON(), "null");
    EXPECT_EQ(Any(std::vector<Any>{Any(), 1}).ToJSON(), "[null,1]");
    EXPECT_EQ(Any(std::map<std::string, Any>{{"a", Any()}}).ToJSON(), "{\"a\" : null}");
}

TEST(AnyText, GivenNestedValues_WhenWrittenPrettily_ThenLevelsAreIndented)
{
    const Any value(std::map<std::string, Any>{{"l", std::vector<Any>{1, std::string("x")}}, {"m", AnyMap()}});

    EXPECT_EQ(value.ToJSON(true), "{\n    \"l\" : [\n        1,\n        \"x\"\n    ], \n    \"m\" : {}\n}");
    EXPECT_EQ(value.ToJSON(3, 7),
              "{\n       \"l\" : [\n          1,\n          \"x\"\n       ], \n       \"m\" : {}\n    }");
}

TEST(AnyText, GivenAnAnyMap_WhenWrittenAsPrettySource_ThenEntriesStandTwoLevelsIn)
{
    const AnyMap inner(AnyMap::ORDERED_MAP, {{"k", 1}});

    EXPECT_EQ(
        Any(AnyMap(AnyMap::UNORDERED_MAP, {{"m", inner}})).ToCPP(true),
        "AnyMap { UNORDERED_MAP, {\n        {\"m\" , AnyMap { ORDERED_MAP, {\n                {\"k\" , 1}\n        "
        "}}}\n}}");
}
