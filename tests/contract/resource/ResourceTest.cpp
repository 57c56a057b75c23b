#include "contract/ThrownText.h"
#include "contract/resource/ResourceFixture.h"

#include <cppmicroservices/BundleResourceStream.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <functional>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <type_traits>

namespace {

using namespace cppmicroservices;
using ostrel::test::pathsOf;
using ostrel::test::thrownText;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

static_assert(std::is_copy_constructible_v<BundleResource> && std::is_copy_assignable_v<BundleResource>);
static_assert(std::is_constructible_v<bool, BundleResource> && !std::is_convertible_v<BundleResource, bool>);

class Resources : public ostrel::test::ResourceFixture {};

TEST_F(Resources, tellTheirNames)
{
    struct Names {
        std::string path, name, base, completeBase, suffix, completeSuffix;
    };
    for (auto const& expected :
         {Names{"/archive.tar.gz", "archive.tar.gz", "archive", "archive.tar", "gz", "tar.gz"},
          Names{"/zeta.txt", "zeta.txt", "zeta", "zeta", "txt", "txt"},
          Names{"/noext", "noext", "noext", "noext", "", ""}, Names{"/.hidden", ".hidden", "", "", "hidden", "hidden"},
          Names{"/trail.", "trail.", "trail", "trail", "", ""}, Names{"/void/", "", "", "", "", ""}}) {
        auto const resource = alpha.GetResource(expected.path);
        SCOPED_TRACE(expected.path);
        EXPECT_TRUE(resource.IsValid());
        EXPECT_TRUE(static_cast<bool>(resource));
        EXPECT_EQ(expected.path, resource.GetResourcePath());
        EXPECT_EQ(expected.name, resource.GetName());
        EXPECT_EQ(expected.base, resource.GetBaseName());
        EXPECT_EQ(expected.completeBase, resource.GetCompleteBaseName());
        EXPECT_EQ(expected.suffix, resource.GetSuffix());
        EXPECT_EQ(expected.completeSuffix, resource.GetCompleteSuffix());
        std::ostringstream text;
        text << resource;
        EXPECT_EQ(expected.path, text.str());
    }
    EXPECT_EQ("/", alpha.GetResource("zeta.txt").GetPath());
    EXPECT_EQ("/dir/", alpha.GetResource("dir/b.txt").GetPath());
    EXPECT_EQ("/dir/", alpha.GetResource("dir/").GetPath());
    EXPECT_EQ("\xc3\xbc.txt", alpha.GetResource("/sp ace/\xc3\xbc.txt").GetName());
}

TEST_F(Resources, areFoundHoweverTheirSlashesAreWritten)
{
    for (auto const* path : {"dir/b.txt", "/dir/b.txt", "//dir/b.txt", "/dir//b.txt", "dir///b.txt"}) {
        EXPECT_EQ("/dir/b.txt", alpha.GetResource(path).GetResourcePath()) << path;
    }
    for (auto const* path : {"", "/", "//", "///"}) {
        EXPECT_EQ("/", alpha.GetResource(path).GetResourcePath()) << path;
    }
    for (auto const* path : {"dir/", "/dir/", "/dir//"}) {
        EXPECT_EQ("/dir/", alpha.GetResource(path).GetResourcePath()) << path;
    }
}

TEST_F(Resources, areNotFoundByAnythingElse)
{
    for (auto const* path :
         {"none", "/none/", "/dir", "dir", "zeta.txt/", "dir/b.txt/", "./zeta.txt", "/./zeta.txt", "/dir/../zeta.txt",
          "../beta/zeta.txt", "/alpha/zeta.txt", "\\zeta.txt", "/implicit", "/implicit/", "/implicit/deep/", " "}) {
        auto const resource = alpha.GetResource(path);
        EXPECT_FALSE(resource.IsValid()) << path;
        EXPECT_EQ(BundleResource(), resource) << path;
    }
    EXPECT_EQ("/implicit/deep/file.txt", alpha.GetResource("implicit/deep/file.txt").GetResourcePath());
}

TEST_F(Resources, areFoundInAnyCaseOfLettersAndKeepTheOneAskedFor)
{
    auto const resource = alpha.GetResource("/DIR/A.txt");
    ASSERT_TRUE(resource.IsValid());
    EXPECT_EQ("/DIR/A.txt", resource.GetResourcePath());
    EXPECT_EQ("A.txt", resource.GetName());
    EXPECT_EQ(alpha.GetResource("/dir/a.TXT").GetCrc32(), resource.GetCrc32());
    EXPECT_NE(alpha.GetResource("/dir/a.TXT"), resource);
    EXPECT_THAT(alpha.GetResource("/DIR/").GetChildren(), ElementsAre("a.TXT", "b.txt", "sub/"));
    EXPECT_EQ("/dir/a.TXT", alpha.GetResource("/DIR/").GetChildResources().front().GetResourcePath());
    EXPECT_FALSE(alpha.GetResource("/sp ace/\xc3\x9c.txt").IsValid());
}

TEST_F(Resources, tellAboutTheirData)
{
    auto const stored = alpha.GetResource("Zebra.txt");
    EXPECT_EQ(1, stored.GetSize());
    EXPECT_EQ(1, stored.GetCompressedSize());
    EXPECT_EQ(0x59bc5767U, stored.GetCrc32());
    EXPECT_EQ(ostrel::test::packedTime(), stored.GetLastModified());
    auto const deflated = alpha.GetResource("noext");
    EXPECT_EQ(1000, deflated.GetSize());
    EXPECT_LT(deflated.GetCompressedSize(), 100);
    EXPECT_GT(deflated.GetCompressedSize(), 0);
    auto const empty = alpha.GetResource("empty.dat");
    EXPECT_EQ(0, empty.GetSize());
    EXPECT_EQ(0U, empty.GetCrc32());
    EXPECT_EQ(0, alpha.GetResource("/").GetSize());
}

TEST_F(Resources, tellFoldersFromFiles)
{
    EXPECT_TRUE(alpha.GetResource("/").IsDir());
    EXPECT_FALSE(alpha.GetResource("/").IsFile());
    EXPECT_TRUE(alpha.GetResource("/dir/").IsDir());
    EXPECT_FALSE(alpha.GetResource("/dir/b.txt").IsDir());
    EXPECT_TRUE(alpha.GetResource("/dir/b.txt").IsFile());
}

TEST_F(Resources, listTheirChildren)
{
    EXPECT_THAT(alpha.GetResource("/").GetChildren(),
                ElementsAre(".hidden", "Zebra.txt", "archive.tar.gz", "dir/", "empty.dat", "manifest.json", "noext",
                            "trail.", "void/", "zeta.txt"));
    EXPECT_THAT(alpha.GetResource("/dir/").GetChildren(), ElementsAre("a.TXT", "b.txt", "sub/"));
    EXPECT_THAT(pathsOf(alpha.GetResource("/dir/").GetChildResources()),
                ElementsAre("/dir/a.TXT", "/dir/b.txt", "/dir/sub/"));
    EXPECT_THAT(alpha.GetResource("/void/").GetChildren(), IsEmpty());
    EXPECT_THAT(alpha.GetResource("/zeta.txt").GetChildResources(), IsEmpty());
}

TEST_F(Resources, compareByPathAndBundle)
{
    auto const zeta = alpha.GetResource("zeta.txt");
    auto const same = alpha.GetResource("/zeta.txt");
    auto const other = beta.GetResource("zeta.txt");
    auto const hidden = alpha.GetResource(".hidden");
    EXPECT_TRUE(zeta == same);
    EXPECT_FALSE(zeta != same);
    EXPECT_TRUE(zeta != other);
    EXPECT_FALSE(zeta < other);
    EXPECT_FALSE(other < zeta);
    EXPECT_TRUE(hidden < zeta);
    EXPECT_FALSE(zeta < hidden);
    std::hash<BundleResource> const hash;
    EXPECT_EQ(hash(zeta), hash(same));
    EXPECT_NE(hash(zeta), hash(other));
    EXPECT_NE(hash(zeta), hash(hidden));
}

TEST_F(Resources, copyAndAssign)
{
    auto zeta = alpha.GetResource("zeta.txt");
    BundleResource copy(zeta);
    EXPECT_EQ(zeta, copy);
    copy = BundleResource();
    EXPECT_FALSE(copy);
    copy = zeta;
    EXPECT_EQ(zeta, copy);
    BundleResource const taken(std::move(zeta));
    EXPECT_EQ(copy, taken);
}

TEST_F(Resources, mayBeInvalid)
{
    BundleResource const none;
    EXPECT_FALSE(none.IsValid());
    EXPECT_FALSE(static_cast<bool>(none));
    EXPECT_EQ("", none.GetResourcePath());
    EXPECT_EQ("", none.GetName());
    EXPECT_EQ("", none.GetPath());
    EXPECT_EQ("", none.GetBaseName());
    EXPECT_EQ("", none.GetCompleteBaseName());
    EXPECT_EQ("", none.GetSuffix());
    EXPECT_EQ("", none.GetCompleteSuffix());
    EXPECT_FALSE(none.IsDir());
    EXPECT_TRUE(none.IsFile());
    EXPECT_EQ(0, none.GetSize());
    EXPECT_EQ(0, none.GetCompressedSize());
    EXPECT_EQ(0, none.GetLastModified());
    EXPECT_EQ(0U, none.GetCrc32());
    EXPECT_THAT(none.GetChildren(), IsEmpty());
    EXPECT_THAT(none.GetChildResources(), IsEmpty());
    std::ostringstream text;
    text << none;
    EXPECT_EQ("", text.str());
    EXPECT_TRUE(none == BundleResource());
    EXPECT_FALSE(none < BundleResource());
    auto const zeta = alpha.GetResource("zeta.txt");
    EXPECT_TRUE(none != zeta);
    EXPECT_TRUE(zeta != none);
    EXPECT_TRUE(none < zeta);
    EXPECT_FALSE(zeta < none);
}

TEST_F(Resources, belongToOneBundleOfAFile)
{
    EXPECT_THAT(beta.GetResource("/").GetChildren(), ElementsAre("manifest.json", "zeta.txt"));
    EXPECT_EQ(7, beta.GetResource("zeta.txt").GetSize());
    EXPECT_FALSE(beta.GetResource("noext"));
}

TEST_F(Resources, ofABundleThatIsUninstalledAreRefused)
{
    auto const held = alpha.GetResource("/dir/");
    alpha.Uninstall();
    auto const text = "Bundle alpha (location=" + alpha.GetLocation() + ") is in UNINSTALLED state";
    EXPECT_EQ(text, thrownText<std::logic_error>([&] { alpha.GetResource("zeta.txt"); }));
    EXPECT_EQ(text, thrownText<std::logic_error>([&] { alpha.FindResources("/", "", true); }));
    EXPECT_THAT(held.GetChildren(), ElementsAre("a.TXT", "b.txt", "sub/"));
    EXPECT_TRUE(beta.GetResource("zeta.txt"));
}

TEST_F(Resources, ofNoBundleAreRefused)
{
    EXPECT_EQ("invalid bundle", thrownText<std::invalid_argument>([] { Bundle().GetResource("x"); }));
    EXPECT_EQ("invalid bundle", thrownText<std::invalid_argument>([] { Bundle().FindResources("/", "", true); }));
}

TEST_F(Resources, areThereInEveryState)
{
    alpha.Start();
    EXPECT_TRUE(alpha.GetResource("zeta.txt"));
    alpha.Stop();
    EXPECT_TRUE(alpha.GetResource("zeta.txt"));
    ostrel::test::stopAndWait(framework);
    EXPECT_TRUE(alpha.GetResource("zeta.txt"));
    EXPECT_THAT(alpha.FindResources("/dir", "txt", false), ::testing::SizeIs(1));
}

TEST_F(Resources, areNotOfTheFramework)
{
    auto const system = context.GetBundle(0);
    EXPECT_FALSE(system.GetResource("/"));
    EXPECT_FALSE(system.GetResource("manifest.json"));
    EXPECT_THAT(system.FindResources("/", "*", true), IsEmpty());
}

TEST_F(Resources, ofGivenManifestsAreThoseOfTheFile)
{
    AnyMap manifests;
    manifests["gamma"] = AnyMap({{"bundle.symbolic_name", std::string("gamma")}});
    auto const noArchive = directory.write("text", "no archive\n").string();
    auto const onText = context.InstallBundles(noArchive, manifests).front();
    EXPECT_EQ("Could not init zip archive for bundle at " + noArchive,
              thrownText<std::runtime_error>([&] { onText.GetResource("x"); }));
    EXPECT_EQ("Could not init zip archive for bundle at " + noArchive,
              thrownText<std::runtime_error>([&] { onText.FindResources("/", "", true); }));

    AnyMap others;
    others["delta"] = AnyMap({{"bundle.symbolic_name", std::string("delta")}});
    auto const file =
        directory.write("delta.zip", ostrel::test::archiveOf({{"delta/", ""}, {"delta/x.txt", "x"}})).string();
    EXPECT_EQ(1, context.InstallBundles(file, others).front().GetResource("x.txt").GetSize());
}

TEST_F(Resources, areThereThoughTheFileWasReplacedOrRemovedBefore)
{
    std::filesystem::path const location = alpha.GetLocation();
    std::filesystem::rename(directory.write("other", "no archive"), location);
    EXPECT_TRUE(alpha.GetResource("manifest.json"));
    std::filesystem::remove(location);
    EXPECT_FALSE(beta.FindResources("/", "", true).empty());
    auto const manifest = alpha.GetResource("manifest.json");
    BundleResourceStream stream(manifest);
    std::string text(std::istreambuf_iterator<char>(stream), {});
    EXPECT_EQ(static_cast<std::size_t>(manifest.GetSize()), text.size());
}

TEST_F(Resources, outliveTheirFile)
{
    auto const held = alpha.GetResource("zeta.txt");
    std::filesystem::remove(alpha.GetLocation());
    EXPECT_EQ(held, alpha.GetResource("zeta.txt"));
    EXPECT_TRUE(beta.GetResource("zeta.txt"));
}

} // namespace
