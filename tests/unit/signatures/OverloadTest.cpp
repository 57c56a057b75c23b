// Which overload a call takes.
#include "support/ContainerFixture.h"

#include <gmock/gmock.h>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using us_container::FilterMap;

using Names = std::vector<std::string>;

/// Each bundle start leaves its trace: a list records its names, a filtered start the component names in the directory.
class Overload : public ContainerFixture {
protected:
    Overload() { host.add("alpha"); }

    Names recorded() const { return container.listManuallyLoadedBundles(); }
    const std::string location = host.locationOf("libalpha.so");
};

TEST_F(Overload, GivenNamedList_WhenBundlesAreStarted_ThenItIsTakenAsNames)
{
    const Names names{"libnone.so"};

    container.startBundles(names);

    EXPECT_THAT(recorded(), ElementsAre(""));
}

TEST_F(Overload, GivenNamedConditions_WhenBundlesAreStarted_ThenTheyAreTakenAsConditions)
{
    const FilterMap conditions{{"libnone.so", {"", false}}};

    container.startBundles(conditions);

    EXPECT_THAT(recorded(), ElementsAre(location));
}

TEST_F(Overload, GivenBracesAroundOneOrThreeNames_WhenBundlesAreStarted_ThenTheyAreTakenAsNames)
{
    container.startBundles({"libnone.so"});
    container.startBundles({"libnone.so", "libnone.so", "libnone.so"});

    EXPECT_THAT(recorded(), ElementsAre(""));
}

TEST_F(Overload, GivenBracesAroundTwoConditions_WhenBundlesAreStarted_ThenTheyAreTakenAsConditions)
{
    container.startBundles({{"mode", {"", false}}, {"language", {"", false}}});

    EXPECT_THAT(recorded(), ElementsAre(location));
}

TEST_F(Overload, GivenNamedList_WhenServicesAreLoaded_ThenItIsTakenAsNames)
{
    const Names names{"ostrel::test::ActivatorHooks"};

    container.loadServices(names);

    EXPECT_THAT(container.listManuallyLoadedServices(), ElementsAre("[ostrel::test::ActivatorHooks]"));
}

TEST_F(Overload, GivenNamedConditions_WhenServicesAreLoaded_ThenTheyAreTakenAsConditions)
{
    const FilterMap conditions{{"ostrel::test::ActivatorHooks", {"", false}}};

    container.loadServices(conditions);

    EXPECT_THAT(container.listManuallyLoadedServices(), IsEmpty());
}

TEST_F(Overload, GivenBracesAroundOneName_WhenServicesAreLoaded_ThenItIsTakenAsAName)
{
    container.loadServices({"ostrel::test::ActivatorHooks"});

    EXPECT_THAT(container.listManuallyLoadedServices(), ElementsAre("[ostrel::test::ActivatorHooks]"));
}

} // namespace
} // namespace ostrel::test
