#include "bundle_checker/ManifestCheck.h"
#include "bundle_checker/Report.h"
#include "bundle_reader/BundleFile.h"
#include "unit/bundle_checker/ManifestTable.h"

#include <gmock/gmock.h>

#include <sstream>

namespace {

using namespace ostrel::bundle_checker;
using ostrel::test::ManifestGroup;
using ostrel::test::ManifestRow;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Rules : public ::testing::TestWithParam<ManifestGroup> {};

std::vector<std::string> written(const std::string& text, std::string_view name = "alpha")
{
    std::stringstream report;
    writeFindings(report, "", text, checkManifest(text, name), Strictness::lenient);
    std::vector<std::string> lines;
    for (std::string line; std::getline(report, line);) {
        lines.push_back(line.substr(1)); // without the colon behind the path, which is empty
    }
    return lines;
}

TEST_P(Rules, GivenManifests_WhenChecked_ThenFindingsAreSaidAtTheirPlaces)
{
    for (const ManifestRow& row : GetParam().rows()) {
        EXPECT_EQ(written(row.text), row.findings) << row.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Manifests, Rules, ::testing::ValuesIn(ostrel::test::manifestGroups),
                         [](const auto& info) { return info.param.name; });

TEST(NameRules, GivenAnotherNameInTheCall_WhenChecked_ThenThatIsWanted)
{
    const std::string text = ostrel::test::manifestWith("");

    EXPECT_THAT(
        written(text, "beta"),
        ElementsAre(R"(2:28: error: key "bundle.symbolic_name" is "alpha", but the call of ostrel_add_bundle() )"
                    R"(says "beta"; the two must be equal)"));
}

TEST(NameRules, GivenEmptyNameHereAndThere_WhenChecked_ThenItIsAnError)
{
    const std::string text = R"({"bundle.symbolic_name":"","zq":{"component":{"name":"a"}}})";

    EXPECT_THAT(written(text, ""), ElementsAre(R"(1:25: error: key "bundle.symbolic_name" is empty; give the bundle a )"
                                               R"(name, here and in the call of ostrel_add_bundle())"));
}

TEST(NameRules, GivenNameOfTheFrameworksOwnBundle_WhenChecked_ThenItIsAWarning)
{
    const std::string text = R"({"bundle.symbolic_name":"system_bundle","zq":{"component":{"name":"a"}}})";

    EXPECT_THAT(written(text, "system_bundle"),
                ElementsAre(R"(1:25: warning: key "bundle.symbolic_name" is "system_bundle", the name of the )"
                            R"(framework's own bundle; choose another)"));
}

TEST(SizeRules, GivenManifestOfTheLargestSize_WhenChecked_ThenItIsRead)
{
    const std::string text = ostrel::test::manifestWith("");

    EXPECT_THAT(written(text + std::string(ostrel::bundle_reader::manifestLimit - text.size(), '\n')), IsEmpty());
}

TEST(SizeRules, GivenLargerManifest_WhenChecked_ThenItIsAnErrorAlone)
{
    const std::string text = ostrel::test::manifestWith("");

    EXPECT_THAT(
        written(text + std::string(ostrel::bundle_reader::manifestLimit - text.size() + 1, '\n')),
        ElementsAre("1:1: error: the manifest is larger than 16777216 bytes, and is not read; put into RESOURCES "
                    "what is no manifest"));
}

} // namespace
