#include "integration/support/Scheduling.h"
#include "support/ContainerFixture.h"

#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <set>
#include <thread>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::IsSubsetOf;

using Names = std::vector<std::string>;

/// Reads the number of recorded bundles on one thread, again and again, while `task` runs on another that gives way
/// whenever it lets go of the lock.
std::set<std::size_t> sizesSeenDuring(const MicroServicesContainer& container, const std::function<void()>& task)
{
    std::set<std::size_t> seen;
    std::atomic<bool> isDone = false;
    Latch looking;
    const OtherThread onlooker{[&] {
        meetOnFirstProcessor(Urgency::urgent);
        while (!isDone) {
            seen.insert(container.listManuallyLoadedBundles().size());
            looking.open();
            std::this_thread::sleep_for(std::chrono::microseconds{50});
        }
    }};
    looking.waitFor();
    {
        const OtherThread worker{[&] {
            meetOnFirstProcessor(Urgency::patient);
            task();
        }};
        EXPECT_TRUE(worker.finishesWithin());
    }
    isDone = true;
    EXPECT_TRUE(onlooker.finishesWithin());
    return seen;
}

Names unknownNames(int count)
{
    Names names;
    for (int i = 0; i < count; ++i) {
        names.push_back("unknown " + std::to_string(i));
    }
    return names;
}

class StopBundles : public ContainerFixture {};
class StopAllBundles : public ContainerFixture {};

TEST_F(StopBundles, GivenNames_WhenStopped_ThenTheirOrderIsKept)
{
    container.startBundles(Names{host.add("alpha"), host.add("beta"), host.add("gamma")});
    script.clear();

    container.stopBundles(Names{"libbeta.so", "libgamma.so", "libalpha.so"});

    EXPECT_THAT(script.events(), ElementsAre("stop beta", "stop gamma", "stop alpha"));
}

TEST_F(StopBundles, GivenSomeOfTheNames_WhenStopped_ThenTheOthersStayActive)
{
    container.startBundles(Names{host.add("alpha"), host.add("beta")});

    container.stopBundles(Names{"libbeta.so"});

    EXPECT_EQ(stateOf("libalpha.so"), active);
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("libalpha.so")));
}

TEST_F(StopBundles, GivenBundleWhoseStopThrows_WhenStopped_ThenTheNextIsStoppedToo)
{
    container.startBundles(Names{host.add("stop_throws"), host.add("alpha")});

    container.stopBundles(Names{"libstop_throws.so", "libalpha.so"});

    EXPECT_EQ(stateOf("libalpha.so"), resolved);
}

TEST_F(StopBundles, GivenStartedBundles_WhenStopped_ThenNothingIsLogged)
{
    container.startBundles(Names{host.add("alpha"), host.add("beta")});

    container.stopBundles(Names{"libalpha.so", "libbeta.so"});

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StopBundles, GivenSinkThatThrows_WhenAStopThrows_ThenTheRestIsNotVisited)
{
    container.startBundles(Names{host.add("stop_throws"), host.add("alpha")});
    log.onRecord([](const LogRecord&) { throw std::runtime_error{"planned fault: sink"}; });

    EXPECT_THROW(container.stopBundles(Names{"libstop_throws.so", "libalpha.so"}), std::runtime_error);

    EXPECT_EQ(stateOf("libalpha.so"), active);
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(StopBundles, GivenManyNames_WhenAnotherThreadLooks_ThenItSeesNoneOrAll)
{
    const Names names = unknownNames(1000);

    const std::set<std::size_t> seen = sizesSeenDuring(container, [&] { container.stopBundles(names); });

    EXPECT_THAT(seen, IsSubsetOf({std::size_t{0}, names.size()}));
}

TEST_F(StopAllBundles, GivenStartedBundles_WhenAllStopped_ThenAllAreResolved)
{
    container.startBundles(Names{host.add("alpha"), host.add("beta"), host.add("gamma")});

    container.stopAllBundles();

    EXPECT_EQ(stateOf("libalpha.so"), resolved);
    EXPECT_EQ(stateOf("libbeta.so"), resolved);
    EXPECT_EQ(stateOf("libgamma.so"), resolved);
}

TEST_F(StopAllBundles, GivenStartedBundles_WhenAllStopped_ThenNoneIsRecorded)
{
    container.startBundles(Names{host.add("alpha"), host.add("beta"), host.add("gamma")});

    container.stopAllBundles();

    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
}

TEST_F(StopAllBundles, GivenStartedBundles_WhenAllStopped_ThenTheOrderIsThatOfTheRecords)
{
    container.startBundles(Names{host.add("alpha"), host.add("beta"), host.add("gamma")});
    Names expected;
    for (const std::string& location : container.listManuallyLoadedBundles()) {
        expected.push_back("stop " + host.context().GetBundles(location).front().GetSymbolicName());
    }
    script.clear();

    container.stopAllBundles();

    EXPECT_EQ(script.events(), expected);
}

TEST_F(StopAllBundles, GivenActiveBundleNotStartedHere_WhenAllStopped_ThenItStaysActive)
{
    host.context().InstallBundles(host.locationOf(host.add("alpha"))).front().Start();
    container.startBundle(host.add("beta"));

    container.stopAllBundles();

    EXPECT_EQ(stateOf("libalpha.so"), active);
}

TEST_F(StopAllBundles, GivenEntryWithoutLocation_WhenAllStopped_ThenItStays)
{
    container.stopBundle("unknown");
    container.startBundle(host.add("alpha"));

    container.stopAllBundles();

    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(""));
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StopAllBundles, GivenStoppingActivatorThatAddsManyNames_WhenAllStopped_ThenTheOthersAreStopped)
{
    container.startBundles(Names{host.add("alpha"), host.add("beta"), host.add("gamma")});
    const auto addNames = [this](auto) { container.stopBundles(unknownNames(1000)); };
    script.on("stop alpha", addNames);
    script.on("stop beta", addNames);
    script.on("stop gamma", addNames);

    container.stopAllBundles();

    EXPECT_EQ(container.listManuallyLoadedBundles().size(), 1000U);
    EXPECT_EQ(stateOf("libalpha.so"), resolved);
    EXPECT_EQ(stateOf("libbeta.so"), resolved);
    EXPECT_EQ(stateOf("libgamma.so"), resolved);
}

TEST_F(StopAllBundles, GivenBundlesRecordedByComponentName_WhenAllStopped_ThenNoneIsRecorded)
{
    host.add("alpha");
    host.add("beta");
    container.startAllBundles();

    container.stopAllBundles();

    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
}

TEST_F(StopAllBundles, GivenManyStartedNames_WhenAnotherThreadLooks_ThenItSeesNoneOrAll)
{
    // Many names for one bundle: each is another spelling of its file, and each is forgotten when it is stopped.
    host.add("alpha");
    std::string name = "libalpha.so";
    for (int i = 0; i < 100; ++i) {
        container.startBundle(name);
        name.insert(0, "./");
    }

    const std::set<std::size_t> seen = sizesSeenDuring(container, [&] { container.stopAllBundles(); });

    EXPECT_THAT(seen, IsSubsetOf({std::size_t{100}, std::size_t{0}}));
}

TEST_F(StopAllBundles, GivenBundleStartedWhileItWaits_WhenAllStopped_ThenThatIsStoppedToo)
{
    startBothDuring([this] { container.stopAllBundles(); });

    EXPECT_EQ(stateOf("libalpha.so"), resolved);
    EXPECT_EQ(stateOf("libbeta.so"), resolved);
}

} // namespace
} // namespace ostrel::test
