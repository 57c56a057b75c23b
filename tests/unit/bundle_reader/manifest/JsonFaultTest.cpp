#include "bundle_reader/manifest/Json.h"

#include <gmock/gmock.h>

#include <string>

using namespace ostrel::bundle_reader;
using Kind = JsonFault::Kind;

namespace {

JsonFault faultOf(const std::string& text, JsonDialect dialect = JsonDialect::strict)
{
    const Json json = readJson(text, dialect);
    if (!json.fault) {
        ADD_FAILURE() << text << " has no fault";
        return {};
    }
    return *json.fault;
}

struct Fault {
    std::string text;
    Kind kind;
    std::string words;
    std::size_t offset;
    std::string path;
};

void PrintTo(const Fault& fault, std::ostream* out)
{
    *out << fault.text;
}

class JsonFaultOf : public testing::TestWithParam<Fault> {};

TEST_P(JsonFaultOf, GivenText_WhenRead_ThenTheFaultTellsAll)
{
    const Fault& wanted = GetParam();
    const JsonFault fault = faultOf(wanted.text);
    EXPECT_EQ(fault.kind, wanted.kind);
    EXPECT_EQ(fault.words, wanted.words);
    EXPECT_EQ(fault.offset, wanted.offset);
    EXPECT_EQ(fault.path, wanted.path);
}

const Fault strictFaults[] = {
    {"", Kind::documentEmpty, "The document is empty.", 0, ""},
    {" \n ", Kind::documentEmpty, "The document is empty.", 3, ""},
    {std::string(" \0{}", 4), Kind::documentEmpty, "The document is empty.", 1, ""},
    {" []", Kind::rootIsNoMap, "The Json root element must be an object.", 1, ""},
    {"null", Kind::rootIsNoMap, "The Json root element must be an object.", 0, ""},
    {"{} {}", Kind::rootIsFollowed, "The document root must not be followed by other values.", 3, ""},
    {R"({"a": 1}})", Kind::rootIsFollowed, "The document root must not be followed by other values.", 8, ""},
    {" }", Kind::invalidValue, "Invalid value.", 1, ""},
    {"\xEF\xBB\xBF{}", Kind::invalidValue, "Invalid value.", 0, ""},
    {"/**/{}", Kind::invalidValue, "Invalid value.", 0, ""},
    {R"({"a": tru})", Kind::invalidValue, "Invalid value.", 9, "a"},
    {R"({"a": x})", Kind::invalidValue, "Invalid value.", 6, "a"},
    {R"({"a": [1,]})", Kind::invalidValue, "Invalid value.", 9, "a[1]"},
    {R"({"a": [)", Kind::invalidValue, "Invalid value.", 7, "a[0]"},
    {R"({"a": [1, [2, {"b": 3}], -]})", Kind::invalidValue, "Invalid value.", 26, "a[2]"},
    {R"({"a":})", Kind::invalidValue, "Invalid value.", 5, "a"},
    {"{", Kind::missingKey, "Missing a name for object member.", 1, ""},
    {"{1: 2}", Kind::missingKey, "Missing a name for object member.", 1, ""},
    {R"({"a": 1,})", Kind::missingKey, "Missing a name for object member.", 8, "a"},
    {R"({"a": {"b": [], "c": {}, )", Kind::missingKey, "Missing a name for object member.", 25, "a.c"},
    {R"({"a": [0, {}, {b}]})", Kind::missingKey, "Missing a name for object member.", 15, "a[2]"},
    {R"({"a" 1})", Kind::missingColon, "Missing a colon after a name of object member.", 5, "a"},
    {R"({"a": 1 "b": 2})", Kind::missingCommaOrBrace, "Missing a comma or '}' after an object member.", 8, "a"},
    {R"({"a": {"b": 1)", Kind::missingCommaOrBrace, "Missing a comma or '}' after an object member.", 13, "a.b"},
    {std::string("{\"a\": 1\0}", 9), Kind::missingCommaOrBrace, "Missing a comma or '}' after an object member.", 7,
     "a"},
    {R"({"a": [1 2]})", Kind::missingCommaOrBracket, "Missing a comma or ']' after an array element.", 9, "a[0]"},
    {R"({"a": [[], [1})", Kind::missingCommaOrBracket, "Missing a comma or ']' after an array element.", 13, "a[1][0]"},
    {R"({"a": "\u12g4"})", Kind::badUnicodeEscape, "Incorrect hex digit after \\u escape in string.", 7, "a"},
    {R"({"a": "\ud800x"})", Kind::loneSurrogate, "The surrogate pair in string is invalid.", 7, "a"},
    {R"({"a": "\ud800\u0041"})", Kind::loneSurrogate, "The surrogate pair in string is invalid.", 7, "a"},
    {R"({"a": ["b", "c,\q"]})", Kind::badEscape, "Invalid escape character in string.", 15, "a[1]"},
    {R"({"a": ["b,\q"]})", Kind::badEscape, "Invalid escape character in string.", 10, "a[0]"},
    {R"({"a": "b)", Kind::unclosedText, "Missing a closing quotation mark in string.", 8, "a"},
    {R"({"a": 1, "b)", Kind::unclosedText, "Missing a closing quotation mark in string.", 11, "a"},
    {"{\"a\": \"b\n\"}", Kind::controlCharacter, "Invalid escape character in string.", 8, "a"},
    {std::string("{\"a\": \"b\0\"}", 11), Kind::controlCharacter, "Missing a closing quotation mark in string.", 8,
     "a"},
    {R"({"a": 1e309})", Kind::numberTooBig, "Number too big to be stored in double.", 6, "a"},
    {R"({"a": [1, 21474836481e308]})", Kind::infiniteNumber, "Number too big to be stored in double.", 10, "a[1]"},
    {R"({"a": 1.x})", Kind::missingFraction, "Miss fraction part in number.", 8, "a"},
    {R"({"a": 1e})", Kind::missingExponent, "Miss exponent in number.", 8, "a"},
};

INSTANTIATE_TEST_SUITE_P(Strict, JsonFaultOf, testing::ValuesIn(strictFaults));

TEST(JsonFault, GivenOneLevelTooMuch_WhenRead_ThenTheFaultTellsWhere)
{
    for (const JsonDialect dialect : {JsonDialect::strict, JsonDialect::commented, JsonDialect::lenient}) {
        const JsonFault lists = faultOf("{\"a\":" + std::string(nestingLimit, '['), dialect);
        EXPECT_EQ(lists.kind, Kind::tooDeep);
        EXPECT_EQ(lists.words, "The objects and arrays nest deeper than 200 levels.");
        EXPECT_EQ(lists.offset, 5u + nestingLimit - 1);
        EXPECT_FALSE(lists.otherRoot);

        std::string maps;
        for (int i = 0; i <= nestingLimit; ++i) {
            maps += "{\"a\":";
        }
        EXPECT_EQ(faultOf(maps, dialect).kind, Kind::tooDeep);
        EXPECT_EQ(faultOf(maps, dialect).offset, 5u * nestingLimit);
    }
}

TEST(JsonFault, GivenEndlessNesting_WhenRead_ThenItIsRefusedAtTheLimit)
{
    const JsonFault fault = faultOf(R"({"a": 1, "b": [2, )" + std::string(1000000, '['));
    EXPECT_EQ(fault.kind, Kind::tooDeep);
    EXPECT_EQ(fault.offset, 18u + nestingLimit - 2);
    EXPECT_EQ(fault.path.substr(0, 7), "b[1][0]");
}

TEST(JsonFault, GivenFaultBeforeTooMuchNesting_WhenRead_ThenTheFirstIsTold)
{
    EXPECT_EQ(faultOf(R"({"a" 1, "b": )" + std::string(1000, '[')).kind, Kind::missingColon);
}

TEST(JsonFault, GivenOtherRoot_WhenRead_ThenItIsSaidWhateverTheFaultIs)
{
    EXPECT_TRUE(faultOf("[]").otherRoot);
    EXPECT_TRUE(faultOf("[1,").otherRoot);
    EXPECT_TRUE(faultOf("null x").otherRoot);
    EXPECT_TRUE(faultOf(std::string(1000, '[')).otherRoot);
    EXPECT_FALSE(faultOf("").otherRoot);
    EXPECT_FALSE(faultOf("nul").otherRoot);
    EXPECT_FALSE(faultOf("\"a").otherRoot);
    EXPECT_FALSE(faultOf("{").otherRoot);
    EXPECT_FALSE(faultOf("{} x").otherRoot);
}

TEST(JsonFault, GivenBadComments_WhenRead_ThenTheyAreTold)
{
    for (const char* const text : {"{} /* a", "{} /", "{} /x", "/", "{\"a\": [1 /* , "}) {
        const JsonFault fault = faultOf(text, JsonDialect::commented);
        EXPECT_EQ(fault.kind, Kind::badComment) << text;
        EXPECT_EQ(fault.words, "Unspecific syntax error.");
    }
    EXPECT_EQ(faultOf("{\"a\": [1 /* , ", JsonDialect::commented).path, "a[0]");
    EXPECT_EQ(faultOf("{\"a\": [[1,] 2]}", JsonDialect::lenient).path, "a[0]");
    EXPECT_EQ(faultOf("{\"a\": [1 /*,*/ // ,\n , /*, ", JsonDialect::commented).path, "a[1]");
}

TEST(JsonFault, GivenDialectsForWriting_WhenRead_ThenClosingBracketsAreInvalidValues)
{
    const JsonFault fault = faultOf(" ]", JsonDialect::lenient);
    EXPECT_EQ(fault.kind, Kind::invalidValue);
    EXPECT_EQ(fault.words, "The document is empty."); // as the parser calls it there
    EXPECT_EQ(fault.offset, 1u);
}

TEST(JsonFault, GivenByteOrderMark_WhenRead_ThenOffsetsCountIt)
{
    EXPECT_EQ(faultOf("\xEF\xBB\xBF{x", JsonDialect::commented).offset, 4u);
    EXPECT_EQ(faultOf("\xEF\xBB\xBF", JsonDialect::lenient).kind, Kind::documentEmpty);
    EXPECT_EQ(faultOf("\xEF\xBB{}", JsonDialect::lenient).kind, Kind::invalidValue);
}

} // namespace
