#include "platform/ManifestCheck.h"

#include <gmock/gmock.h>

#include <string>

using namespace ostrel::platform;
using testing::IsEmpty;

namespace {

TEST(ManifestCheck, GivenObject_WhenChecked_ThenThereIsNoFault)
{
    EXPECT_THAT(checkManifest(R"({"a": [1, {"b": null}], "c": "d"})").fault, IsEmpty());
}

TEST(ManifestCheck, GivenNoJson_WhenChecked_ThenTheFaultTellsTheParsersWordsAndTheOffset)
{
    EXPECT_EQ(checkManifest(R"({"a": 1,})").fault, "Missing a name for object member. at offset 8");
    EXPECT_EQ(checkManifest(" ").fault, "The document is empty. at offset 1");
    EXPECT_EQ(checkManifest("nul").fault, "Invalid value. at offset 3");
    EXPECT_EQ(checkManifest("\"a").fault, "Missing a closing quotation mark in string. at offset 2");
    EXPECT_EQ(checkManifest("{} x").fault, "The document root must not be followed by other values. at offset 3");
    EXPECT_EQ(checkManifest("{} // x").fault, "The document root must not be followed by other values. at offset 3");
    EXPECT_EQ(checkManifest("/**/ {}").fault, "Invalid value. at offset 0");
    EXPECT_EQ(checkManifest("\xEF\xBB\xBF{}").fault, "Invalid value. at offset 0");
}

TEST(ManifestCheck, GivenTextThatBeginsLikeAnEnd_WhenChecked_ThenItCountsAsEmpty)
{
    for (const char* const text : {" }", " ]", " ,", " :", "\t}{}"}) {
        EXPECT_EQ(checkManifest(text).fault, "The document is empty. at offset 1") << text;
    }
}

TEST(ManifestCheck, GivenOtherThanObject_WhenChecked_ThenTheFaultSaysSo)
{
    for (const std::string text : {"[]", "1", "\"a\"", "null", "[1,", "1 x", "[21474836481e308]"}) {
        EXPECT_EQ(checkManifest(text).fault, "it is no JSON object") << text;
    }
    EXPECT_EQ(checkManifest(std::string(1000000, '[')).fault, "it is no JSON object");
}

TEST(ManifestCheck, GivenEndlessNesting_WhenChecked_ThenItIsRefused)
{
    EXPECT_EQ(checkManifest("{\"a\":" + std::string(1000000, '[')).fault, "it is nested deeper than 200 levels");
    EXPECT_EQ(checkManifest("{\"a\":" + std::string(200, '[') + std::string(200, ']') + "}").fault,
              "it is nested deeper than 200 levels");
    EXPECT_THAT(checkManifest("{\"a\":" + std::string(199, '[') + std::string(199, ']') + "}").fault, IsEmpty());
}

TEST(ManifestCheck, GivenVersion_WhenChecked_ThenItIsPrintedAsFrameworksDo)
{
    EXPECT_EQ(checkManifest("{}").version, "0.0.0");
    EXPECT_EQ(checkManifest(R"({"bundle.version": "1.2"})").version, "1.2.0");
    EXPECT_EQ(checkManifest(R"({"Bundle.Version": "2", "bundle.version": "3"})").version, "2.0.0");
    EXPECT_EQ(checkManifest(R"({"a": {"bundle.version": "4"}})").version, "0.0.0");
    EXPECT_EQ(checkManifest(R"({"bundle.version": "x"})").version, "");
    EXPECT_EQ(checkManifest(R"({"bundle.version": ""})").version, "undefined");
    EXPECT_EQ(checkManifest(R"({"bundle.version": "%1.2"})").version, "1.2.0");
    EXPECT_EQ(checkManifest(R"({"bundle.version": "%%1.2"})").version, "0.2.0");
    EXPECT_EQ(checkManifest(R"({"bundle.version": "1.2%"})").version, "1.2.0");
}

TEST(ManifestCheck, GivenVersionThatTheFrameworkLeavesOut_WhenChecked_ThenTheNextOneCounts)
{
    EXPECT_EQ(checkManifest(R"({"bundle.version": null, "Bundle.Version": "2"})").version, "2.0.0");
    EXPECT_EQ(checkManifest(R"({"bundle.version": 2147483648, "Bundle.Version": "2"})").version, "2.0.0");
    EXPECT_EQ(checkManifest(R"({"bundle.version": -2147483649, "Bundle.Version": "2"})").version, "2.0.0");
    EXPECT_EQ(checkManifest(R"({"bundle.version": [], "Bundle.Version": "2"})").version, "0.0.0");
    EXPECT_EQ(checkManifest(R"({"bundle.version": {}, "Bundle.Version": "2"})").version, "0.0.0");
    EXPECT_EQ(checkManifest(R"({"bundle.version": 1, "Bundle.Version": "2"})").version, "0.0.0");
}

TEST(ManifestCheck, GivenKeyThatOnlyBeginsLikeTheVersion_WhenChecked_ThenItIsNone)
{
    EXPECT_EQ(checkManifest(R"({"bundle.version\u0000": "1"})").version, "0.0.0");
    EXPECT_EQ(checkManifest(R"({"bundle.versions": "1"})").version, "0.0.0");
}

TEST(ManifestCheck, GivenNumberThatIsNoDouble_WhenChecked_ThenTheFaultSaysSo)
{
    EXPECT_EQ(checkManifest(R"({"a": 21474836481e308})").fault, "a number is too big at offset 6");
    EXPECT_EQ(checkManifest("21474836481e308").fault, "a number is too big at offset 0");
    EXPECT_EQ(checkManifest(R"({"a": 1e309})").fault, "Number too big to be stored in double. at offset 6");
}

} // namespace
