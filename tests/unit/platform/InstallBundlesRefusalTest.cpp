#include "platform/InstallBundles.h"
#include "process/RunningFramework.h"
#include "support/Host.h"
#include "unit/ZipText.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <sys/stat.h>

using namespace ostrel::platform;
using namespace ostrel::test;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

namespace fs = std::filesystem;

namespace {

class InstallRefusal : public HostFixture {
protected:
    std::string textOf(const Utf16Path& path)
    {
        try {
            installBundles(host.context(), path);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "nothing was thrown";
    }

    std::string textOf(const std::string& file) { return textOf(Utf16Path{toUtf16(host.directory() / file)}); }
    std::string textOfDirectory() { return textOf(host.bundleDirectory()); }
    std::string quoted(const std::string& file) const { return "'" + (host.directory() / file).native() + "'"; }
};

TEST_F(InstallRefusal, GivenText_WhenItIsNamedLikeLibrary_ThenTheTextSaysNoBundle)
{
    host.write("a.so", "text");

    const std::string expected =
        "installBundles: " + quoted("a.so") + " is no bundle: it is neither a shared object nor a zip archive";
    EXPECT_EQ(textOfDirectory(), expected);
    EXPECT_EQ(textOf("a.so"), expected);
}

TEST_F(InstallRefusal, GivenTextOfAnyName_WhenItIsTheSingleFile_ThenTheTextSaysNoBundle)
{
    host.write("a.txt", "text");

    EXPECT_THAT(textOf("a.txt"), HasSubstr(quoted("a.txt") + " is no bundle"));
}

TEST_F(InstallRefusal, GivenPlainLibrary_WhenItIsTheSingleFile_ThenTheTextSaysNoArchive)
{
    fs::copy_file(UNIT_OF_EMBEDDED, host.directory() / "a.so");

    EXPECT_THAT(textOf("a.so"), HasSubstr("the shared object " + quoted("a.so") + " holds no archive"));
}

TEST_F(InstallRefusal, GivenArchiveWithoutManifest_WhenInstalled_ThenTheTextSaysNoManifest)
{
    host.write("a.so", zipText({{"n/a.txt", "text"}}));

    EXPECT_THAT(textOfDirectory(), HasSubstr("the archive in " + quoted("a.so") + " holds no manifest"));
}

TEST_F(InstallRefusal, GivenManifestAtRoot_WhenInstalled_ThenTheTextSaysWhereItBelongs)
{
    host.write("a", zipText({{"manifest.json", "{}"}}));

    EXPECT_THAT(textOf("a"), HasSubstr("its manifest.json lies in no folder"));
}

TEST_F(InstallRefusal, GivenFolderWithoutManifestBesideOther_WhenInstalled_ThenItIsNamed)
{
    host.write("a", zipText({{"n/manifest.json", manifestText("n")}, {"m/x", "text"}}));

    EXPECT_THAT(textOfDirectory(), HasSubstr("the folder 'm' in the archive of " + quoted("a") + " has no manifest"));
}

TEST_F(InstallRefusal, GivenCutArchive_WhenInstalled_ThenTheTextSaysDamaged)
{
    const std::string zip = bundleZip("n");
    host.write("a.zip", zip.substr(0, zip.size() / 2));

    EXPECT_THAT(textOfDirectory(),
                AllOf(StartsWith("installBundles: the archive in " + quoted("a.zip") + " is damaged ("),
                      EndsWith("); build the bundle again")));
}

TEST_F(InstallRefusal, GivenCutLibrary_WhenInstalled_ThenTheTextSaysTruncated)
{
    const std::string library = contentOf(UNIT_OF_EMBEDDED);
    host.write("a", library.substr(0, library.size() / 2));

    EXPECT_THAT(textOfDirectory(), StartsWith("installBundles: the shared object " + quoted("a") + " is truncated ("));
}

TEST_F(InstallRefusal, GivenManifestThatIsNoJson_WhenInstalled_ThenTheTextNamesBundleAndFile)
{
    host.write("a", zipText({{"n/manifest.json", "{\"a\": }"}}));

    EXPECT_THAT(textOfDirectory(),
                AllOf(HasSubstr("the manifest of the bundle 'n' in " + quoted("a") + " is not valid JSON"),
                      HasSubstr("at offset 6")));
}

TEST_F(InstallRefusal, GivenManifestThatTheFrameworkRefuses_WhenInstalled_ThenTheTextNamesFileAndReason)
{
    host.write("a", zipText({{"n/manifest.json", R"({"bundle.version": "1"})"}}));

    EXPECT_THAT(textOfDirectory(), AllOf(StartsWith("installBundles: the framework refused " + quoted("a") + ": "),
                                         HasSubstr("bundle.symbolic_name is not defined")));
}

TEST_F(InstallRefusal, GivenTwoFilesWithOneBundle_WhenInstalled_ThenBothAreNamed)
{
    host.write("a", bundleZip("n", "1.0"));
    host.write("b", bundleZip("n", "1.0.0"));

    EXPECT_THAT(textOfDirectory(),
                HasSubstr(quoted("b") + " and " + quoted("a") + " both hold the bundle 'n', version 1.0.0"));
}

TEST_F(InstallRefusal, GivenNothingAtPath_WhenInstalled_ThenTheTextSaysSo)
{
    EXPECT_EQ(textOf("none"), "installBundles: " + quoted("none") + " does not exist; check the path");
    EXPECT_EQ(textOf(Utf16Path{u""}), "installBundles: '' does not exist; check the path");
}

TEST_F(InstallRefusal, GivenPipe_WhenItIsThePath_ThenItIsRefusedWithoutWaiting)
{
    ASSERT_EQ(::mkfifo((host.directory() / "pipe").c_str(), 0600), 0);

    EXPECT_THAT(textOf("pipe"), HasSubstr(quoted("pipe") + " is neither a directory nor a file"));
}

TEST_F(InstallRefusal, GivenUnpairedSurrogateInPath_WhenInstalled_ThenTheOffsetIsTold)
{
    EXPECT_THAT(textOf(Utf16Path{std::u16string{u'a', char16_t{0xd800}}}),
                AllOf(StartsWith("installBundles: "), HasSubstr("an unpaired surrogate at offset 1")));
}

TEST_F(InstallRefusal, GivenZeroCharacterInPath_WhenInstalled_ThenItIsRefused)
{
    EXPECT_THAT(textOf(Utf16Path{std::u16string{u"/tmp\0x", 6}}), HasSubstr("zero character"));
}

TEST_F(InstallRefusal, GivenStoppedFramework_WhenInstalled_ThenItsOwnErrorPasses)
{
    host.write("a.so", "text");
    const auto context = host.context();
    const auto directory = host.bundleDirectory();
    host.stop();

    try {
        installBundles(context, directory);
        FAIL() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "The bundle context is no longer valid");
    }
}

TEST_F(InstallRefusal, GivenBundleForOtherFramework_WhenInstalled_ThenItIsRefusedByName)
{
    const bool embedded = ostrel::process::runningFramework() == ostrel::bundle_reader::Framework::embedded;
    host.write("a.so", contentOf(embedded ? UNIT_OF_INSTALLED : UNIT_OF_EMBEDDED) + bundleZip("n"));

    const std::string text = textOfDirectory();

    EXPECT_THAT(text, StartsWith("installBundles: the bundle " + quoted("a.so") + " was built for "));
    EXPECT_THAT(text, HasSubstr(embedded ? "an installed CppMicroServices (it needs 'libCppMicroServices.so.3.8.4')"
                                         : "the embedded framework (it needs 'libostrel_framework.so.1')"));
    EXPECT_FALSE(host.bundleIn("a.so"));
}

TEST_F(InstallRefusal, GivenBundleForThisFramework_WhenInstalled_ThenItIsInstalled)
{
    const bool embedded = ostrel::process::runningFramework() == ostrel::bundle_reader::Framework::embedded;
    host.write("a.so", contentOf(embedded ? UNIT_OF_EMBEDDED : UNIT_OF_INSTALLED) + bundleZip("n"));

    EXPECT_EQ(textOfDirectory(), "nothing was thrown");
    EXPECT_TRUE(host.bundleIn("a.so"));
}

} // namespace
