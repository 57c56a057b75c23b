// What the archive of a bundle file must look like to be installed.
#include "contract/ThrownText.h"
#include "contract/resource/ResourceFixture.h"

#include <gmock/gmock.h>

#include <fstream>
#include <stdexcept>

namespace {

using namespace cppmicroservices;
using ostrel::test::archiveOf;
using ostrel::test::manifestOf;
using ostrel::test::PackedEntry;
using ostrel::test::thrownText;

class Layout : public ostrel::test::ResourceFixture {
protected:
    std::string failure(std::vector<PackedEntry> const& entries)
    {
        return thrownText<std::runtime_error>([&] { install("file", entries); });
    }

    std::string const invalid = "Invalid zip archive layout for bundle at " + (directory.path() / "file").string();
};

TEST_F(Layout, needsAFolder)
{
    EXPECT_EQ(invalid, failure({{"data.txt", "x"}}));
    EXPECT_EQ(invalid, failure({{"manifest.json", manifestOf("m")}}));
}

TEST_F(Layout, mayHaveFilesBesideTheFolders)
{
    EXPECT_EQ("m", install("1", {{"data.txt", "x"}, {"m/manifest.json", manifestOf("m")}}).GetSymbolicName());
    EXPECT_EQ(
        "n",
        install("2", {{"n/manifest.json", manifestOf("n")}, {"manifest.json", manifestOf("other")}}).GetSymbolicName());
}

TEST_F(Layout, needsAManifestInEachFolder)
{
    auto const file = (directory.path() / "file").string();
    EXPECT_EQ("Failed to install bundle library at " + file +
                  ": bundle.symbolic_name is not defined in the bundle manifest for bundle m (location=" + file + ").",
              failure({{"m/n/manifest.json", manifestOf("m")}}));
}

TEST_F(Layout, namesBundlesByTheirFolders)
{
    EXPECT_EQ("m x", install("1", {{"m x/manifest.json", manifestOf("m")}}).GetSymbolicName());
    EXPECT_EQ("M", install("2", {{"M/MANIFEST.JSON", manifestOf("m")}}).GetSymbolicName());
}

TEST_F(Layout, leavesOutThePercentSignOfTextsToBeTranslated)
{
    auto const headers = install("file", {{"m/manifest.json", R"({
        "bundle.symbolic_name": "m", "bundle.name": "%name", "none": "%", "two": "%%x", "later": " %x",
        "list": ["%z", {"in": "%w"}], "%key": "value"})"}})
                             .GetHeaders();
    EXPECT_EQ("name", headers.at("bundle.name").ToString());
    EXPECT_EQ("", headers.at("none").ToString());
    EXPECT_EQ("%x", headers.at("two").ToString());
    EXPECT_EQ(" %x", headers.at("later").ToString());
    EXPECT_EQ("[z,{in : w}]", headers.at("list").ToString());
    EXPECT_EQ("value", headers.at("%key").ToString());
    auto const ofVersion =
        install("version", {{"m/manifest.json", R"({"bundle.symbolic_name": "m", "bundle.version": "%1.2"})"}});
    EXPECT_EQ("1.2.0", ofVersion.GetVersion().ToString());
}

} // namespace
