// The two orders in which a host can make threads wait for each other for ever; MicroServicesContainer.h tells hosts to
// keep to the others. Pinned, so that a change is noticed: each runs in a child, which is looked at after a while.
#include "integration/support/Services.h"
#include "support/ContainerFixture.h"

#include <cppmicroservices/Framework.h>
#include <cppmicroservices/FrameworkEvent.h>

#include <chrono>
#include <cstdlib>
#include <functional>

namespace ostrel::test {
namespace {

constexpr int bothWait = 42;
constexpr int neverMet = 43;

class LockOrderDeathTest : public ContainerFixture {
protected:
    // The child begins anew, as it makes threads.
    LockOrderDeathTest() { ::testing::FLAGS_gtest_death_test_style = "threadsafe"; }

    /// Runs `first`, which leads to the event in alpha, and `second`, an operation of the container, so that the
    /// event's code calls the container when the operation has its mutex, and the operation comes to alpha after that.
    /// Ends the process with `bothWait` when neither returns.
    [[noreturn]] void cross(const char* event, const std::function<void()>& first, const std::function<void()>& second)
    {
        Latch insideAlpha;
        Latch insideContainer;
        script.on(event, [&](auto) {
            insideAlpha.open();
            insideContainer.waitFor();
            container.listManuallyLoadedBundles();
        });
        // A service factory is code that a container runs while it has its mutex.
        registerFactory<Dancer>(host.context(), [&] {
            insideContainer.open();
            insideAlpha.waitFor();
            second();
            return newMap<Dancer>();
        });

        const OtherThread one{first};
        const OtherThread two{[this] { container.loadService(dancerName); }};
        if (!insideAlpha.waitFor() || !insideContainer.waitFor()) {
            std::_Exit(neverMet);
        }
        const bool ended = one.finishesWithin(std::chrono::seconds{3}) || two.finishesWithin(std::chrono::seconds{0});
        std::_Exit(ended ? EXIT_SUCCESS : bothWait);
    }

    std::string alpha = host.add("alpha");
};

TEST_F(LockOrderDeathTest, GivenStoppingBundleThatCallsTheContainer_WhenTheContainerStopsItToo_ThenBothWait)
{
    container.startBundle(alpha);
    const auto stopFramework = [this] {
        cppmicroservices::Framework framework{host.context().GetBundle(0)};
        framework.Stop();
        framework.WaitForStop(std::chrono::milliseconds::zero());
    };

    EXPECT_EXIT(cross("stop alpha", stopFramework, [this] { container.stopBundle(alpha); }),
                ::testing::ExitedWithCode(bothWait), "");
}

TEST_F(LockOrderDeathTest,
       GivenBundleThatTheHostStartsAndThatCallsTheContainer_WhenTheContainerStartsItToo_ThenBothWait)
{
    auto bundle = host.context().InstallBundles(host.locationOf(alpha)).at(0);

    EXPECT_EXIT(cross(
                    "start alpha", [&] { bundle.Start(); }, [this] { container.startBundle(alpha); }),
                ::testing::ExitedWithCode(bothWait), "");
}

} // namespace
} // namespace ostrel::test
