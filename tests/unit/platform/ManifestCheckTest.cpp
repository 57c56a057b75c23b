#include "platform/ManifestCheck.h"

#include <gmock/gmock.h>

using namespace ostrel::platform;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

TEST(ManifestCheck, GivenObject_WhenChecked_ThenThereIsNoFault)
{
    EXPECT_THAT(checkManifest(R"({"a": [1, {"b": null}], "c": "d"})").fault, IsEmpty());
}

TEST(ManifestCheck, GivenNoJson_WhenChecked_ThenTheFaultTellsTheOffset)
{
    EXPECT_THAT(checkManifest(R"({"a": 1,})").fault, HasSubstr("at offset 8"));
    EXPECT_THAT(checkManifest("").fault, Not(IsEmpty()));
    EXPECT_THAT(checkManifest("{} x").fault, Not(IsEmpty()));
    EXPECT_THAT(checkManifest("{} // x").fault, Not(IsEmpty()));
}

TEST(ManifestCheck, GivenOtherThanObject_WhenChecked_ThenTheFaultSaysSo)
{
    EXPECT_EQ(checkManifest("[]").fault, "it is no JSON object");
    EXPECT_EQ(checkManifest("1").fault, "it is no JSON object");
    EXPECT_EQ(checkManifest("\"a\"").fault, "it is no JSON object");
}

TEST(ManifestCheck, GivenEndlessNesting_WhenChecked_ThenItIsRefused)
{
    EXPECT_THAT(checkManifest("{\"a\":" + std::string(1000000, '[')).fault, HasSubstr("nested deeper than 256"));
}

TEST(ManifestCheck, GivenVersion_WhenChecked_ThenItIsPrintedAsFrameworksDo)
{
    EXPECT_EQ(checkManifest("{}").version, "0.0.0");
    EXPECT_EQ(checkManifest(R"({"bundle.version": "1.2"})").version, "1.2.0");
    EXPECT_EQ(checkManifest(R"({"Bundle.Version": "2", "bundle.version": "3"})").version, "2.0.0");
    EXPECT_EQ(checkManifest(R"({"a": {"bundle.version": "4"}})").version, "0.0.0");
    EXPECT_EQ(checkManifest(R"({"bundle.version": "x"})").version, "");
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
    EXPECT_THAT(checkManifest(R"({"a": 21474836481e308})").fault, HasSubstr("too big"));
    EXPECT_THAT(checkManifest(R"({"a": 1e309})").fault, HasSubstr("too big"));
}

} // namespace
