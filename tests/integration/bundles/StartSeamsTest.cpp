#include "container/DiagnosticLog.h"
#include "support/ContainerFixture.h"
#include "support/Seams.h"

#include <boost/log/attributes/value_extraction.hpp>
#include <boost/log/core/core.hpp>
#include <gmock/gmock.h>

namespace ostrel::test {
namespace {

using cppmicroservices::Bundle;
using platform::Utf16Path;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Counts how often it is asked what it is about.
class CountingException : public std::exception {
public:
    explicit CountingException(int& count) : m_count(&count) {}
    const char* what() const noexcept override
    {
        ++*m_count;
        return "planned fault: counted";
    }

private:
    int* m_count;
};

class StartBundleSeams : public ContainerFixture {
protected:
    /// Makes each installation fail with an exception that counts its what().
    void failInstallsCounting()
    {
        seams.installBundles = [this](const Utf16Path&) -> std::vector<Bundle> { throw CountingException{asked}; };
    }

    std::vector<std::string> calls;
    int asked = 0;
    Seams seams;
};

TEST_F(StartBundleSeams, GivenTwoBundlesInTheFile_WhenStarted_ThenTheProcessorIsYieldedOnceBeforeEachStart)
{
    seams.yield = [this] { calls.push_back("yield"); };
    seams.start = [this](Bundle&) { calls.push_back("start"); };

    container.startBundle(host.add("two_bundles"));

    EXPECT_THAT(calls, ElementsAre("yield", "start", "yield", "start"));
}

TEST_F(StartBundleSeams, GivenSomeBundles_WhenAllStarted_ThenTheProcessorIsNotYielded)
{
    host.add("two_bundles");
    seams.yield = [this] { calls.push_back("yield"); };
    seams.start = [this](Bundle&) { calls.push_back("start"); };

    container.startAllBundles();

    EXPECT_THAT(calls, ElementsAre("start", "start"));
}

TEST_F(StartBundleSeams, GivenStartedName_WhenStartedAgain_ThenStartIsCalledAgain)
{
    container.startBundle(host.add("alpha"));
    seams.installBundles = [this](const Utf16Path&) {
        calls.push_back("install");
        return std::vector<Bundle>{};
    };
    seams.start = [this](Bundle& bundle) { calls.push_back("start " + bundle.GetSymbolicName()); };

    container.startBundle("libalpha.so");

    EXPECT_THAT(calls, ElementsAre("start alpha"));
}

TEST_F(StartBundleSeams, GivenPathWithFlag_WhenStarted_ThenThePathAndTheFlagAreHandedOn)
{
    std::vector<Utf16Path> paths;
    seams.installBundles = [&](const Utf16Path& path) {
        paths.push_back(path);
        return std::vector<Bundle>{};
    };
    MicroServicesContainer flagged{host.context(), Utf16Path{u"C:\\bundles\\", true}};
    MicroServicesContainer unflagged{host.context(), Utf16Path{u"C:\\bundles\\", false}};

    flagged.startBundle("a b.so");
    unflagged.startBundle("a b.so");

    EXPECT_EQ(paths.at(0), (Utf16Path{u"C:\\bundles\\a b.so", true}));
    EXPECT_EQ(paths.at(1), (Utf16Path{u"C:\\bundles\\/a b.so", false}));
}

TEST_F(StartBundleSeams, GivenPathWithFlag_WhenAllStarted_ThenThePathAndTheFlagAreHandedOn)
{
    std::vector<Utf16Path> paths;
    seams.installBundles = [&](const Utf16Path& path) {
        paths.push_back(path);
        return std::vector<Bundle>{};
    };
    MicroServicesContainer flagged{host.context(), Utf16Path{u"C:\\bundles", true}};

    flagged.startAllBundles();

    EXPECT_THAT(paths, ElementsAre(Utf16Path{u"C:\\bundles", true}));
}

TEST_F(StartBundleSeams, GivenTwoStarts_WhenInstalled_ThenTheDirectoryIsNotChangedByTheFirst)
{
    std::vector<Utf16Path> paths;
    seams.installBundles = [&](const Utf16Path& path) {
        paths.push_back(path);
        return std::vector<Bundle>{};
    };
    MicroServicesContainer other{host.context(), Utf16Path{u"/bundles"}};

    other.startBundle("a.so");
    other.startBundle("b.so");

    EXPECT_THAT(paths, ElementsAre(Utf16Path{u"/bundles/a.so"}, Utf16Path{u"/bundles/b.so"}));
}

TEST_F(StartBundleSeams, GivenNewName_WhenStarted_ThenTheFrameworkIsAskedForTheEmptyLocation)
{
    seams.getBundles = [this](const std::string& location) {
        calls.push_back("'" + location + "'");
        return std::vector<Bundle>{};
    };

    container.startBundle("missing.so");

    EXPECT_THAT(calls, ElementsAre("''"));
}

TEST_F(StartBundleSeams, GivenInvalidHandlesAmongOthers_WhenStarted_ThenTheyAreSkippedSilently)
{
    Bundle real = host.context().InstallBundles(host.locationOf(host.add("alpha"))).front();
    seams.yield = [this] { calls.push_back("yield"); };
    seams.installBundles = [&](const Utf16Path&) { return std::vector<Bundle>{Bundle{}, real, Bundle{}}; };

    container.startBundle("some name");

    EXPECT_EQ(stateOf("libalpha.so"), active);
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("libalpha.so")));
    EXPECT_THAT(calls, ElementsAre("yield"));
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StartBundleSeams, GivenInvalidHandle_WhenAllStarted_ThenTheFrameworksErrorReachesTheCaller)
{
    seams.installBundles = [](const Utf16Path&) { return std::vector<Bundle>{Bundle{}}; };

    EXPECT_THROW(container.startAllBundles(), std::invalid_argument);
}

TEST_F(StartBundleSeams, GivenInstallThatThrowsNoException_WhenStarted_ThenOneRecordSaysSo)
{
    seams.installBundles = [](const Utf16Path&) -> std::vector<Bundle> { throw 42; };

    container.startBundle("it.so");

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x200, "Unable to install bundle: , unknown error"}));
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(""));
}

TEST_F(StartBundleSeams, GivenNameStartedBefore_WhenInstallThrowsNoException_ThenTheRecordQuotesTheLocation)
{
    container.startBundle(host.add("alpha"));
    host.bundleIn("libalpha.so").Uninstall();
    seams.installBundles = [](const Utf16Path&) -> std::vector<Bundle> { throw 42; };

    container.startBundle("libalpha.so");

    const std::string location = host.locationOf("libalpha.so");
    EXPECT_THAT(log.records(),
                ElementsAre(LogRecord{0x200, "Unable to install bundle: " + location + ", unknown error"}));
}

TEST_F(StartBundleSeams, GivenMaskWithout0x200_WhenInstallThrowsNoException_ThenNothingIsLogged)
{
    us_container::diagnosticLog().setEnabledSeverities(~0x200U);
    seams.installBundles = [](const Utf16Path&) -> std::vector<Bundle> { throw 42; };

    container.startBundle("it.so");

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StartBundleSeams, GivenAllSeverities_WhenInstallFails_ThenTheExceptionIsAskedOnce)
{
    failInstallsCounting();

    container.startBundle("it.so");

    EXPECT_EQ(asked, 1);
}

TEST_F(StartBundleSeams, GivenMaskWithout0x200_WhenInstallFails_ThenTheExceptionIsNotAsked)
{
    us_container::diagnosticLog().setEnabledSeverities(~0x200U);
    failInstallsCounting();

    container.startBundle("it.so");

    EXPECT_EQ(asked, 0);
    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x8, "Unable to install bundle: "}));
}

TEST_F(StartBundleSeams, GivenDisabledCore_WhenInstallFails_ThenTheExceptionIsNotAsked)
{
    boost::log::core::get()->set_logging_enabled(false);
    failInstallsCounting();

    container.startBundle("it.so");

    EXPECT_EQ(asked, 0);
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StartBundleSeams, GivenCoreFilterThatRejects0x200_WhenInstallFails_ThenTheExceptionIsNotAsked)
{
    boost::log::core::get()->set_filter([](const boost::log::attribute_value_set& attributes) {
        return boost::log::extract_or_default<std::uint32_t>("Severity", attributes, 0U) != 0x200;
    });
    failInstallsCounting();

    container.startBundle("it.so");

    EXPECT_EQ(asked, 0);
    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x8, "Unable to install bundle: "}));
}

TEST_F(StartBundleSeams, GivenLookupThatThrows_WhenStarted_ThenItsExceptionLeavesTheLockFree)
{
    seams.getBundles = [](const std::string&) -> std::vector<Bundle> { throw std::runtime_error{"planned fault"}; };

    EXPECT_THROW(container.startBundle("it.so"), std::runtime_error);

    EXPECT_TRUE(lockIsFree(container));
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(""));
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StartBundleSeams, GivenLocationThatThrows_WhenStarted_ThenItsExceptionLeavesTheLockFree)
{
    host.add("alpha");
    seams.start = [this](Bundle& bundle) {
        reallyStart(bundle);
        seams.getLocation = [](const Bundle&) -> std::string { throw std::runtime_error{"planned fault"}; };
    };

    EXPECT_THROW(container.startBundle("libalpha.so"), std::runtime_error);

    EXPECT_TRUE(lockIsFree(container));
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(""));
}

TEST_F(StartBundleSeams, GivenStartThatThrowsNoException_WhenStarted_ThenItReachesTheCallerWithTheLockFree)
{
    host.add("alpha");
    seams.start = [](Bundle&) { throw 42; };

    EXPECT_THROW(container.startBundle("libalpha.so"), int);

    EXPECT_TRUE(lockIsFree(container));
}

} // namespace
} // namespace ostrel::test
