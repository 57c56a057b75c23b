// What is installed already, under the path that is asked for or under another.

#include "platform/InstallBundles.h"
#include "support/Host.h"
#include "unit/ZipText.h"
#include "unit/platform/ContextSeams.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

using namespace ostrel::platform;
using namespace ostrel::test;
using cppmicroservices::Bundle;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace fs = std::filesystem;

namespace {

class InstallTwin : public HostFixture {
protected:
    using Bundles = std::vector<Bundle>;

    InstallTwin()
    {
        seams.installBundles = [this](const std::string& location) {
            attempts.push_back(location);
            return reallyInstallBundles(host.context(), location);
        };
        seams.getBundles = [this] {
            ++listings;
            return reallyGetBundles(host.context());
        };
    }

    Bundles install() { return installBundles(host.context(), host.bundleDirectory()); }
    Bundles install(const fs::path& path) { return installBundles(host.context(), Utf16Path{toUtf16(path.native())}); }

    /// Installs a file through the framework alone.
    Bundles installByFramework(const fs::path& path) { return reallyInstallBundles(host.context(), path.native()); }

    template <class Error>
    static std::string thrownBy(const std::function<void()>& work)
    {
        try {
            work();
        } catch (const Error& error) {
            return error.what();
        }
        return "nothing was thrown";
    }

    fs::path inDirectory(const std::string& file) const { return host.directory() / file; }
    fs::path otherSpellingOf(const std::string& file) const { return host.directory() / "." / file; }

    std::vector<std::string> attempts; ///< the locations that the framework was asked to install
    int listings = 0;                  ///< how often it was asked for all bundles
    ContextSeams seams;
};

TEST_F(InstallTwin, GivenNewFiles_WhenInstalled_ThenTheFrameworkIsAskedForNothingElse)
{
    host.write("a", bundleZip("a"));
    host.write("b", bundleZip("b"));

    install();

    EXPECT_THAT(attempts, ElementsAre(inDirectory("a"), inDirectory("b")));
    EXPECT_EQ(listings, 0);
}

TEST_F(InstallTwin, GivenInstalledFiles_WhenInstalledAgain_ThenTheFrameworkIsAskedForNothingElse)
{
    host.write("a", bundleZip("a"));
    const Bundles first = install();

    EXPECT_EQ(install(), first);

    EXPECT_THAT(attempts, ElementsAre(inDirectory("a"), inDirectory("a")));
    EXPECT_EQ(listings, 0);
}

TEST_F(InstallTwin, GivenFilesInstalledByOtherSpelling_WhenInstalled_ThenTheBundlesAreListedOnce)
{
    host.write("a", bundleZip("a"));
    host.write("b", bundleZip("b"));
    Bundles first = installByFramework(otherSpellingOf("a"));
    first.push_back(installByFramework(otherSpellingOf("b")).at(0));

    EXPECT_EQ(install(), first);

    EXPECT_EQ(listings, 1);
    EXPECT_THAT(attempts, ElementsAre(inDirectory("a"), otherSpellingOf("a"), inDirectory("b"), otherSpellingOf("b")));
}

TEST_F(InstallTwin, GivenFileInstalledBySymbolicLink_WhenInstalled_ThenItsBundleIsReturned)
{
    host.write("a", bundleZip("a"));
    fs::create_directory(inDirectory("sub"));
    fs::create_symlink(inDirectory("a"), inDirectory("sub") / "link");
    const Bundles first = installByFramework(inDirectory("sub") / "link");

    EXPECT_EQ(install(), first);
}

TEST_F(InstallTwin, GivenSeveralFilesWithLinks_WhenInstalled_ThenEachIsOneBundle)
{
    for (const std::string name : {"a", "b", "c"}) {
        host.write(name, bundleZip(name));
        fs::create_hard_link(inDirectory(name), inDirectory(name + "2"));
        fs::create_hard_link(inDirectory(name), inDirectory(name + "3"));
    }

    const Bundles bundles = install();

    ASSERT_THAT(bundles, SizeIs(3));
    EXPECT_EQ(bundles[1].GetLocation(), inDirectory("b").native());
    EXPECT_EQ(listings, 1);
}

TEST_F(InstallTwin, GivenFileOfTwoBundlesInstalledByOtherSpelling_WhenOneIsUninstalled_ThenBothAreReturnedFromThere)
{
    host.write("f", zipText({{"a/manifest.json", manifestText("a")}, {"b/manifest.json", manifestText("b")}}));
    installByFramework(otherSpellingOf("f")).at(0).Uninstall();

    const Bundles bundles = install();

    ASSERT_THAT(bundles, SizeIs(2));
    EXPECT_EQ(bundles[0].GetLocation(), otherSpellingOf("f").native());
    EXPECT_EQ(bundles[1].GetLocation(), otherSpellingOf("f").native());
    EXPECT_THAT(host.context().GetBundles(inDirectory("f").native()), IsEmpty());
}

TEST_F(InstallTwin, GivenFileInstalledByOtherSpelling_WhenItIsRewrittenWithOtherVersion_ThenItIsBundleOfItsOwn)
{
    host.write("a", bundleZip("a", "1.0.0"));
    const Bundles first = installByFramework(otherSpellingOf("a"));
    host.write("a", bundleZip("a", "2.0.0"));

    const Bundles second = install();

    ASSERT_THAT(second, SizeIs(1));
    EXPECT_NE(second, first);
    EXPECT_EQ(second[0].GetVersion().ToString(), "2.0.0");
    EXPECT_EQ(second[0].GetLocation(), inDirectory("a").native());
}

TEST_F(InstallTwin, GivenFileInstalledByOtherSpelling_WhenTheFrameworkRefusesWhatItIsNow_ThenItsBundleIsReturned)
{
    host.write("a", bundleZip("a"));
    const Bundles first = installByFramework(otherSpellingOf("a"));
    host.write("a", zipText({{"a/manifest.json", "{}"}}));

    EXPECT_EQ(install(), first);
}

TEST_F(InstallTwin, GivenFrameworkThatCannotListBundles_WhenFilesAreNew_ThenTheyAreInstalled)
{
    host.write("a", bundleZip("a"));
    seams.getBundles = []() -> Bundles { throw std::bad_weak_ptr{}; };

    EXPECT_THAT(install(), SizeIs(1));
}

TEST_F(InstallTwin, GivenFrameworkThatCannotListBundles_WhenFileIsRefused_ThenTheRefusalIsTold)
{
    host.write("a", bundleZip("n"));
    host.write("b", bundleZip("n"));
    installByFramework(inDirectory("a"));
    const auto refusal = thrownBy<std::runtime_error>([this] { installByFramework(inDirectory("b")); });
    seams.getBundles = []() -> Bundles { throw std::bad_weak_ptr{}; };

    EXPECT_EQ(thrownBy<std::runtime_error>([this] { install(inDirectory("b")); }),
              "installBundles: the framework refused '" + inDirectory("b").native() + "': " + refusal);
}

TEST_F(InstallTwin, GivenNoMemoryToListBundles_WhenFileIsRefused_ThenBadAllocPasses)
{
    host.write("a", bundleZip("a"));
    installByFramework(otherSpellingOf("a"));
    seams.getBundles = []() -> Bundles { throw std::bad_alloc{}; };

    EXPECT_THROW(install(), std::bad_alloc);
}

TEST_F(InstallTwin, GivenFrameworkThatStopsMeanwhile_WhenInstalled_ThenItsOwnErrorPasses)
{
    host.write("a", bundleZip("a"));
    seams.installBundles = [this](const std::string&) -> Bundles {
        host.stop();
        throw std::runtime_error{"planned: the framework has stopped"};
    };

    EXPECT_EQ(thrownBy<std::runtime_error>([this] { install(); }), "planned: the framework has stopped");
    EXPECT_EQ(listings, 0);
}

TEST_F(InstallTwin, GivenInvalidContext_WhenNothingIsAtThePath_ThenTheFrameworksErrorComesFirst)
{
    EXPECT_EQ(
        thrownBy<std::runtime_error>([] { installBundles(cppmicroservices::BundleContext{}, Utf16Path{u"nowhere"}); }),
        "The bundle context is no longer valid");
}

} // namespace
