#include "bundle_reader/manifest/JsonWriter.h"

#include <gmock/gmock.h>

#include <string>

using namespace ostrel::bundle_reader;

namespace {

std::string rewritten(const std::string& text)
{
    const Json json = readJson(text, JsonDialect::lenient);
    EXPECT_FALSE(json.fault) << text;
    return writeJson(json.root);
}

std::string rewrittenValue(const std::string& value)
{
    const std::string text = rewritten("{\"a\":" + value + "}");
    const std::string head = "{\n    \"a\": ";
    EXPECT_EQ(text.substr(0, head.size()), head);
    return text.substr(head.size(), text.size() - head.size() - 2);
}

TEST(JsonWriter, GivenNestedValues_WhenWritten_ThenTheyAreIndented)
{
    EXPECT_EQ(rewritten("{}"), "{}");
    EXPECT_EQ(rewritten(R"({"a": [], "b": [1, {"c": null}], "a": {"d": [true, false]}})"), R"({
    "a": [],
    "b": [
        1,
        {
            "c": null
        }
    ],
    "a": {
        "d": [
            true,
            false
        ]
    }
})");
}

TEST(JsonWriter, GivenNumbers_WhenWritten_ThenNoDigitIsLost)
{
    for (const char* const number :
         {"0", "-1", "2147483648", "-9223372036854775808", "9223372036854775807", "9223372036854775808",
          "18446744073709551615", "1.5", "-0.0", "0.9868011474609375", "5e-324", "1.7976931348623157e308"}) {
        EXPECT_EQ(rewrittenValue(number), number);
    }
}

TEST(JsonWriter, GivenText_WhenWritten_ThenItIsEscapedAndNoMore)
{
    EXPECT_EQ(writeJson("a/\"\\\b\f\n\r\t\x01\x7f\xC3\xA4\xFF"),
              "\"a/\\\"\\\\\\b\\f\\n\\r\\t\\u0001\x7F\xC3\xA4\xFF\"");
    EXPECT_EQ(writeJson(std::string_view{"x\0y", 3}), R"("x\u0000y")");
    EXPECT_EQ(writeJson(""), "\"\"");
    EXPECT_EQ(rewrittenValue(R"("\u00e4\ud83d\ude00")"), "\"\xC3\xA4\xF0\x9F\x98\x80\"");
}

TEST(JsonWriter, GivenAllThatMayNest_WhenWrittenAndRead_ThenItIsTheSame)
{
    const std::string inner = std::string(nestingLimit - 1, '[') + std::string(nestingLimit - 1, ']');
    const std::string text = rewritten("{\"a\":" + inner + "}");
    EXPECT_EQ(rewritten(text), text);
}

} // namespace
