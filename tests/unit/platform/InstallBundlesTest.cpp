#include "platform/InstallBundles.h"

#include "support/Host.h"
#include "unit/ZipText.h"

#include <gmock/gmock.h>

#include <stdexcept>

using namespace ostrel::platform;
using namespace ostrel::test;
using cppmicroservices::Bundle;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace fs = std::filesystem;

namespace {

std::vector<std::string> namesOf(const std::vector<Bundle>& bundles)
{
    std::vector<std::string> names;
    names.reserve(bundles.size());
    for (const Bundle& bundle : bundles) {
        names.push_back(bundle.GetSymbolicName());
    }
    return names;
}

class InstallBundles : public HostFixture {
protected:
    std::vector<Bundle> install() { return installBundles(host.context(), host.bundleDirectory()); }

    std::vector<Bundle> install(const fs::path& path, bool flag = false)
    {
        return installBundles(host.context(), Utf16Path{toUtf16(path.native()), flag});
    }

    fs::path inDirectory(const std::string& file) const { return host.directory() / file; }
};

TEST_F(InstallBundles, GivenDirectory_WhenInstalled_ThenFilesComeInByteOrder)
{
    host.write("b", bundleZip("one"));
    host.write("a", bundleZip("two"));
    host.write("C", bundleZip("three"));
    host.write("\xc3\xa9", bundleZip("four"));

    EXPECT_THAT(namesOf(install()), ElementsAre("three", "two", "one", "four"));
}

TEST_F(InstallBundles, GivenSeveralManifestsInFile_WhenInstalled_ThenTheyComeInOrderOfName)
{
    host.write("f", zipText({{"b/manifest.json", manifestText("b")}, {"a/manifest.json", manifestText("a")}}));

    EXPECT_THAT(namesOf(install()), ElementsAre("a", "b"));
}

TEST_F(InstallBundles, GivenOtherFiles_WhenInstalled_ThenTheyAreSkipped)
{
    host.write("readme.txt", "text");
    host.write("empty", "");
    host.write("other.zip", zipText({{"a.txt", "text"}}));
    host.write("bundle.anything", bundleZip("n"));
    fs::copy_file(UNIT_OF_EMBEDDED, inDirectory("plain.so"));
    fs::create_directory(inDirectory("sub"));
    host.write("sub/inner.so", bundleZip("inner"));
    fs::create_symlink("nowhere", inDirectory("dangling.so"));
    fs::create_symlink("circle.so", inDirectory("circle.so"));
    fs::create_symlink("readme.txt/inside", inDirectory("inside.so"));
    fs::create_directory_symlink("sub", inDirectory("sub.so"));

    EXPECT_THAT(namesOf(install()), ElementsAre("n"));
}

TEST_F(InstallBundles, GivenEmptyDirectory_WhenInstalled_ThenThereAreNone)
{
    EXPECT_THAT(install(), IsEmpty());
}

TEST_F(InstallBundles, GivenSingleFile_WhenInstalled_ThenOnlyItsBundlesAre)
{
    host.write("a", bundleZip("a"));
    host.write("b", bundleZip("b"));

    EXPECT_THAT(namesOf(install(inDirectory("b"))), ElementsAre("b"));
    EXPECT_FALSE(host.bundleIn("a"));
}

TEST_F(InstallBundles, GivenAnySpelling_WhenInstalled_ThenTheLocationIsCanonical)
{
    host.write("a", bundleZip("a"));
    fs::create_symlink("a", inDirectory("link"));

    const auto bundles = install(host.directory() / "." / "link");

    ASSERT_THAT(bundles, SizeIs(1));
    EXPECT_EQ(bundles[0].GetLocation(), inDirectory("a").native());
}

/// Ways to a file that are not its canonical path; each in a framework that does not know the file yet.
class InstallByDetour : public testing::TestWithParam<std::string> {
protected:
    InstallByDetour() : m_before{fs::current_path()}
    {
        fs::create_directory(host.directory() / "folder");
        host.write("folder/file", bundleZip("a"));
        fs::create_directory_symlink("folder", host.directory() / "link");
        fs::create_symlink("folder/file", host.directory() / "file");
        fs::current_path(host.directory());
    }
    ~InstallByDetour() override { fs::current_path(m_before); }

    Host host;

private:
    fs::path m_before;
};

TEST_P(InstallByDetour, GivenIt_WhenInstalled_ThenTheLocationIsCanonical)
{
    const std::string directory = host.directory().string();
    std::string path = GetParam();
    if (path.front() == '/') {
        path = directory + path;
    }

    const auto bundles = installBundles(host.context(), Utf16Path{fs::path{path}.u16string()});

    ASSERT_THAT(bundles, SizeIs(1));
    EXPECT_EQ(bundles[0].GetLocation(), directory + "/folder/file");
}

INSTANTIATE_TEST_SUITE_P(Detours, InstallByDetour,
                         testing::Values("//folder/file", "/./folder/file", "/folder/../folder/file", "/folder/./file",
                                         "/folder//file", "/link/file", "/file", "/link", "/link/", "/./folder",
                                         "folder/file", "file", "./folder/file", "link/file", "folder", "folder/"));

TEST_F(InstallBundles, GivenFileAndLinksToIt_WhenInstalled_ThenItIsOneBundle)
{
    host.write("b", bundleZip("b"));
    fs::create_symlink("b", inDirectory("a"));
    fs::create_hard_link(inDirectory("b"), inDirectory("c"));

    EXPECT_THAT(namesOf(install()), ElementsAre("b"));
}

TEST_F(InstallBundles, GivenInstalledBundle_WhenInstalledAgain_ThenItIsReturnedAgain)
{
    host.write("a", bundleZip("a"));
    auto first = install();
    first.at(0).Start();

    const auto second = install();

    EXPECT_EQ(second, first);
    EXPECT_EQ(second.at(0).GetState(), Bundle::STATE_ACTIVE);
}

TEST_F(InstallBundles, GivenBundleInstalledByOtherSpelling_WhenInstalled_ThenItIsReturned)
{
    host.write("a", bundleZip("a"));
    const auto first = host.context().InstallBundles((host.directory() / "." / "a").native());

    EXPECT_EQ(install(), first);
}

TEST_F(InstallBundles, GivenTwoHardLinksInstalledByThemselves_WhenOneIsInstalled_ThenItsOwnBundleIsReturned)
{
    host.write("a", bundleZip("n", "1.0.0"));
    fs::create_hard_link(inDirectory("a"), inDirectory("c"));
    const auto first = host.context().InstallBundles(inDirectory("a").native());
    host.write("a", bundleZip("n", "2.0.0"));
    const auto second = host.context().InstallBundles(inDirectory("c").native());

    EXPECT_EQ(install(inDirectory("a")), first);
    EXPECT_EQ(install(inDirectory("c")), second);
}

TEST_F(InstallBundles, GivenNameThatIsNoUtf8_WhenDirectoryIsInstalled_ThenItIsInstalled)
{
    const std::string name{"a\xff\xfe"};
    host.write(name, bundleZip("a"));

    const auto bundles = install();

    ASSERT_THAT(bundles, SizeIs(1));
    EXPECT_EQ(bundles[0].GetLocation(), inDirectory(name).native());
}

TEST_F(InstallBundles, GivenFlag_WhenInstalled_ThenBackslashIsSeparator)
{
    host.write("a", bundleZip("a"));
    const std::string path = host.directory().native() + "\\a";

    EXPECT_THAT(namesOf(install(path, true)), ElementsAre("a"));
    EXPECT_THROW(install(path, false), std::runtime_error);
}

TEST_F(InstallBundles, GivenOneNameInTwoVersions_WhenInstalled_ThenBothAre)
{
    host.write("a", bundleZip("n", "1.0.0"));
    host.write("b", bundleZip("n", "2.0.0"));

    EXPECT_THAT(install(), SizeIs(2));
}

TEST_F(InstallBundles, GivenFailingFile_WhenInstalled_ThenThoseBeforeStayInstalled)
{
    host.write("a", bundleZip("a"));
    host.write("b.so", "text");
    host.write("c", bundleZip("c"));

    EXPECT_THROW(install(), std::runtime_error);

    EXPECT_TRUE(host.bundleIn("a"));
    EXPECT_FALSE(host.bundleIn("c"));
}

} // namespace
