#include "support/ContainerFixture.h"

#include <gmock/gmock.h>

#include <cstddef>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::ThrowsMessage;
using ::testing::UnorderedElementsAre;

class StartBundle : public ContainerFixture {};

TEST_F(StartBundle, GivenEmptyName_WhenStarted_ThenNothingIsRecorded)
{
    host.add("alpha");

    container.startBundle("");

    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
}

TEST_F(StartBundle, GivenEmptyName_WhenStarted_ThenNothingIsStarted)
{
    host.add("alpha");

    container.startBundle("");

    EXPECT_THAT(script.events(), IsEmpty());
}

TEST_F(StartBundle, GivenEmptyName_WhenStarted_ThenNothingIsLogged)
{
    container.startBundle("");

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StartBundle, GivenFileOfThatName_WhenStarted_ThenItsBundleIsActive)
{
    container.startBundle(host.add("alpha"));

    EXPECT_EQ(stateOf("libalpha.so"), active);
}

TEST_F(StartBundle, GivenFileOfThatName_WhenStarted_ThenItsLocationIsRecorded)
{
    container.startBundle(host.add("alpha"));

    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("libalpha.so")));
}

TEST_F(StartBundle, GivenFileOfThatName_WhenStarted_ThenNothingIsLogged)
{
    container.startBundle(host.add("alpha"));

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StartBundle, GivenOtherFilesBeside_WhenStarted_ThenTheyAreNotInstalled)
{
    host.add("beta");

    container.startBundle(host.add("alpha"));

    EXPECT_EQ(stateOf("libbeta.so"), uninstalled);
}

TEST_F(StartBundle, GivenFileNameWithoutPrefixOrSuffix_WhenStarted_ThenTheNameIsUsedUnchanged)
{
    container.startBundle(host.add("alpha", "component.alpha"));

    EXPECT_EQ(stateOf("component.alpha"), active);
}

TEST_F(StartBundle, GivenNameWithoutTheSuffixOfItsFile_WhenStarted_ThenTheFileIsNotFound)
{
    host.add("alpha");

    container.startBundle("libalpha");

    EXPECT_THAT(script.events(), IsEmpty());
}

TEST_F(StartBundle, GivenNameInUtf8_WhenStarted_ThenItsFileIsFound)
{
    container.startBundle(host.add("alpha", "gr\u00f6\u00dfe-\u03b1-\U0001F600.so"));

    EXPECT_EQ(stateOf("gr\u00f6\u00dfe-\u03b1-\U0001F600.so"), active);
}

TEST_F(StartBundle, GivenNameWithADirectory_WhenStarted_ThenItIsJoinedUnchanged)
{
    std::filesystem::create_directory(host.directory() / "more");

    container.startBundle(host.add("alpha", "more/libalpha.so"));

    EXPECT_EQ(stateOf("more/libalpha.so"), active);
}

TEST_F(StartBundle, GivenStartedName_WhenStartedAgain_ThenTheActiveBundleStaysActive)
{
    container.startBundle(host.add("alpha"));

    container.startBundle("libalpha.so");

    EXPECT_THAT(script.events(), ElementsAre("start alpha"));
    EXPECT_EQ(stateOf("libalpha.so"), active);
}

TEST_F(StartBundle, GivenStartedName_WhenStartedAgain_ThenItsLocationStays)
{
    container.startBundle(host.add("alpha"));

    container.startBundle("libalpha.so");

    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("libalpha.so")));
}

TEST_F(StartBundle, GivenStartedNameWhoseBundleWasStoppedElsewhere_WhenStartedAgain_ThenTheSameBundleIsActive)
{
    container.startBundle(host.add("alpha"));
    const long id = host.bundleIn("libalpha.so").GetBundleId();
    host.bundleIn("libalpha.so").Stop();

    container.startBundle("libalpha.so");

    EXPECT_EQ(stateOf("libalpha.so"), active);
    EXPECT_EQ(host.bundleIn("libalpha.so").GetBundleId(), id);
}

TEST_F(StartBundle, GivenStartedNameWhoseFileIsGone_WhenStartedAgain_ThenNothingIsInstalledAnew)
{
    container.startBundle(host.add("alpha"));
    std::filesystem::remove(host.directory() / "libalpha.so");

    container.startBundle("libalpha.so");

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StartBundle, GivenBundleInstalledByTheHost_WhenStarted_ThenItIsNotInstalledASecondTime)
{
    host.context().InstallBundles(host.locationOf(host.add("alpha")));
    const std::size_t before = host.context().GetBundles().size();

    container.startBundle("libalpha.so");

    EXPECT_EQ(host.context().GetBundles().size(), before);
    EXPECT_EQ(stateOf("libalpha.so"), active);
}

TEST_F(StartBundle, GivenTwoBundlesInTheFile_WhenStarted_ThenBothAreStartedInOrder)
{
    container.startBundle(host.add("two_bundles"));

    EXPECT_THAT(script.events(), ElementsAre("start two_bundles_first", "start two_bundles_second"));
}

TEST_F(StartBundle, GivenTwoBundlesInTheFile_WhenStarted_ThenTheNameIsRecordedOnce)
{
    container.startBundle(host.add("two_bundles"));

    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("libtwo_bundles.so")));
}

TEST_F(StartBundle, GivenNameOfADirectory_WhenStarted_ThenAllItsBundlesAreStartedInOrder)
{
    host.add("beta");
    host.add("alpha");

    container.startBundle(".");

    EXPECT_THAT(script.events(), ElementsAre("start alpha", "start beta"));
}

TEST_F(StartBundle, GivenNameOfADirectory_WhenStarted_ThenTheRecordKeepsTheLocationOfTheLastBundle)
{
    host.add("beta");
    host.add("alpha");

    container.startBundle(".");

    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("libbeta.so")));
}

TEST_F(StartBundle, GivenNameOfADirectory_WhenStopped_ThenOnlyTheBundleAtTheRecordedLocationIsStopped)
{
    host.add("beta");
    host.add("alpha");
    container.startBundle(".");

    container.stopBundle(".");

    EXPECT_EQ(stateOf("libalpha.so"), active);
    EXPECT_EQ(stateOf("libbeta.so"), resolved);
}

/// A fault bundle, and a part of what the framework says when it starts.
struct FailingStart {
    std::string bundle;
    std::string says;
    friend std::ostream& operator<<(std::ostream& stream, const FailingStart& start) { return stream << start.bundle; }
};

class StartOfFaultBundle : public ContainerFixture, public ::testing::WithParamInterface<FailingStart> {};

TEST_P(StartOfFaultBundle, GivenNewName_WhenStarted_ThenTheExceptionReachesTheCaller)
{
    host.add(GetParam().bundle, "it.so");

    EXPECT_THAT([&] { container.startBundle("it.so"); }, ThrowsMessage<std::exception>(HasSubstr(GetParam().says)));
}

TEST_P(StartOfFaultBundle, GivenNewName_WhenStarted_ThenTheNameIsRecordedWithAnEmptyLocation)
{
    host.add(GetParam().bundle, "it.so");

    EXPECT_ANY_THROW(container.startBundle("it.so"));

    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(""));
}

TEST_P(StartOfFaultBundle, GivenNewName_WhenStarted_ThenTheLockIsFree)
{
    host.add(GetParam().bundle, "it.so");

    EXPECT_ANY_THROW(container.startBundle("it.so"));

    EXPECT_TRUE(lockIsFree(container));
}

TEST_P(StartOfFaultBundle, GivenNewName_WhenStarted_ThenNothingIsLogged)
{
    host.add(GetParam().bundle, "it.so");

    EXPECT_ANY_THROW(container.startBundle("it.so"));

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_P(StartOfFaultBundle, GivenFailedName_WhenStartedAgain_ThenTheSameBundleIsTriedAgain)
{
    host.add(GetParam().bundle, "it.so");
    EXPECT_ANY_THROW(container.startBundle("it.so"));
    const long id = host.bundleIn("it.so").GetBundleId();

    EXPECT_ANY_THROW(container.startBundle("it.so"));

    EXPECT_EQ(host.bundleIn("it.so").GetBundleId(), id);
}

INSTANTIATE_TEST_SUITE_P(EachFault, StartOfFaultBundle,
                         ::testing::Values(FailingStart{"start_throws", "planned fault: start_throws"},
                                           FailingStart{"start_throws_int", "unknown"},
                                           FailingStart{"constructor_throws", "planned fault: constructor_throws"},
                                           FailingStart{"missing_symbol", "ostrelTestNobodyDefinesThis"}),
                         [](const auto& info) { return info.param.bundle; });

TEST_F(StartBundle, GivenFirstOfTwoBundlesThrows_WhenStarted_ThenTheSecondIsNotStarted)
{
    script.on("start two_bundles_first", [](auto) { throw std::runtime_error{"planned fault"}; });

    EXPECT_ANY_THROW(container.startBundle(host.add("two_bundles")));

    EXPECT_THAT(script.events(), ElementsAre("start two_bundles_first"));
}

TEST_F(StartBundle, GivenSecondOfTwoBundlesThrows_WhenStarted_ThenTheLocationOfTheFirstIsRecorded)
{
    script.on("start two_bundles_second", [](auto) { throw std::runtime_error{"planned fault"}; });

    EXPECT_ANY_THROW(container.startBundle(host.add("two_bundles")));

    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("libtwo_bundles.so")));
}

TEST_F(StartBundle, GivenStartedNameWhoseBundleFailsNow_WhenStartedAgain_ThenItsLocationStays)
{
    container.startBundle(host.add("alpha"));
    host.bundleIn("libalpha.so").Stop();
    script.on("start alpha", [](auto) { throw std::runtime_error{"planned fault"}; });

    EXPECT_ANY_THROW(container.startBundle("libalpha.so"));

    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("libalpha.so")));
}

TEST_F(StartBundle, GivenActivatorThatStartsAnother_WhenStarted_ThenBothAreRecorded)
{
    host.add("beta");
    script.on("start alpha", [this](auto) { container.startBundle("libbeta.so"); });

    container.startBundle(host.add("alpha"));

    EXPECT_THAT(container.listManuallyLoadedBundles(),
                UnorderedElementsAre(host.locationOf("libalpha.so"), host.locationOf("libbeta.so")));
}

TEST_F(StartBundle, GivenActivatorThatAddsManyNames_WhenStarted_ThenItsOwnLocationIsRecordedAllTheSame)
{
    script.on("start alpha", [this](auto) {
        for (int i = 0; i < 1000; ++i) {
            container.stopBundle("unknown " + std::to_string(i));
        }
    });

    container.startBundle(host.add("alpha"));

    EXPECT_THAT(container.listManuallyLoadedBundles(), ::testing::Contains(host.locationOf("libalpha.so")));
    EXPECT_EQ(container.listManuallyLoadedBundles().size(), 1001U);
}

TEST_F(StartBundle, GivenActivatorThatRuns_WhenAnotherThreadUsesTheContainer_ThenItWaits)
{
    bool otherWaited = false;
    std::unique_ptr<OtherThread> other;
    script.on("start alpha", [&](auto) {
        other = std::make_unique<OtherThread>([this] { container.listManuallyLoadedBundles(); });
        otherWaited = !other->finishesWithin(glance);
    });

    container.startBundle(host.add("alpha"));

    EXPECT_TRUE(otherWaited);
    EXPECT_TRUE(other->finishesWithin());
}

TEST_F(StartBundle, GivenInvalidContext_WhenStarted_ThenTheFrameworksErrorReachesTheCaller)
{
    MicroServicesContainer broken{cppmicroservices::BundleContext{}, host.bundleDirectory()};

    EXPECT_THROW(broken.startBundle("libalpha.so"), std::runtime_error);

    EXPECT_THAT(broken.listManuallyLoadedBundles(), ElementsAre(""));
    EXPECT_TRUE(lockIsFree(broken));
}

} // namespace
} // namespace ostrel::test
