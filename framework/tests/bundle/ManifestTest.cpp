#include "bundle/Manifest.h"

#include "bundle_reader/manifest/Json.h"
#include "contract/ThrownText.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace cppmicroservices;
using detail::core::parseManifest;

std::string failure(std::string const& text)
{
    auto const whole = ostrel::test::thrownText<std::runtime_error>([&] { parseManifest(text, "N", "/l"); });
    std::string const head = "Parsing of manifest.json for bundle N at /l failed: ";
    EXPECT_EQ(0U, whole.find(head));
    return whole.substr(head.size());
}

TEST(Manifest, keepsTheKindsOfValues)
{
    auto const map = parseManifest(
        R"({"i": -5, "d": 2.0, "b": true, "s": "\u00e9", "l": [1, null, "x"], "m": {"K": 1}})", "N", "/l");
    EXPECT_EQ(-5, any_cast<int>(map.at("i")));
    EXPECT_EQ(2.0, any_cast<double>(map.at("d")));
    EXPECT_TRUE(any_cast<bool>(map.at("B")));
    EXPECT_EQ("\xc3\xa9", any_cast<std::string>(map.at("s")));
    EXPECT_EQ(2U, any_cast<std::vector<Any>>(map.at("l")).size());
    EXPECT_EQ(1, any_cast<int>(any_cast<AnyMap>(map.at("m")).at("k")));
}

TEST(Manifest, leavesOutWhatIsNoInt)
{
    auto const map = parseManifest(R"({"a": 2147483647, "b": 2147483648, "c": null, "d": -2147483649})", "N", "/l");
    EXPECT_EQ(1U, map.size());
}

TEST(Manifest, keepsTheFirstOfEqualKeys)
{
    auto const map = parseManifest(R"({"Key": 1, "key": 2, "KEY": 3})", "N", "/l");
    EXPECT_EQ(1U, map.size());
    EXPECT_EQ(1, any_cast<int>(map.at("key")));
}

TEST(Manifest, saysWhyItCannotBeRead)
{
    EXPECT_EQ("Missing a name for object member.", failure(R"({"a": 1,})"));
    EXPECT_EQ("Missing a name for object member.", failure("{ // comment\n}"));
    EXPECT_EQ("Invalid value.", failure("no json"));
    EXPECT_EQ("Invalid value.", failure("\xef\xbb\xbf{}"));
    EXPECT_EQ("The document is empty.", failure(""));
    EXPECT_EQ("The Json root element must be an object.", failure("[]"));
    EXPECT_EQ("The document root must not be followed by other values.", failure("{} x"));
}

TEST(Manifest, mayNestAsDeepAsTheLimit)
{
    auto const nested = [](int depth) {
        return R"({"a":)" + std::string(static_cast<std::size_t>(depth), '[') +
               std::string(static_cast<std::size_t>(depth), ']') + "}";
    };
    EXPECT_EQ(1U, parseManifest(nested(ostrel::bundle_reader::nestingLimit - 1), "N", "/l").size());
    EXPECT_EQ("The objects and arrays nest deeper than 200 levels.",
              failure(nested(ostrel::bundle_reader::nestingLimit)));
    EXPECT_EQ("The objects and arrays nest deeper than 200 levels.", failure(nested(5000000)));
}

TEST(Manifest, tellsTheFirstOfSeveralFaults)
{
    std::string const deep(1000, '[');
    EXPECT_EQ("Missing a colon after a name of object member.", failure(R"({"a" 1, "b": )" + deep));
    EXPECT_EQ("Number too big to be stored in double.", failure(R"({"a": 21474836481e308, "b": )" + deep));
    EXPECT_EQ("Number too big to be stored in double.", failure(R"({"a": 21474836481e308, b})"));
    EXPECT_EQ("Invalid value.", failure("[1,"));
}

TEST(Manifest, takesAPercentSignOffTexts)
{
    auto const map = parseManifest(R"({"%a": "%b", "l": ["%%c", "d%"], "m": {"e": "%"}})", "N", "/l");
    EXPECT_EQ("b", any_cast<std::string>(map.at("%a")));
    EXPECT_EQ("%c", any_cast<std::string>(any_cast<std::vector<Any>>(map.at("l")).at(0)));
    EXPECT_EQ("d%", any_cast<std::string>(any_cast<std::vector<Any>>(map.at("l")).at(1)));
    EXPECT_EQ("", any_cast<std::string>(any_cast<AnyMap>(map.at("m")).at("e")));
}

TEST(Manifest, readsAHugeNegativeExponentAsZero)
{
    EXPECT_EQ(0.0, any_cast<double>(parseManifest(R"({"a": 0.0000000001e-2147483639})", "N", "/l").at("a")));
}

TEST(Manifest, refusesNumbersThatAreNoDouble)
{
    EXPECT_EQ("Number too big to be stored in double.", failure(R"({"a": 1e309})"));
    EXPECT_EQ("Number too big to be stored in double.", failure(R"({"a": [{"b": -21474836481e308}]})"));
}

} // namespace
