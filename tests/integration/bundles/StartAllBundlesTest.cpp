#include "support/ContainerFixture.h"

#include <gmock/gmock.h>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::ThrowsMessage;
using ::testing::UnorderedElementsAre;

class StartAllBundles : public ContainerFixture {};

TEST_F(StartAllBundles, GivenEmptyDirectory_WhenAllStarted_ThenNothingIsRecorded)
{
    container.startAllBundles();

    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
}

TEST_F(StartAllBundles, GivenSomeBundles_WhenAllStarted_ThenEachIsStartedInOrderOfFiles)
{
    host.add("alpha", "2.so");
    host.add("beta", "1.so");
    host.add("gamma", "3.so");

    container.startAllBundles();

    EXPECT_THAT(script.events(), ElementsAre("start beta", "start alpha", "start gamma"));
}

TEST_F(StartAllBundles, GivenSomeBundles_WhenAllStarted_ThenTheirLocationsAreRecorded)
{
    host.add("alpha");
    host.add("beta");

    container.startAllBundles();

    EXPECT_THAT(container.listManuallyLoadedBundles(),
                UnorderedElementsAre(host.locationOf("libalpha.so"), host.locationOf("libbeta.so")));
}

TEST_F(StartAllBundles, GivenSomeBundles_WhenAllStarted_ThenNothingIsLogged)
{
    host.add("alpha");
    host.add("beta");

    container.startAllBundles();

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StartAllBundles, GivenStartedBundle_WhenItsComponentNameIsStopped_ThenTheBundleStops)
{
    host.add("alpha");
    container.startAllBundles();

    container.stopBundle("component.alpha");

    EXPECT_EQ(stateOf("libalpha.so"), resolved);
}

TEST_F(StartAllBundles, GivenStartedBundle_WhenItsFileNameIsStopped_ThenTheBundleStaysActive)
{
    host.add("alpha");
    container.startAllBundles();

    container.stopBundle("libalpha.so");

    EXPECT_EQ(stateOf("libalpha.so"), active);
}

TEST_F(StartAllBundles, GivenTwoBundlesInOneFile_WhenAllStarted_ThenEachIsRecordedUnderItsOwnName)
{
    host.add("two_bundles");

    container.startAllBundles();

    const std::string location = host.locationOf("libtwo_bundles.so");
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(location, location));
}

TEST_F(StartAllBundles, GivenTwoBundlesWithOneComponentName_WhenAllStarted_ThenTheLastIsRecorded)
{
    host.add("alpha");
    host.add("alpha_twin");

    container.startAllBundles();

    EXPECT_THAT(script.events(), ElementsAre("start alpha", "start alpha_twin"));
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("libalpha_twin.so")));
}

TEST_F(StartAllBundles, GivenNumberAsComponentName_WhenAllStarted_ThenItsTextIsTheName)
{
    host.add("number_as_component_name");
    container.startAllBundles();

    container.stopBundle("7");

    EXPECT_EQ(stateOf("libnumber_as_component_name.so"), resolved);
}

TEST_F(StartAllBundles, GivenActiveBundle_WhenAllStarted_ThenItIsRecordedToo)
{
    container.startBundle(host.add("alpha"));

    container.startAllBundles();

    EXPECT_THAT(container.listManuallyLoadedBundles(),
                ElementsAre(host.locationOf("libalpha.so"), host.locationOf("libalpha.so")));
}

class StartAllBundlesWithoutComponentName : public ContainerFixture {
protected:
    void SetUp() override
    {
        host.add("alpha", "1.so");
        host.add("no_component_name", "2.so");
        host.add("beta", "3.so");
        EXPECT_THROW(container.startAllBundles(), std::out_of_range);
    }
};

TEST_F(StartAllBundlesWithoutComponentName, GivenOneInTheMiddle_WhenAllStarted_ThenItIsStartedBeforeItsNameIsRead)
{
    EXPECT_THAT(script.events(), ElementsAre("start alpha", "start no_component_name"));
}

TEST_F(StartAllBundlesWithoutComponentName, GivenOneInTheMiddle_WhenAllStarted_ThenTheOneBeforeStaysRecorded)
{
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("1.so")));
    EXPECT_EQ(stateOf("1.so"), active);
}

TEST_F(StartAllBundlesWithoutComponentName, GivenOneInTheMiddle_WhenAllStarted_ThenTheOneAfterStaysInstalled)
{
    EXPECT_EQ(stateOf("3.so"), installed);
}

TEST_F(StartAllBundlesWithoutComponentName, GivenOneInTheMiddle_WhenAllStarted_ThenTheLockIsFree)
{
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(StartAllBundlesWithoutComponentName, GivenOneInTheMiddle_WhenAllStarted_ThenNothingIsLogged)
{
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StartAllBundles, GivenBundleWhoseStartThrows_WhenAllStarted_ThenTheOnesBeforeStayRecorded)
{
    host.add("alpha", "1.so");
    host.add("start_throws", "2.so");
    host.add("beta", "3.so");

    EXPECT_THAT([&] { container.startAllBundles(); },
                ThrowsMessage<std::runtime_error>(HasSubstr("planned fault: start_throws")));

    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("1.so")));
    EXPECT_THAT(script.events(), ElementsAre("start alpha"));
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(StartAllBundles, GivenFileThatCannotBeInstalled_WhenAllStarted_ThenNothingIsStarted)
{
    host.add("alpha");
    host.write("zz.so", "This is no library.\n");

    EXPECT_THROW(container.startAllBundles(), std::runtime_error);

    EXPECT_THAT(script.events(), IsEmpty());
    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
}

TEST_F(StartAllBundles, GivenFileThatCannotBeInstalled_WhenAllStarted_ThenNothingIsLogged)
{
    host.write("zz.so", "This is no library.\n");

    EXPECT_THROW(container.startAllBundles(), std::runtime_error);

    EXPECT_THAT(log.records(), IsEmpty());
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(StartAllBundles, GivenActivatorThatUsesTheContainer_WhenAllStarted_ThenItSeesTheOnesBefore)
{
    host.add("alpha");
    host.add("beta");
    std::vector<std::string> seen;
    script.on("start beta", [&](auto) { seen = container.listManuallyLoadedBundles(); });

    container.startAllBundles();

    EXPECT_THAT(seen, ElementsAre(host.locationOf("libalpha.so")));
}

TEST_F(StartAllBundles, GivenActivatorThatRuns_WhenAnotherThreadUsesTheContainer_ThenItWaits)
{
    host.add("alpha");
    bool otherWaited = false;
    std::unique_ptr<OtherThread> other;
    script.on("start alpha", [&](auto) {
        other = std::make_unique<OtherThread>([this] { container.listManuallyLoadedBundles(); });
        otherWaited = !other->finishesWithin(glance);
    });

    container.startAllBundles();

    EXPECT_TRUE(otherWaited);
    EXPECT_TRUE(other->finishesWithin());
}

} // namespace
} // namespace ostrel::test
