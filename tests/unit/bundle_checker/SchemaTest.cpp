// Takes std::regex, for RapidJSON's own engine does not know the look-ahead that the schema has.
#define RAPIDJSON_SCHEMA_USE_INTERNALREGEX 0

#include "bundle_checker/ManifestCheck.h"
#include "bundle_reader/manifest/Json.h"
#include "bundle_reader/manifest/ManifestKeys.h"
#include "support/TemporaryDirectory.h"
#include "unit/bundle_checker/ManifestTable.h"

#include <gmock/gmock.h>
#include <rapidjson/document.h>
#include <rapidjson/pointer.h>
#include <rapidjson/schema.h>

namespace {

using ostrel::test::ManifestGroup;
using ostrel::test::ManifestRow;
using ::testing::UnorderedElementsAreArray;
namespace keys = ostrel::bundle_reader::keys;

rapidjson::Document parsed(const std::string& text)
{
    rapidjson::Document document;
    document.Parse(text.data(), text.size());
    return document;
}

const rapidjson::Document& schema()
{
    static const rapidjson::Document document = parsed(ostrel::test::contentOf(OSTREL_TEST_SCHEMA));
    return document;
}

bool schemaAccepts(const std::string& manifest)
{
    static const rapidjson::SchemaDocument rules{schema()};
    rapidjson::SchemaValidator validator{rules};
    return parsed(manifest).Accept(validator);
}

std::vector<std::string> keysAt(const char* pointer)
{
    std::vector<std::string> found;
    for (const auto& member : rapidjson::Pointer{pointer}.Get(schema())->GetObject()) {
        found.emplace_back(member.name.GetString());
    }
    return found;
}

TEST(Schema, GivenSchema_WhenRead_ThenItHasTheKnownKeysOfFrameworks)
{
    std::vector<std::string> known{keys::framework.begin(), keys::framework.end()};
    known.emplace_back(keys::container);

    EXPECT_THAT(keysAt("/properties"), UnorderedElementsAreArray(known));
}

TEST(Schema, GivenSchema_WhenRead_ThenItHasTheKnownKeysOfTheContainer)
{
    EXPECT_THAT(keysAt("/properties/zq/properties"), UnorderedElementsAreArray(keys::ofContainer));
    EXPECT_THAT(keysAt("/properties/zq/properties/component/properties"),
                ::testing::ElementsAre(std::string{keys::componentName}));
}

TEST(Schema, GivenNameOfTheFrameworksOwnBundle_WhenChecked_ThenItIsRefused)
{
    const std::string manifest = R"({"bundle.symbolic_name":"system_bundle","zq":{"component":{"name":"a"}}})";

    EXPECT_FALSE(schemaAccepts(manifest));
    EXPECT_FALSE(ostrel::bundle_checker::checkManifest(manifest, "system_bundle").empty());
}

class SchemaAgrees : public ::testing::TestWithParam<ManifestGroup> {};

TEST_P(SchemaAgrees, GivenManifests_WhenChecked_ThenThoseAreRefusedInWhichTheCheckerFindsAnything)
{
    for (const ManifestRow& row : GetParam().rows()) {
        // A schema has nothing to say of what is no JSON object.
        if (!ostrel::bundle_reader::readJson(row.text).fault) {
            const bool agrees = schemaAccepts(row.text) == row.findings.empty();
            EXPECT_EQ(agrees, row.agreement != ManifestRow::exceptSchema &&
                                  row.agreement != ManifestRow::exceptFrameworksAndSchema)
                << row.name;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Manifests, SchemaAgrees, ::testing::ValuesIn(ostrel::test::manifestGroups),
                         [](const auto& info) { return info.param.name; });

} // namespace
