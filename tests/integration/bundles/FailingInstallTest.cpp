#include "container/DiagnosticLog.h"
#include "support/ContainerFixture.h"
#include "support/TestBundles.h"

#include <gmock/gmock.h>

#include <cstddef>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/// Makes a file that cannot be installed, under the name "it.so", in the host's bundle directory.
struct BadFile {
    std::string kind;
    std::function<void(Host&)> make;
    friend std::ostream& operator<<(std::ostream& stream, const BadFile& file) { return stream << file.kind; }
};

std::string truncated(std::string content)
{
    content.resize(content.size() / 2);
    return content;
}

/// The content with its archive's directory overwritten, so that no entry can be found.
std::string damaged(std::string content)
{
    const std::string directoryEntry = "PK\x01\x02";
    for (std::size_t at = content.find(directoryEntry); at != std::string::npos; at = content.find(directoryEntry)) {
        content.replace(at, directoryEntry.size(), "????");
    }
    return content;
}

class FailingInstall : public ContainerFixture {};
class InstallOfBadFile : public ContainerFixture, public ::testing::WithParamInterface<BadFile> {
protected:
    void SetUp() override { GetParam().make(host); }
};

TEST_P(InstallOfBadFile, GivenNewName_WhenStarted_ThenTwoRecordsQuoteTheEmptyLocation)
{
    container.startBundle("it.so");

    const std::string cause = installErrorOf("it.so");
    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x8, "Unable to install bundle: "},
                                           LogRecord{0x200, "Unable to install bundle: , cause: " + cause}));
}

TEST_P(InstallOfBadFile, GivenNewName_WhenStarted_ThenTheNameIsRecordedWithAnEmptyLocation)
{
    container.startBundle("it.so");

    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(""));
}

TEST_P(InstallOfBadFile, GivenNewName_WhenStarted_ThenTheFrameworkHasNoNewBundle)
{
    const std::size_t before = host.context().GetBundles().size();

    container.startBundle("it.so");

    EXPECT_THAT(host.context().GetBundles(), SizeIs(before));
}

TEST_P(InstallOfBadFile, GivenFailedName_WhenStartedAgain_ThenTheInstallIsTriedAgain)
{
    container.startBundle("it.so");
    log.clear();

    container.startBundle("it.so");

    EXPECT_THAT(log.records(), SizeIs(2));
}

TEST_P(InstallOfBadFile, GivenFileRepairedSince_WhenStartedAgain_ThenItsLocationIsRecorded)
{
    container.startBundle("it.so");
    std::filesystem::remove(host.directory() / "it.so");
    host.add("alpha", "it.so");

    container.startBundle("it.so");

    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("it.so")));
}

INSTANTIATE_TEST_SUITE_P(
    EachKind, InstallOfBadFile,
    ::testing::Values(
        BadFile{"missing", [](Host&) {}},
        BadFile{"text", [](Host& host) { host.write("it.so", "This is no library.\n"); }},
        BadFile{"empty", [](Host& host) { host.write("it.so", ""); }},
        BadFile{"truncated", [](Host& host) { host.write("it.so", truncated(contentOf(testBundle("alpha")))); }},
        BadFile{"damaged", [](Host& host) { host.write("it.so", damaged(contentOf(testBundle("alpha")))); }}),
    [](const auto& info) { return info.param.kind; });

TEST_F(FailingInstall, GivenNameThatIsNoUtf8_WhenStarted_ThenTheCauseIsThatOfTheConversion)
{
    std::string cause;
    try {
        platform::toUtf16("bad\xff");
    } catch (const std::runtime_error& e) {
        cause = e.what();
    }

    container.startBundle("bad\xff");

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x8, "Unable to install bundle: "},
                                           LogRecord{0x200, "Unable to install bundle: , cause: " + cause}));
}

TEST_F(FailingInstall, GivenNameStartedBefore_WhenItsBundleAndFileAreGone_ThenTheRecordsQuoteTheRecordedLocation)
{
    container.startBundle(host.add("alpha"));
    const std::string location = host.locationOf("libalpha.so");
    host.bundleIn("libalpha.so").Uninstall();
    std::filesystem::remove(location);

    container.startBundle("libalpha.so");

    const std::string cause = installErrorOf("libalpha.so");
    EXPECT_THAT(log.records(),
                ElementsAre(LogRecord{0x8, "Unable to install bundle: " + location},
                            LogRecord{0x200, "Unable to install bundle: " + location + ", cause: " + cause}));
}

TEST_F(FailingInstall, GivenNameStartedBefore_WhenItsBundleAndFileAreGone_ThenTheRecordedLocationStays)
{
    container.startBundle(host.add("alpha"));
    host.bundleIn("libalpha.so").Uninstall();
    std::filesystem::remove(host.locationOf("libalpha.so"));

    container.startBundle("libalpha.so");

    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("libalpha.so")));
}

TEST_F(FailingInstall, GivenMaskWithout0x200_WhenInstallFails_ThenOnlyTheShortRecordIsWritten)
{
    us_container::diagnosticLog().setEnabledSeverities(~0x200U);

    container.startBundle("missing.so");

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x8, "Unable to install bundle: "}));
}

TEST_F(FailingInstall, GivenMaskWithout0x8_WhenInstallFails_ThenOnlyTheRecordWithTheCauseIsWritten)
{
    us_container::diagnosticLog().setEnabledSeverities(~0x8U);

    container.startBundle("missing.so");

    const std::string cause = installErrorOf("missing.so");
    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x200, "Unable to install bundle: , cause: " + cause}));
}

TEST_F(FailingInstall, GivenMaskZero_WhenInstallFails_ThenNothingIsLogged)
{
    us_container::diagnosticLog().setEnabledSeverities(0);

    container.startBundle("missing.so");

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(FailingInstall, GivenSinkThatThrows_WhenInstallFails_ThenItsExceptionLeavesTheLockFree)
{
    log.onRecord([](const LogRecord&) { throw std::runtime_error{"planned fault: sink"}; });

    EXPECT_THROW(container.startBundle("missing.so"), std::runtime_error);

    EXPECT_TRUE(lockIsFree(container));
    EXPECT_THAT(log.records(), SizeIs(1));
}

} // namespace
} // namespace ostrel::test
