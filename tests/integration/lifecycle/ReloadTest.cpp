#include "support/ContainerFixture.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;

using Names = std::vector<std::string>;

class Reload : public ContainerFixture {};

TEST_F(Reload, GivenFreshContainer_WhenReloaded_ThenNothingHappens)
{
    host.add("alpha");

    container.reload();

    EXPECT_THAT(script.events(), IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(Reload, GivenBundlesAndServices_WhenReloaded_ThenAllGoAndComeBackInOrder)
{
    container.startBundle(host.add("two_bundles"));
    container.loadService("(test.word=two_bundles_second)");
    container.loadService("(test.word=two_bundles_first)");
    script.clear();

    container.reload();

    EXPECT_THAT(script.events(), ElementsAre("release two_bundles_first", "release two_bundles_second", //
                                             "stop two_bundles_first", "stop two_bundles_second",       //
                                             "start two_bundles_first", "start two_bundles_second",     //
                                             "get two_bundles_first", "get two_bundles_second"));
}

TEST_F(Reload, GivenSeveralBundles_WhenReloaded_ThenTheyStopAndStartInTheOrderOfTheRecords)
{
    container.startBundles(Names{host.add("alpha"), host.add("beta"), host.add("gamma")});
    Names expected;
    const Names locations = container.listManuallyLoadedBundles();
    for (const std::string step : {"stop ", "start "}) {
        for (const std::string& location : locations) {
            expected.push_back(step + host.context().GetBundles(location).front().GetSymbolicName());
        }
    }
    script.clear();

    container.reload();

    EXPECT_THAT(script.events(), ElementsAreArray(expected));
}

TEST_F(Reload, GivenBundlesAndServices_WhenReloaded_ThenTheSameAreRecorded)
{
    container.startBundles(Names{host.add("alpha"), host.add("beta")});
    container.loadService("(test.word=alpha)");

    container.reload();

    EXPECT_THAT(container.listManuallyLoadedBundles(),
                UnorderedElementsAre(host.locationOf("libalpha.so"), host.locationOf("libbeta.so")));
    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(1));
}

TEST_F(Reload, GivenBundlesAndServices_WhenReloaded_ThenOnlyTheLoadsAreLogged)
{
    container.startBundles(Names{host.add("alpha"), host.add("beta")});
    container.loadService("(test.word=beta)");
    container.loadService("(test.word=alpha)");
    log.clear();

    container.reload();

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x10, "Loaded services with name: '(test.word=alpha)'"},
                                           LogRecord{0x10, "Loaded services with name: '(test.word=beta)'"}));
}

TEST_F(Reload, GivenBundleUninstalledMeanwhile_WhenReloaded_ThenItIsInstalledAnew)
{
    container.startBundle(host.add("alpha"));
    const long id = host.bundleIn("libalpha.so").GetBundleId();
    script.on("stop alpha", [](auto) {});
    host.bundleIn("libalpha.so").Uninstall();

    container.reload();

    EXPECT_EQ(stateOf("libalpha.so"), active);
    EXPECT_NE(host.bundleIn("libalpha.so").GetBundleId(), id);
}

TEST_F(Reload, GivenFileReplacedByAnotherBundle_WhenReloaded_ThenTheOneInstalledComesBack)
{
    container.startBundle(host.add("alpha"));
    std::filesystem::rename(host.locationOf("libalpha.so"), host.locationOf("moved.so"));

    container.reload();

    // The install step looks into the directory, where the file is no longer.
    const std::string cause = installErrorOf("libalpha.so");
    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x8, "Unable to install bundle: "},
                                           LogRecord{0x200, "Unable to install bundle: , cause: " + cause}));
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(""));
}

TEST_F(Reload, GivenNameRecordedByAStop_WhenReloaded_ThenItsBundleIsStarted)
{
    host.add("alpha");
    container.stopBundle("libalpha.so");

    container.reload();

    EXPECT_EQ(stateOf("libalpha.so"), active);
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("libalpha.so")));
}

TEST_F(Reload, GivenComponentNameUnlikeTheFileName_WhenReloaded_ThenTheInstallFailsAndIsLogged)
{
    host.add("alpha");
    container.startAllBundles();

    container.reload();

    const std::string cause = installErrorOf("component.alpha");
    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x8, "Unable to install bundle: "},
                                           LogRecord{0x200, "Unable to install bundle: , cause: " + cause}));
    EXPECT_EQ(stateOf("libalpha.so"), resolved);
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(""));
}

TEST_F(Reload, GivenComponentNameThatIsTheFileName_WhenReloaded_ThenTheBundleComesBack)
{
    host.add("alpha", "component.alpha");
    container.startAllBundles();
    script.clear();

    container.reload();

    EXPECT_THAT(script.events(), ElementsAre("stop alpha", "start alpha"));
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(Reload, GivenBundleWhoseStopThrows_WhenReloaded_ThenItComesBack)
{
    container.startBundle(host.add("stop_throws"));

    container.reload();

    EXPECT_EQ(stateOf("libstop_throws.so"), active);
    EXPECT_THAT(log.records(), SizeIs(1));
}

TEST_F(Reload, GivenServiceWhoseBundleDoesNotComeBack_WhenReloaded_ThenItIsSilentlyGone)
{
    host.add("alpha");
    container.startAllBundles();
    container.loadService("(test.word=alpha)");
    log.clear();

    container.reload();

    EXPECT_THAT(container.listManuallyLoadedServices(), IsEmpty());
    EXPECT_THAT(log.records(), SizeIs(2)); // those of the failed install
}

class ReloadWithFailingStart : public ContainerFixture {
protected:
    void SetUp() override
    {
        container.startBundles(Names{host.add("alpha"), host.add("beta")});
        container.loadService("(test.word=alpha)");
        const auto fail = [](auto) { throw std::runtime_error{"planned fault: start"}; };
        script.on("start alpha", fail);
        script.on("start beta", fail);
        script.clear();
        log.clear();
        EXPECT_THROW(container.reload(), std::runtime_error);
    }
};

TEST_F(ReloadWithFailingStart, GivenTwoBundlesAndAService_WhenReloaded_ThenNothingAfterTheFirstStartIsVisited)
{
    const Names events = script.events();
    EXPECT_EQ(std::count_if(events.begin(), events.end(), [](const auto& e) { return e.rfind("start ", 0) == 0; }), 1);
    EXPECT_EQ(std::count(events.begin(), events.end(), "get alpha"), 0);
}

TEST_F(ReloadWithFailingStart, GivenTwoBundlesAndAService_WhenReloaded_ThenOnlyTheFirstNameIsRecorded)
{
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(""));
    EXPECT_THAT(container.listManuallyLoadedServices(), IsEmpty());
}

TEST_F(ReloadWithFailingStart, GivenTwoBundlesAndAService_WhenReloaded_ThenTheLockIsFree)
{
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(Reload, GivenUnloadThatThrows_WhenReloaded_ThenNothingIsStarted)
{
    container.startBundle(host.add("stop_throws"));
    log.onRecord([](const LogRecord&) { throw std::runtime_error{"planned fault: sink"}; });

    EXPECT_THROW(container.reload(), std::runtime_error);

    EXPECT_EQ(stateOf("libstop_throws.so"), resolved);
    EXPECT_TRUE(lockIsFree(container));
    log.onRecord(nullptr);
}

TEST_F(Reload, GivenFactoryThatThrowsNoException_WhenReloaded_ThenItReachesTheCallerAndTheRestIsNotLoaded)
{
    container.startBundles(Names{host.add("alpha"), host.add("beta")});
    container.loadServices(Names{"(test.word=alpha)", "(test.word=beta)"});
    script.on("get alpha", [](auto) { throw 42; });
    script.clear();

    EXPECT_THROW(container.reload(), int);

    EXPECT_THAT(script.events(), ::testing::Not(::testing::Contains("get beta")));
    EXPECT_TRUE(lockIsFree(container));
    EXPECT_EQ(stateOf("libalpha.so"), active);
}

TEST_F(Reload, GivenBundlesThatStart_WhenAnotherThreadUsesTheContainer_ThenItWaits)
{
    container.startBundle(host.add("alpha"));
    bool otherWaited = false;
    std::unique_ptr<OtherThread> other;
    script.on("start alpha", [&](auto) {
        other = std::make_unique<OtherThread>([this] { container.listManuallyLoadedBundles(); });
        otherWaited = !other->finishesWithin(glance);
    });

    container.reload();

    EXPECT_TRUE(otherWaited);
    EXPECT_TRUE(other->finishesWithin());
}

TEST_F(Reload, GivenBundleStartedWhileItWaits_WhenReloaded_ThenThatComesBackToo)
{
    startBothDuring([this] { container.reload(); });

    EXPECT_EQ(stateOf("libalpha.so"), active);
    EXPECT_EQ(stateOf("libbeta.so"), active);
}

TEST_F(Reload, GivenServiceThatIsReleased_WhenAnotherThreadUsesTheContainer_ThenItNeedNotWait)
{
    container.startBundle(host.add("alpha"));
    container.loadService("(test.word=alpha)");
    bool wasFree = false;
    script.on("release alpha", [&](auto) { wasFree = lockIsFree(container); });

    container.reload();

    script.on("release alpha", nullptr);
    EXPECT_TRUE(wasFree);
}

} // namespace
} // namespace ostrel::test
