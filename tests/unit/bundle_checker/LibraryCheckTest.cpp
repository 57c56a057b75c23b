#include "bundle_checker/LibraryCheck.h"

#include <gmock/gmock.h>

namespace {

using namespace ostrel::bundle_checker;
using ::testing::IsEmpty;

constexpr std::string_view asked = "{\"bundle.symbolic_name\":\"alpha\",\"bundle.activator\":true}";

Findings check(std::string_view text, const std::vector<std::string>& activators)
{
    return checkActivator(text, "alpha", "libalpha.so", activators);
}

void expectFinding(const Findings& findings, Severity severity, std::size_t offset, std::string_view text)
{
    ASSERT_EQ(findings.size(), 1U);
    EXPECT_EQ(findings[0].severity, severity);
    EXPECT_EQ(findings[0].offset, offset);
    EXPECT_EQ(findings[0].text, text);
}

TEST(LibraryCheck, GivenActivatorThatIsAskedFor_WhenChecked_ThenNothingIsSaid)
{
    EXPECT_THAT(check(asked, {"alpha"}), IsEmpty());
    EXPECT_THAT(check(asked, {"aaa", "alpha", "beta"}), IsEmpty());
    EXPECT_THAT(check(R"({"Bundle.Activator":true})", {"alpha"}), IsEmpty());
}

TEST(LibraryCheck, GivenNoActivatorAndNoneAskedFor_WhenChecked_ThenNothingIsSaid)
{
    EXPECT_THAT(check("{}", {}), IsEmpty());
    EXPECT_THAT(check(R"({"bundle.activator":false})", {}), IsEmpty());
    EXPECT_THAT(check(R"({"bundle.activator":"true"})", {}), IsEmpty());
    EXPECT_THAT(check("{}", {"beta", "alphabet", "alph"}), IsEmpty());
}

TEST(LibraryCheck, GivenNoActivatorThoughOneIsAskedFor_WhenChecked_ThenErrorNamesTheMacro)
{
    expectFinding(check(asked, {}), Severity::error, 51,
                  R"(key "bundle.activator" is true, but "libalpha.so" exports no activator of the bundle "alpha", )"
                  "so that it cannot start; write CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(<class>) in one of its "
                  "sources, or leave the key out");
}

TEST(LibraryCheck, GivenActivatorOfOtherNames_WhenChecked_ThenErrorTellsThem)
{
    expectFinding(check(asked, {"beta", "gamma"}), Severity::error, 51,
                  R"(key "bundle.activator" is true, but "libalpha.so" exports no activator of the bundle "alpha" )"
                  R"((those that it exports are of "beta", "gamma"; US_BUNDLE_NAME says which), so that it cannot )"
                  "start; write CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(<class>) in one of its sources, or leave the "
                  "key out");
}

TEST(LibraryCheck, GivenActivatorThatIsNotAskedFor_WhenChecked_ThenItIsAWarning)
{
    const std::string words = R"("libalpha.so" exports an activator of the bundle "alpha", but key "bundle.activator" )"
                              "is not true: the library is never loaded";

    expectFinding(check("{}", {"alpha"}), Severity::warning, 0, words);
    expectFinding(check(" {\"bundle.activator\": false}", {"alpha"}), Severity::warning, 22, words);
    expectFinding(check(R"({"bundle.activator":"true"})", {"alpha"}), Severity::warning, 20, words);
    expectFinding(check(R"({"bundle.activator":null})", {"alpha"}), Severity::warning, 0, words);
}

TEST(LibraryCheck, GivenManifestThatCannotBeRead_WhenChecked_ThenNothingIsSaid)
{
    EXPECT_THAT(check("{,}", {"alpha"}), IsEmpty());
}

} // namespace
