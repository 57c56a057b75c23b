#include "support/ContainerFixture.h"

#include <gmock/gmock.h>

#include <csignal>
#include <cstdlib>
#include <memory>
#include <optional>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Names = std::vector<std::string>;

class Destructor : public ContainerFixture {
protected:
    std::optional<MicroServicesContainer> other{std::in_place, host.context(), host.bundleDirectory()};
};

TEST_F(Destructor, GivenStartedBundle_WhenDestroyed_ThenItIsStopped)
{
    other->startBundle(host.add("alpha"));

    other.reset();

    EXPECT_EQ(stateOf("libalpha.so"), resolved);
}

TEST_F(Destructor, GivenLoadedService_WhenDestroyed_ThenItIsReleasedBeforeItsBundleStops)
{
    other->startBundle(host.add("alpha"));
    other->loadService("(test.word=alpha)");

    other.reset();

    EXPECT_THAT(script.events(), ElementsAre("start alpha", "get alpha", "release alpha", "stop alpha"));
}

TEST_F(Destructor, GivenStartedBundle_WhenDestroyed_ThenNothingIsLogged)
{
    other->startBundle(host.add("alpha"));

    other.reset();

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(Destructor, GivenBundleThatTheHostStarted_WhenDestroyed_ThenItStaysActive)
{
    host.context().InstallBundles(host.locationOf(host.add("beta"))).front().Start();
    other->startBundle(host.add("alpha"));

    other.reset();

    EXPECT_EQ(stateOf("libbeta.so"), active);
}

TEST_F(Destructor, GivenBundleWhoseStopThrows_WhenDestroyed_ThenItIsLoggedAsByAnyStop)
{
    other->startBundle(host.add("stop_throws"));

    other.reset();

    const std::string location = host.locationOf("libstop_throws.so");
    EXPECT_THAT(
        log.records(),
        ElementsAre(LogRecord{0x10, "Error while stoping " + location + ": Bundle stop_throws (location=" + location +
                                        "), BundleActivator::Stop() failed: planned fault: stop_throws"}));
}

TEST_F(Destructor, GivenServiceHeldWithoutARecordedName_WhenDestroyed_ThenItIsReleasedAfterTheBundlesStopped)
{
    // alpha and beta belong to the test; the load of both gets alpha and fails at beta, so no name is recorded.
    container.startBundles(Names{host.add("alpha"), host.add("beta")});
    other->startBundle(host.add("gamma"));
    script.on("get beta", [](auto) { throw 42; });
    EXPECT_THROW(other->loadService("(|(test.word=alpha)(test.word=beta))"), int);
    script.clear();

    other.reset();

    EXPECT_THAT(script.events(), ElementsAre("stop gamma", "release alpha"));
}

using DestructorDeathTest = Destructor;

TEST_F(DestructorDeathTest, GivenUnloadThatThrows_WhenDestroyed_ThenTheProcessEnds)
{
    const auto destroy = [this] {
        other->startBundle(host.add("stop_throws"));
        log.onRecord([](const LogRecord&) { throw std::runtime_error{"planned fault: sink"}; });
        try {
            other.reset();
        } catch (...) {
        }
        std::_Exit(0);
    };

    EXPECT_EXIT(destroy(), ::testing::KilledBySignal(SIGABRT), "planned fault: sink");
}

} // namespace
} // namespace ostrel::test
