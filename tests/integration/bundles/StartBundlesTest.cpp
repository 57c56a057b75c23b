#include "container/DiagnosticLog.h"
#include "support/ContainerFixture.h"

#include <gmock/gmock.h>

#include <atomic>
#include <cstddef>
#include <set>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::IsSubsetOf;
using ::testing::SizeIs;
using ::testing::ThrowsMessage;
using ::testing::UnorderedElementsAre;

using Names = std::vector<std::string>;

class StartBundles : public ContainerFixture {};

TEST_F(StartBundles, GivenNames_WhenStarted_ThenTheirOrderIsKept)
{
    host.add("alpha");
    host.add("beta");
    host.add("gamma");

    container.startBundles(Names{"libgamma.so", "libalpha.so", "libbeta.so"});

    EXPECT_THAT(script.events(), ElementsAre("start gamma", "start alpha", "start beta"));
}

TEST_F(StartBundles, GivenNames_WhenStarted_ThenNothingIsLogged)
{
    container.startBundles(Names{host.add("alpha"), host.add("beta")});

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StartBundles, GivenNoNames_WhenStarted_ThenNothingIsRecorded)
{
    host.add("alpha");

    container.startBundles(Names{});

    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
}

TEST_F(StartBundles, GivenEmptyNameAmongOthers_WhenStarted_ThenOnlyTheOthersAreRecorded)
{
    host.add("alpha");

    container.startBundles(Names{"", "libalpha.so", ""});

    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("libalpha.so")));
}

TEST_F(StartBundles, GivenNameThatCannotBeInstalled_WhenStarted_ThenTheNextAreStarted)
{
    host.add("alpha");

    container.startBundles(Names{"missing.so", "libalpha.so"});

    EXPECT_EQ(stateOf("libalpha.so"), active);
}

TEST_F(StartBundles, GivenBundleWhoseStartThrows_WhenStarted_ThenTheExceptionReachesTheCaller)
{
    EXPECT_THAT([&] { container.startBundles(Names{host.add("start_throws")}); },
                ThrowsMessage<std::runtime_error>(HasSubstr("planned fault: start_throws")));
}

TEST_F(StartBundles, GivenBundleWhoseStartThrows_WhenStarted_ThenTheRestIsNotVisited)
{
    host.add("alpha");
    host.add("beta");
    host.add("start_throws");

    EXPECT_ANY_THROW(container.startBundles(Names{"libalpha.so", "libstart_throws.so", "libbeta.so"}));

    EXPECT_THAT(script.events(), ElementsAre("start alpha"));
    EXPECT_THAT(container.listManuallyLoadedBundles(), UnorderedElementsAre(host.locationOf("libalpha.so"), ""));
}

TEST_F(StartBundles, GivenBundleWhoseStartThrows_WhenStarted_ThenTheLockIsFree)
{
    EXPECT_ANY_THROW(container.startBundles(Names{host.add("start_throws")}));

    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(StartBundles, GivenManyNames_WhenAnotherThreadLooks_ThenItSeesNoneOrAll)
{
    us_container::diagnosticLog().setEnabledSeverities(0);
    Names names;
    for (int i = 0; i < 2000; ++i) {
        names.push_back("missing " + std::to_string(i));
    }
    std::set<std::size_t> seen;
    std::atomic<bool> isDone = false;
    Latch looking;
    {
        OtherThread other{[&] {
            while (!isDone) {
                seen.insert(container.listManuallyLoadedBundles().size());
                looking.open();
            }
        }};
        ASSERT_TRUE(looking.waitFor());

        container.startBundles(names);

        isDone = true;
    }
    EXPECT_THAT(seen, IsSubsetOf({std::size_t{0}, names.size()}));
}

} // namespace
} // namespace ostrel::test
