// Memory that fails while something comes to its end: what is told to stop has to stop.
#include "memory/World.h"

#include <cppmicroservices/FrameworkEvent.h>

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>

namespace {

using namespace cppmicroservices;
using namespace ostrel::test;

void startBoth(World& world)
{
    world.services.Start();
    world.scripted.Start();
}

void trackAll(World& world)
{
    world.serviceTracker = std::make_unique<ServiceTracker<Tool>>(world.context);
    world.serviceTracker->Open();
    world.bundleTracker = std::make_unique<BundleTracker<>>(
        world.context, BundleTracker<>::CreateStateMask(Bundle::STATE_ACTIVE, Bundle::STATE_STARTING));
    world.bundleTracker->Open();
}

/// A service of the bundle that all others use, made by a factory.
void lend(World& world)
{
    auto context = world.services.GetBundleContext();
    std::shared_ptr<ServiceFactory> const factory = std::make_shared<Lender>(world);
    world.registration = context.RegisterService<Tool>(factory);
    auto user = world.scripted.GetBundleContext();
    (void)user.GetService(user.GetServiceReference<Tool>());
    world.tool = user.GetService(user.GetServiceReference<Tool>());
}

void stopFramework(World& world)
{
    world.framework->Stop();
    world.framework->WaitForStop(std::chrono::milliseconds::zero());
}

TEST(End, ofABundle)
{
    expectSound({startBoth, [](World& world) { world.services.Stop(); }});
}

TEST(End, ofABundleThatIsTrackedAndUsed)
{
    auto const prepare = [](World& world) {
        trackAll(world);
        startBoth(world);
        lend(world);
    };
    expectSound({prepare, [](World& world) { world.services.Stop(); }});
    expectSound({prepare, [](World& world) { world.scripted.Stop(); }});
}

TEST(End, ofABundleThatIsUninstalled)
{
    auto const uninstall = [](World& world) {
        if (world.services.GetState() != Bundle::STATE_UNINSTALLED) {
            world.services.Uninstall();
        }
    };
    expectSound({[](World&) {}, uninstall});
    expectSound({startBoth, uninstall});
    expectSound({[](World& world) {
                     trackAll(world);
                     startBoth(world);
                     lend(world);
                     std::ofstream(world.services.GetBundleContext().GetDataFile("a")) << "data";
                 },
                 uninstall});
}

TEST(End, ofTheFramework)
{
    Expectation expectation{startBoth, stopFramework};
    expectation.threads = true;
    expectSound(expectation);
    expectation.prepare = [](World& world) {
        trackAll(world);
        startBoth(world);
        lend(world);
    };
    expectSound(expectation);
}

TEST(End, ofTheLastHandleOfAFramework)
{
    Expectation expectation{startBoth, [](World& world) {
                                world.services = nullptr;
                                world.scripted = nullptr;
                                world.framework.reset();
                            }};
    expectation.threads = true;
    expectSound(expectation);
}

TEST(End, ofAService)
{
    auto const prepare = [](World& world) {
        trackAll(world);
        startBoth(world);
        lend(world);
        world.context.GetServiceReferences(std::string(), "(service.id>=1)"); // an offer that becomes outdated
    };
    expectSound({prepare, [](World& world) { world.registration.Unregister(); }});
}

TEST(End, ofAUse)
{
    auto const prepare = [](World& world) {
        startBoth(world);
        lend(world);
    };
    expectSound({prepare, [](World& world) { world.tool.reset(); }});
}

TEST(End, ofListeners)
{
    auto const prepare = [](World& world) {
        world.tokens.push_back(world.context.AddBundleListener([](BundleEvent const&) {}));
        world.tokens.push_back(world.context.AddFrameworkListener([](FrameworkEvent const&) {}));
        world.tokens.push_back(world.context.AddServiceListener([](ServiceEvent const&) {}, "(objectclass=A)"));
        world.tokens.push_back(world.context.AddServiceListener([](ServiceEvent const&) {}, "(service.id=7)"));
        world.tokens.push_back(world.context.AddServiceListener([](ServiceEvent const&) {}));
    };
    expectSound({prepare, [](World& world) {
                     for (auto& token : world.tokens) {
                         world.context.RemoveListener(std::move(token));
                     }
                     world.tokens.clear();
                 }});
}

TEST(End, ofTrackers)
{
    auto const prepare = [](World& world) {
        trackAll(world);
        startBoth(world);
        lend(world);
    };
    expectSound({prepare, [](World& world) {
                     world.serviceTracker->Close();
                     world.bundleTracker->Close();
                 }});
}

} // namespace
