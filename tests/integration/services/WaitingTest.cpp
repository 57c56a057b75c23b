// Operations wait while another thread holds the container's lock.
#include "integration/services/ServicesFixture.h"
#include "integration/support/LockHolder.h"

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;

class WaitForTheLock : public ServicesFixture {
protected:
    /// Whether the operation begins to wait, and ends once the lock is free.
    bool waits(const std::function<void()>& operation)
    {
        LockHolder holder{container, host.context()};
        const OtherThread waiting{operation};
        const bool waited = !waiting.finishesWithin(glance);
        holder.letGo();
        return waiting.finishesWithin() && waited;
    }
};

TEST_F(WaitForTheLock, GivenLockHeld_WhenANameIsUnloaded_ThenItWaits)
{
    EXPECT_TRUE(waits([this] { container.unloadService(greeterName); }));
}

TEST_F(WaitForTheLock, GivenLockHeld_WhenAllAreUnloaded_ThenItWaits)
{
    EXPECT_TRUE(waits([this] { container.unloadAllServices(); }));
}

TEST_F(WaitForTheLock, GivenLockHeld_WhenTheBundlesAreListed_ThenItWaits)
{
    EXPECT_TRUE(waits([this] { container.listManuallyLoadedBundles(); }));
}

TEST_F(WaitForTheLock, GivenLockHeld_WhenTheServicesAreListed_ThenItWaits)
{
    EXPECT_TRUE(waits([this] { container.listManuallyLoadedServices(); }));
}

TEST_F(WaitForTheLock, GivenLockHeld_WhenTheServicesOfABundleAreReported_ThenItWaits)
{
    const auto bundle = startedBundle("alpha").GetBundle();
    std::stringstream stream;

    EXPECT_TRUE(waits([&] { container.printBundleServices(stream, bundle); }));
}

TEST_F(WaitForTheLock, GivenLoadOfAllThatWaits_WhenAServiceComesMeanwhile_ThenItIsLoadedToo)
{
    const auto bundle = startedBundle("alpha");
    LockHolder holder{container, host.context()};
    const OtherThread loading{[this] { container.loadAllServices(); }};
    EXPECT_FALSE(loading.finishesWithin(glance));
    const auto newcomer = registerGreeter(bundle);
    holder.letGo();
    ASSERT_TRUE(loading.finishesWithin());

    EXPECT_THAT(usersOf(newcomer), ElementsAre("system_bundle"));
}

} // namespace
} // namespace ostrel::test
