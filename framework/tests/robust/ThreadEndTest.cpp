// Foreign code that ends the thread in which the framework calls it: glibc unwinds the thread then, through the
// framework, and ends the process if anybody stops that.
#include "container/MicroServicesContainer.h"
#include "contract/robust/WildFixture.h"

#include <cppmicroservices/BundleEvent.h>
#include <cppmicroservices/Constants.h>
#include <cppmicroservices/FrameworkFactory.h>
#include <cppmicroservices/ServiceTracker.h>
#include <cppmicroservices/ServiceTrackerCustomizer.h>

#include <functional>
#include <pthread.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace {

using namespace cppmicroservices;
using namespace ostrel::test;
using ::testing::ElementsAre;

/// Ends the calling thread.
void endThread(BundleContext const& = {})
{
    pthread_exit(nullptr);
}

class ThreadEnd : public WildFixture {
protected:
    /// Runs a function on another thread, and says whether it came to its end.
    static bool returns(std::function<void()> const& function)
    {
        bool returned = false;
        std::thread([&] {
            function();
            returned = true;
        }).join();
        return returned;
    }

    /// Forgets what was planned, and does what must work as ever.
    void expectAllIsWell(Bundle bundle)
    {
        for (std::string const event : {"construct wild", "start wild", "stop wild"}) {
            script.on(event, nullptr);
        }
        EXPECT_FALSE(bundle.GetBundleContext());
        EXPECT_FALSE(host.context().GetServiceReference<Word>());
        bundle.Start();
        EXPECT_EQ(active, bundle.GetState());
        EXPECT_EQ("wild", host.context().GetService(wordOf(bundle))->text());
        bundle.Stop();
        EXPECT_EQ(resolved, bundle.GetState());
        bundle.Uninstall();
        EXPECT_EQ(uninstalled, bundle.GetState());
    }
};

class InAStart : public ThreadEnd, public ::testing::WithParamInterface<std::string> {};
INSTANTIATE_TEST_SUITE_P(steps, InAStart, ::testing::Values("construct wild", "start wild"));

TEST_P(InAStart, leavesTheBundleAsAFailedStartDoes)
{
    std::vector<BundleEvent::Type> seen;
    auto bundle = install("wild");
    host.context().AddBundleListener([&](BundleEvent const& event) { seen.push_back(event.GetType()); });
    script.on(GetParam(), endThread);
    EXPECT_FALSE(returns([&] { bundle.Start(); }));
    EXPECT_EQ(resolved, bundle.GetState());
    EXPECT_THAT(seen, ElementsAre(BundleEvent::BUNDLE_RESOLVED, BundleEvent::BUNDLE_STARTING,
                                  BundleEvent::BUNDLE_STOPPING, BundleEvent::BUNDLE_STOPPED));
    expectAllIsWell(bundle);
    host.stop();
}

TEST_F(ThreadEnd, inStopLeavesTheBundleStopped)
{
    std::vector<BundleEvent::Type> seen;
    auto bundle = start("wild");
    host.context().AddBundleListener([&](BundleEvent const& event) { seen.push_back(event.GetType()); });
    script.on("stop wild", endThread);
    EXPECT_FALSE(returns([&] { bundle.Stop(); }));
    EXPECT_EQ(resolved, bundle.GetState());
    EXPECT_EQ(1, countOf("destroy wild"));
    EXPECT_THAT(seen, ElementsAre(BundleEvent::BUNDLE_STOPPING, BundleEvent::BUNDLE_STOPPED));
    expectAllIsWell(bundle);
    host.stop();
}

TEST_F(ThreadEnd, inStopLeavesAnUninstallToBeAskedForAgain)
{
    auto bundle = start("wild");
    script.on("stop wild", endThread);
    EXPECT_FALSE(returns([&] { bundle.Uninstall(); }));
    EXPECT_EQ(resolved, bundle.GetState());
    expectAllIsWell(bundle);
}

TEST_F(ThreadEnd, inStopDoesNotHinderTheStopOfTheFramework)
{
    std::vector<Bundle> bundles{start("wild"), start("alpha"), start("wild_too")};
    for (std::string const event : {"stop wild", "stop alpha", "stop wild_too"}) {
        script.on(event, endThread);
    }
    int stoppings = 0;
    host.context().AddBundleListener([&](BundleEvent const& event) {
        stoppings += event.GetBundle().GetBundleId() == 0 && event.GetType() == BundleEvent::BUNDLE_STOPPING ? 1 : 0;
    });
    auto own = framework();
    own.Stop();
    EXPECT_EQ(FrameworkEvent::FRAMEWORK_STOPPED, own.WaitForStop(std::chrono::seconds(20)).GetType());
    for (auto const& bundle : bundles) {
        EXPECT_EQ(installed, bundle.GetState());
        EXPECT_FALSE(bundle.GetBundleContext());
    }
    EXPECT_EQ(resolved, own.GetState());
    EXPECT_EQ(1, stoppings);
    EXPECT_EQ(1, countOf("destroy wild"));
    EXPECT_EQ(1, countOf("destroy wild_too"));
    own.Start();
    EXPECT_EQ(active, own.GetState());
}

TEST_F(ThreadEnd, byCancellingLeavesTheBundleAsAFailedStartDoes)
{
    auto bundle = install("wild");
    Latch inside;
    script.on("start wild", [&](BundleContext const&) {
        inside.open();
        pause(); // where a thread can be cancelled
    });
    bool returned = false;
    std::thread starting([&] {
        bundle.Start();
        returned = true;
    });
    ASSERT_TRUE(inside.waitFor());
    pthread_cancel(starting.native_handle());
    starting.join();
    EXPECT_FALSE(returned);
    EXPECT_EQ(resolved, bundle.GetState());
    expectAllIsWell(bundle);
    host.stop();
}

TEST_F(ThreadEnd, inAValidationLeavesTheBundleResolved)
{
    FrameworkConfiguration configuration;
    bool ends = true;
    configuration[Constants::FRAMEWORK_BUNDLE_VALIDATION_FUNC] = std::function<bool(Bundle const&)>([&](Bundle const&) {
        if (ends) {
            endThread();
        }
        return true;
    });
    auto own = FrameworkFactory().NewFramework(configuration);
    own.Start();
    auto bundle = own.GetBundleContext().InstallBundles(host.locationOf(host.add("wild"))).at(0);
    EXPECT_FALSE(returns([&] { bundle.Start(); }));
    EXPECT_EQ(resolved, bundle.GetState());
    ends = false;
    bundle.Start();
    EXPECT_EQ(active, bundle.GetState());
    own.Stop();
    own.WaitForStop(std::chrono::milliseconds::zero());
}

TEST_F(ThreadEnd, inAFactoryLeavesTheServiceToBeAskedForAgain)
{
    auto bundle = start("wild");
    script.on("get wild", endThread);
    auto context = host.context();
    EXPECT_FALSE(returns([&] { context.GetService(wordOf(bundle)); }));
    script.on("get wild", nullptr);
    EXPECT_EQ("wild", context.GetService(wordOf(bundle))->text());
    expectAllIsWell((bundle.Stop(), bundle));
    host.stop();
}

TEST_F(ThreadEnd, inAListenerPasses)
{
    auto bundle = start("wild");
    auto context = host.context();
    static bool ends = false; // the listeners live longer than this test's body
    auto const endOnce = [&](auto const&) {
        if (std::exchange(ends, false)) {
            endThread();
        }
    };
    auto const endsInside = [&](std::function<void()> const& function) {
        ends = true;
        return !returns(function) && !ends;
    };
    context.AddBundleListener(endOnce);
    EXPECT_TRUE(endsInside([&] { install("alpha"); }));
    auto alpha = host.bundleIn("libalpha.so");
    EXPECT_EQ(installed, alpha.GetState());
    EXPECT_TRUE(endsInside([&] { alpha.Start(); })); // told that it is resolved
    EXPECT_EQ(resolved, alpha.GetState());
    EXPECT_TRUE(endsInside([&] { alpha.Start(); })); // that it starts
    EXPECT_EQ(resolved, alpha.GetState());
    alpha.Start();
    EXPECT_EQ(active, alpha.GetState());

    context.AddServiceListener(endOnce);
    EXPECT_TRUE(endsInside([&] { context.RegisterService<int>(std::make_shared<int>(1)); }));
    EXPECT_TRUE(context.GetServiceReference<int>());
}

/// Ends the thread when the service goes.
struct EndsAtRemoval : ServiceTrackerCustomizer<int> {
    std::shared_ptr<int> AddingService(ServiceReference<int> const&) override { return std::make_shared<int>(1); }
    void ModifiedService(ServiceReference<int> const&, std::shared_ptr<int> const&) override {}
    void RemovedService(ServiceReference<int> const&, std::shared_ptr<int> const&) override { endThread(); }
};

TEST_F(ThreadEnd, inACustomizerPasses)
{
    auto context = host.context();
    context.RegisterService<int>(std::make_shared<int>(1));
    EndsAtRemoval customizer;
    ServiceTracker<int> tracker(context, &customizer);
    tracker.Open();
    EXPECT_FALSE(returns([&] { tracker.Close(); }));
    EXPECT_EQ(0, tracker.Size());
}

TEST_F(ThreadEnd, inAnActivatorLeavesTheContainerUsable)
{
    ostrel::us_container::MicroServicesContainer container(host.context(), host.bundleDirectory());
    auto const name = host.add("wild");
    script.on("start wild", endThread);
    EXPECT_FALSE(returns([&] { container.startBundle(name); }));
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(std::string()));
    script.on("start wild", nullptr);
    container.startBundle(name);
    EXPECT_EQ(active, host.bundleIn(name).GetState());
    script.on("stop wild", endThread);
    EXPECT_FALSE(returns([&] { container.stopBundle(name); }));
    EXPECT_EQ(resolved, host.bundleIn(name).GetState());
    container.stopBundle(name);
    EXPECT_TRUE(container.listManuallyLoadedBundles().empty());
    host.stop();
}

} // namespace
