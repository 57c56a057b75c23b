#include "support/ContainerFixture.h"

#include <gmock/gmock.h>

#include <optional>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class TwoContainers : public ContainerFixture {
protected:
    std::optional<MicroServicesContainer> other{std::in_place, host.context(), host.bundleDirectory()};
};

TEST_F(TwoContainers, GivenBundleEach_WhenListed_ThenEachHasItsOwnRecords)
{
    container.startBundle(host.add("alpha"));
    other->startBundle(host.add("beta"));

    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("libalpha.so")));
    EXPECT_THAT(other->listManuallyLoadedBundles(), ElementsAre(host.locationOf("libbeta.so")));
}

TEST_F(TwoContainers, GivenBundleEach_WhenOneIsUnloaded_ThenTheOthersBundleStaysActive)
{
    container.startBundle(host.add("alpha"));
    other->startBundle(host.add("beta"));

    other->unload();

    EXPECT_EQ(stateOf("libalpha.so"), active);
    EXPECT_EQ(stateOf("libbeta.so"), resolved);
}

TEST_F(TwoContainers, GivenBundleEach_WhenOneIsDestroyed_ThenTheOthersBundleStaysActive)
{
    container.startBundle(host.add("alpha"));
    other->startBundle(host.add("beta"));

    other.reset();

    EXPECT_EQ(stateOf("libalpha.so"), active);
}

TEST_F(TwoContainers, GivenOneServiceHeldByBoth_WhenOneIsUnloaded_ThenTheOtherHoldsItStill)
{
    container.startBundle(host.add("alpha"));
    container.loadService("(test.word=alpha)");
    other->loadService("(test.word=alpha)");
    script.clear();

    other->unload();

    EXPECT_THAT(script.events(), IsEmpty());
    EXPECT_THAT(container.listManuallyLoadedServices(), ::testing::SizeIs(1));
}

TEST_F(TwoContainers, GivenOneBundleStartedByBoth_WhenBothAreUnloaded_ThenTheSecondFindsItStopped)
{
    container.startBundle(host.add("alpha"));
    other->startBundle("libalpha.so");

    other->unload();
    container.unload();

    EXPECT_THAT(script.events(), ElementsAre("start alpha", "stop alpha"));
    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(TwoContainers, GivenActivatorThatRunsForOne_WhenAnotherThreadUsesTheOther_ThenItNeedNotWait)
{
    bool otherWasFree = false;
    script.on("start alpha", [&](auto) { otherWasFree = lockIsFree(*other); });

    container.startBundle(host.add("alpha"));

    EXPECT_TRUE(otherWasFree);
}

} // namespace
} // namespace ostrel::test
