#include "integration/filtering/StartBundlesFilteredFixture.h"
#include "support/Threads.h"

namespace ostrel::test {
namespace {

using cppmicroservices::Bundle;
using ostrel::us_container::MicroServicesContainer;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

/// Three files: one that starts, one with a fault, and one that comes after it.
class StartBundlesFilteredWithFault : public StartBundlesFiltered {
protected:
    void expectFirstAloneStarted()
    {
        EXPECT_TRUE(isActive("a.zip"));
        EXPECT_EQ(stateOf("c.zip"), Bundle::STATE_INSTALLED);
        EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("a.zip")));
    }

    std::string first = addComponent("a", "first");
    std::string third = addComponent("c", "third");
};

TEST_F(StartBundlesFilteredWithFault, GivenActivatorThatThrows_WhenStarted_ThenTheFrameworksErrorComesThrough)
{
    host.add("start_throws", "b.so");

    try {
        container.startBundles(nothingAsked);
        FAIL() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(), HasSubstr("planned fault: start_throws"));
    }
}

TEST_F(StartBundlesFilteredWithFault, GivenActivatorThatThrows_WhenItThrew_ThenTheFirstAloneIsStarted)
{
    host.add("start_throws", "b.so");

    EXPECT_THROW(container.startBundles(nothingAsked), std::runtime_error);

    expectFirstAloneStarted();
}

TEST_F(StartBundlesFilteredWithFault, GivenActivatorThatThrows_WhenItThrew_ThenTheFailedStartIsTheLastRecord)
{
    host.add("start_throws", "b.so");
    const std::string name = "component.start_throws";

    EXPECT_THROW(container.startBundles(nothingAsked), std::runtime_error);

    EXPECT_THAT(log.records(),
                ElementsAre(emptyMatches("first"), starting("first"), emptyMatches(name), starting(name)));
}

TEST_F(StartBundlesFilteredWithFault, GivenActivatorThatThrows_WhenItThrew_ThenTheLockIsFree)
{
    host.add("start_throws", "b.so");

    EXPECT_THROW(container.startBundles(nothingAsked), std::runtime_error);

    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(StartBundlesFilteredWithFault, GivenActivatorThatThrows_WhenTheBundleIsRefused_ThenNothingIsThrown)
{
    host.add("start_throws", "b.so");

    EXPECT_NO_THROW(container.startBundles(dayRequired));
}

TEST_F(StartBundlesFilteredWithFault, GivenNoComponentName_WhenStarted_ThenTheFrameworksErrorComesThrough)
{
    host.add("no_component_name", "b.so");

    EXPECT_THROW(container.startBundles(nothingAsked), std::exception);
}

TEST_F(StartBundlesFilteredWithFault, GivenNoComponentName_WhenItThrew_ThenTheFirstAloneIsStarted)
{
    host.add("no_component_name", "b.so");

    EXPECT_THROW(container.startBundles(nothingAsked), std::exception);

    expectFirstAloneStarted();
    EXPECT_EQ(stateOf("b.so"), Bundle::STATE_INSTALLED);
}

TEST_F(StartBundlesFilteredWithFault, GivenNoComponentName_WhenItThrew_ThenItLeavesNoRecord)
{
    host.add("no_component_name", "b.so");

    EXPECT_THROW(container.startBundles(nothingAsked), std::exception);

    EXPECT_THAT(log.records(), ElementsAre(emptyMatches("first"), starting("first")));
}

TEST_F(StartBundlesFilteredWithFault, GivenNoComponentName_WhenItThrew_ThenTheLockIsFree)
{
    host.add("no_component_name", "b.so");

    EXPECT_THROW(container.startBundles(nothingAsked), std::exception);

    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(StartBundlesFilteredWithFault, GivenComponentNameUnderAKeyWithDots_WhenStarted_ThenItIsNotFound)
{
    addArchive(host, "b.zip", {{"b", R"({"bundle.symbolic_name": "b", "zq.component.name": "second"})"}});

    EXPECT_THROW(container.startBundles(nothingAsked), std::out_of_range);

    expectFirstAloneStarted();
}

TEST_F(StartBundlesFilteredWithFault, GivenMapWithoutTheName_WhenStarted_ThenItIsNotFound)
{
    addArchive(host, "b.zip", {bundleWith("b", R"({"component": {}})")});

    EXPECT_THROW(container.startBundles(nothingAsked), std::out_of_range);

    expectFirstAloneStarted();
}

TEST_F(StartBundlesFilteredWithFault, GivenTextInPlaceOfTheMap_WhenStarted_ThenTheFrameworksErrorComesThrough)
{
    addArchive(host, "b.zip", {bundleWith("b", R"("text")")});

    EXPECT_THROW(container.startBundles(nothingAsked), std::invalid_argument);

    expectFirstAloneStarted();
}

TEST_F(StartBundlesFilteredWithFault, GivenFileThatCannotBeInstalled_WhenStarted_ThenNothingIsStarted)
{
    host.write("d.so", "no bundle");

    EXPECT_THROW(container.startBundles(nothingAsked), std::runtime_error);

    EXPECT_EQ(stateOf("a.zip"), Bundle::STATE_INSTALLED);
    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StartBundlesFilteredWithFault, GivenFileThatCannotBeInstalled_WhenItThrew_ThenTheLockIsFree)
{
    host.write("d.so", "no bundle");

    EXPECT_THROW(container.startBundles(nothingAsked), std::runtime_error);

    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(StartBundlesFiltered, GivenNoDirectory_WhenStarted_ThenAnErrorIsThrownAndTheLockIsFree)
{
    MicroServicesContainer lost{host.context(),
                                ostrel::platform::Utf16Path{host.directory().u16string() + u"/missing"}};

    EXPECT_THROW(lost.startBundles(nothingAsked), std::runtime_error);

    EXPECT_TRUE(lockIsFree(lost));
}

TEST_F(StartBundlesFiltered, GivenFrameworkStopped_WhenStarted_ThenItsErrorComesThroughAndTheLockIsFree)
{
    addComponent("alpha", "first");
    host.stop();

    EXPECT_THROW(container.startBundles(nothingAsked), std::runtime_error);

    EXPECT_TRUE(lockIsFree(container));
    EXPECT_THAT(log.records(), IsEmpty());
}

} // namespace
} // namespace ostrel::test
