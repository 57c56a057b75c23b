#include "bundle_reader/Holding.h"

#include "unit/ZipText.h"

#include <gtest/gtest.h>

namespace {

using namespace ostrel::bundle_reader;
using ostrel::test::zipText;

TEST(HoldingOf, GivenArchives_WhenAsked_ThenAManifestInAFolderMakesABundle)
{
    EXPECT_EQ(holdingOf(inspect(zipText({{"a/manifest.json", "{}"}}))), Holding::bundles);
    EXPECT_EQ(holdingOf(inspect(zipText({{"a/one", "1"}, {"b/manifest.json", "{}"}}))), Holding::bundles);
    EXPECT_EQ(holdingOf(inspect(zipText({{"a/one", "1"}}))), Holding::noManifest);
    EXPECT_EQ(holdingOf(inspect(zipText({{"manifest.json", "{}"}, {"a/one", "1"}}))), Holding::rootManifest);
}

TEST(HoldingOf, GivenOtherFiles_WhenAsked_ThenTheKindTells)
{
    Contents library;
    library.format = Format::elf;

    EXPECT_EQ(holdingOf(inspect("text")), Holding::neitherLibraryNorArchive);
    EXPECT_EQ(holdingOf(library), Holding::noArchive);
}

TEST(IsPassedOver, GivenFileThatPretendsNothing_WhenAsked_ThenItIs)
{
    Contents library;
    library.format = Format::elf;

    EXPECT_TRUE(isPassedOver("notes.txt", inspect("text")));
    EXPECT_TRUE(isPassedOver("so", inspect("text")));
    EXPECT_TRUE(isPassedOver("liba.so.1", inspect("text")));
    EXPECT_TRUE(isPassedOver("pack.zip", inspect(zipText({{"a/one", "1"}}))));
    EXPECT_TRUE(isPassedOver("libneeded.so", library)) << "bundles may need it";
}

TEST(IsPassedOver, GivenFileThatMustBeABundle_WhenAsked_ThenItIsNot)
{
    Contents truncated;
    truncated.truncated = true;
    Contents damaged;
    damaged.archive = Archive::damaged;

    EXPECT_FALSE(isPassedOver("notes.so", inspect("text")));
    EXPECT_FALSE(isPassedOver(".so", inspect("text")));
    EXPECT_FALSE(isPassedOver("pack.so", inspect(zipText({{"a/one", "1"}}))));
    EXPECT_FALSE(isPassedOver("pack.zip", inspect(zipText({{"a/manifest.json", "{}"}}))));
    EXPECT_FALSE(isPassedOver("notes.txt", truncated));
    EXPECT_FALSE(isPassedOver("notes.txt", damaged));
}

} // namespace
