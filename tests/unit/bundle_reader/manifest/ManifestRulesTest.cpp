#include "bundle_reader/manifest/ManifestRules.h"

#include "bundle_reader/manifest/ManifestKeys.h"

#include <gmock/gmock.h>

#include <string>

using namespace ostrel::bundle_reader;

namespace {

/// A manifest as long as the object lives.
class Manifest {
public:
    explicit Manifest(const std::string& text) : m_json{readJson(text)} { EXPECT_FALSE(m_json.fault) << text; }

    const JsonValue& operator*() const { return m_json.root; }

private:
    Json m_json;
};

/// Which of several values the member that counts has; -1 when there is none.
int counted(const std::string& text)
{
    const Manifest manifest{text};
    const JsonMember* const found = findMember(*manifest, "key");
    return found == nullptr ? -1 : static_cast<int>(found->value.integer);
}

std::string version(const std::string& text)
{
    const Manifest manifest{text};
    return std::string{versionText(*manifest).value_or("none")};
}

bool activator(const std::string& text)
{
    const Manifest manifest{text};
    return asksForActivator(*manifest);
}

TEST(ManifestRules, GivenValues_WhenAsked_ThenNullAndIntegersThatAreNoIntAreDropped)
{
    const Manifest manifest{R"({"l": [null, 2147483648, -2147483649, 18446744073709551615,
                                       2147483647, -2147483648, 2147483648.0, 18446744073709551616,
                                       true, false, "", [], {}]})"};
    const auto& items = (*manifest).members.front().value.items;
    for (std::size_t i = 0; i < items.size(); ++i) {
        EXPECT_EQ(isDropped(items[i]), i < 4) << i;
    }
}

TEST(ManifestRules, GivenKeys_WhenCompared_ThenTheCaseOfAsciiLettersAloneIsIgnored)
{
    EXPECT_TRUE(isSameKey("", ""));
    EXPECT_TRUE(isSameKey("bundle.Version", "BUNDLE.vERSION"));
    EXPECT_TRUE(isSameKey("azAZ@[`{", "AZaz@[`{"));
    EXPECT_FALSE(isSameKey("@", "`"));
    EXPECT_FALSE(isSameKey("[", "{"));
    EXPECT_FALSE(isSameKey("\xC3\x84", "\xC3\xA4"));
    EXPECT_FALSE(isSameKey("key", "keys"));
    EXPECT_FALSE(isSameKey("keys", "key"));
    EXPECT_FALSE(isSameKey("key", (std::string{"key\0", 4})));
}

TEST(ManifestRules, GivenEqualKeys_WhenFound_ThenTheFirstThatIsNotDroppedCounts)
{
    EXPECT_EQ(counted("{}"), -1);
    EXPECT_EQ(counted(R"({"other": 1})"), -1);
    EXPECT_EQ(counted(R"({"other": 1, "key": 2})"), 2);
    EXPECT_EQ(counted(R"({"KEY": 1, "key": 2})"), 1);
    EXPECT_EQ(counted(R"({"key": null, "KEY": 2147483648, "Key": 3, "kEy": 4})"), 3);
    EXPECT_EQ(counted(R"({"key": null})"), -1);
    EXPECT_EQ(counted(R"({"a": {"key": 1}})"), -1);
}

TEST(ManifestRules, GivenText_WhenLocalized_ThenOnePercentSignAtTheBeginningGoes)
{
    EXPECT_EQ(localized(""), "");
    EXPECT_EQ(localized("%"), "");
    EXPECT_EQ(localized("%a"), "a");
    EXPECT_EQ(localized("%%a"), "%a");
    EXPECT_EQ(localized("a%"), "a%");
    EXPECT_EQ(localized(" %a"), " %a");
}

TEST(ManifestRules, GivenVersion_WhenAsked_ThenItsTextIsAsFrameworksTakeIt)
{
    EXPECT_EQ(version("{}"), "none");
    EXPECT_EQ(version(R"({"bundle.version": "1.2"})"), "1.2");
    EXPECT_EQ(version(R"({"Bundle.Version": "%1.2", "bundle.version": "3"})"), "1.2");
    EXPECT_EQ(version(R"({"bundle.version": null, "bundle.version": "3"})"), "3");
    EXPECT_EQ(version(R"({"bundle.version": 1, "Bundle.Version": "2"})"), "none");
    EXPECT_EQ(version(R"({"bundle.version": [], "Bundle.Version": "2"})"), "none");
    EXPECT_EQ(version(R"({"bundle.version": ""})"), "");
}

TEST(ManifestRules, GivenActivator_WhenAsked_ThenOnlyTrueAsksForOne)
{
    EXPECT_TRUE(activator(R"({"bundle.activator": true})"));
    EXPECT_TRUE(activator(R"({"bundle.activator": null, "Bundle.Activator": true, "bundle.activator": false})"));
    EXPECT_FALSE(activator("{}"));
    EXPECT_FALSE(activator(R"({"bundle.activator": false, "Bundle.Activator": true})"));
    for (const char* const value : {"1", "\"true\"", "[true]", "{\"a\": true}", "null"}) {
        EXPECT_FALSE(activator(std::string{R"({"bundle.activator": )"} + value + "}")) << value;
    }
}

TEST(ManifestKeys, GivenKeysOfFrameworks_WhenListed_ThenEachBeginsAlikeAndStandsOnce)
{
    for (const auto key : keys::framework) {
        EXPECT_EQ(key.substr(0, keys::ofFrameworks.size()), keys::ofFrameworks);
        EXPECT_EQ(std::count(keys::framework.begin(), keys::framework.end(), key), 1) << key;
    }
}

} // namespace
