// Two frameworks in one process, of which one ends. On CppMicroServices 3.8.4 the other one then no longer answers
// GetBundles() without a location; nothing that the container does on its ordinary way may need that.
#include "support/ContainerFixture.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class TwoFrameworks : public ContainerFixture {
protected:
    /// Starts another framework, with a bundle of its own, and stops it.
    void endAnother()
    {
        Host other;
        MicroServicesContainer ofOther{other.context(), other.bundleDirectory()};
        ofOther.startBundle(other.add("gamma"));
        ASSERT_EQ(other.bundleIn("libgamma.so").GetState(), active);
        ofOther.unload();
        other.stop();
    }
};

TEST_F(TwoFrameworks, GivenOneThatEnded_WhenABundleIsStarted_ThenItIsActiveAndRecorded)
{
    endAnother();

    container.startBundle(host.add("alpha"));

    EXPECT_EQ(stateOf("libalpha.so"), active);
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("libalpha.so")));
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(TwoFrameworks, GivenOneThatEnded_WhenBundlesAreStartedByNames_ThenAllAreActive)
{
    host.add("alpha");
    host.add("beta");
    endAnother();

    container.startBundles(std::vector<std::string>{"libalpha.so", "libbeta.so"});

    EXPECT_EQ(stateOf("libalpha.so"), active);
    EXPECT_EQ(stateOf("libbeta.so"), active);
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(TwoFrameworks, GivenOneThatEnded_WhenBundlesAreStartedByConditions_ThenAllAreActive)
{
    host.add("alpha");
    host.add("beta");
    endAnother();

    container.startBundles(us_container::FilterMap{});

    EXPECT_EQ(stateOf("libalpha.so"), active);
    EXPECT_EQ(stateOf("libbeta.so"), active);
}

TEST_F(TwoFrameworks, GivenBundlesStartedBeforeTheOtherEnded_WhenReloaded_ThenAllAreActiveAgain)
{
    container.startBundles(std::vector<std::string>{host.add("alpha"), host.add("beta")});
    endAnother();
    script.clear();

    container.reload();

    EXPECT_THAT(script.events(), UnorderedElementsAre("stop alpha", "stop beta", "start alpha", "start beta"));
    EXPECT_EQ(stateOf("libalpha.so"), active);
    EXPECT_EQ(stateOf("libbeta.so"), active);
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(TwoFrameworks, GivenTheOlderOneEnded_WhenABundleIsStartedInTheYounger_ThenItIsActive)
{
    Host younger;
    MicroServicesContainer inYounger{younger.context(), younger.bundleDirectory()};
    host.stop();

    inYounger.startBundle(younger.add("gamma"));

    EXPECT_EQ(younger.bundleIn("libgamma.so").GetState(), active);
    EXPECT_THAT(inYounger.listManuallyLoadedBundles(), ElementsAre(younger.locationOf("libgamma.so")));
}

} // namespace
} // namespace ostrel::test
