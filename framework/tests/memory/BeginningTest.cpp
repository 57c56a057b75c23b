// Memory that fails while something begins: nothing is left half done, and a later attempt succeeds.
#include "memory/World.h"
#include "support/FailingMemory.h"

#include <cppmicroservices/Constants.h>
#include <cppmicroservices/FrameworkEvent.h>
#include <cppmicroservices/FrameworkFactory.h>
#include <cppmicroservices/LDAPFilter.h>
#include <cppmicroservices/ServiceObjects.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <exception>
#include <functional>
#include <vector>

namespace {

using namespace cppmicroservices;
using namespace ostrel::test;

ServiceProperties ranked(int ranking)
{
    return {{Constants::SERVICE_RANKING, ranking}, {"colour", std::string("a colour with a name that is not short")}};
}

void registerTool(World& world)
{
    world.registration = world.context.RegisterService<Tool>(std::make_shared<RealTool>(), ranked(1));
}

void registerLender(World& world)
{
    std::shared_ptr<ServiceFactory> const factory = std::make_shared<Lender>(world);
    world.registration = world.context.RegisterService<Tool>(factory);
}

void trackAll(World& world)
{
    if (!world.serviceTracker) {
        world.serviceTracker = std::make_unique<ServiceTracker<Tool>>(world.context);
        world.bundleTracker = std::make_unique<BundleTracker<>>(
            world.context, BundleTracker<>::CreateStateMask(Bundle::STATE_ACTIVE, Bundle::STATE_RESOLVED));
    }
}

TEST(Beginning, ofABundle)
{
    Expectation expectation{[](World&) {}, [](World& world) { world.services.Start(); }};
    // As after every start that failed.
    expectation.alsoAllowed = {[](World& world) {
        world.services.Start();
        world.services.Stop();
    }};
    expectSound(expectation);
    expectation.prepare = [](World& world) {
        trackAll(world);
        world.serviceTracker->Open();
        world.context.AddServiceListener([](ServiceEvent const&) {});
    };
    expectSound(expectation);
}

TEST(Beginning, ofAnInstallation)
{
    auto const install = [](World& world) {
        auto const file = world.directory.path() / "libthree_services.so";
        return world.context.InstallBundles(file.string()).at(0);
    };
    Expectation expectation;
    expectation.prepare = [](World& world) { world.services.Uninstall(); };
    expectation.operate = [install](World& world) { world.services = install(world); };
    // Installed, when there is no memory for the list to tell of it.
    expectation.alsoAllowed = {[install](World& world) { install(world); }};
    expectSound(expectation);
}

TEST(Beginning, ofAFramework)
{
    auto const down = [](World& world) {
        world.framework->Stop();
        world.framework->WaitForStop(std::chrono::milliseconds::zero());
        world.context = nullptr;
        world.services = world.scripted = *world.framework;
    };
    auto const up = [](World& world) {
        world.framework->Start();
        world.context = world.framework->GetBundleContext();
    };
    // The listeners of the world belong to the context that ended.
    Expectation expectation;
    expectation.prepare = down;
    expectation.operate = up;
    expectation.listens = false;
    expectSound(expectation);
    expectation.prepare = [](World& world) { world.services = world.scripted = *world.framework; };
    expectation.operate = [](World& world) {
        auto other = FrameworkFactory().NewFramework();
        other.Init();
        other.Start();
        world.scripted = other.GetBundleContext().GetBundle();
        world.scripted = *world.framework;
    };
    expectation.threads = true; // it goes at the end
    expectSound(expectation);
}

TEST(Beginning, ofAService)
{
    Expectation expectation;
    expectation.operate = registerTool;
    expectSound(expectation);
    expectation.prepare = [](World& world) {
        world.context.RegisterService<Tool>(std::make_shared<RealTool>(), ranked(2));
        world.context.GetServiceReferences<Tool>("(service.ranking>=1)");
        // The id that it gives itself is looked up in a place of its own.
        world.context.RegisterService<Tool>(std::make_shared<RealTool>(), {{Constants::SERVICE_ID, 77L}});
    };
    expectSound(expectation);
}

TEST(Beginning, ofOtherProperties)
{
    expectSound({registerTool, [](World& world) { world.registration.SetProperties(ranked(9)); }});
}

TEST(Beginning, ofAUse)
{
    auto const getTool = [](World& world) {
        world.tool = world.context.GetService(world.context.GetServiceReference<Tool>());
    };
    auto const getAll = [](World& world) {
        world.interfaces = world.context.GetService(ServiceReferenceU(world.context.GetServiceReference<Tool>()));
    };
    for (auto const& offer : {registerTool, registerLender}) {
        expectSound({offer, getTool});
        expectSound({offer, getAll});
    }
}

TEST(Beginning, ofAUseOfItsOwn)
{
    expectSound({registerLender, [](World& world) {
                     world.tool =
                         world.context.GetServiceObjects(world.context.GetServiceReference<Tool>()).GetService();
                 }});
}

TEST(Beginning, ofListeners)
{
    auto const tools = [](World& world) {
        world.tokens.push_back(world.context.AddServiceListener([](ServiceEvent const&) {}, "(objectclass=A)"));
    };
    auto const numbers = [](World& world) {
        world.tokens.push_back(world.context.AddServiceListener([](ServiceEvent const&) {}, "(service.id=7)"));
    };
    auto const bundles = [](World& world) {
        world.tokens.push_back(world.context.AddBundleListener([](BundleEvent const&) {}));
    };
    auto const frameworks = [](World& world) {
        world.tokens.push_back(world.context.AddFrameworkListener([](FrameworkEvent const&) {}));
    };
    for (auto const& add : std::vector<std::function<void(World&)>>{tools, numbers, bundles, frameworks}) {
        expectSound({[](World& world) { world.tokens.reserve(8); }, add});
    }
}

TEST(Beginning, ofTracking)
{
    auto const prepare = [](World& world) {
        trackAll(world);
        world.services.Start();
        registerTool(world);
        world.context.RegisterService<Tool>(std::make_shared<RealTool>(), ranked(2));
    };
    expectSound({prepare, [](World& world) { world.serviceTracker->Open(); }});
    expectSound({prepare, [](World& world) { world.bundleTracker->Open(); }});
}

TEST(Beginning, ofAnAnswerOfABundleTrackerThatCannotThrow)
{
    World world;
    trackAll(world);
    world.services.Start();
    world.bundleTracker->Open();
    int told = 0;
    std::exception_ptr why;
    world.context.AddFrameworkListener([&](FrameworkEvent const& event) {
        ++told;
        why = event.GetThrowable();
    });
    auto const& tracker = *world.bundleTracker;
    auto const ask = [&](auto const& isWhole) {
        for (std::size_t number = 1;; ++number) {
            told = 0;
            FailingMemory const failing(number);
            bool const whole = isWhole();
            if (!FailingMemory::hasFailed()) {
                UncountedMemory const ofTest;
                EXPECT_TRUE(whole);
                EXPECT_GT(number, 1U);
                return;
            }
            UncountedMemory const ofTest;
            ASSERT_TRUE(whole ? told == 0 : told == 1) << "allocation " << number;
            EXPECT_TRUE(whole || why != nullptr);
        }
    };
    ask([&] { return tracker.GetBundles().size() == 2; });
    ask([&] { return tracker.GetTracked().size() == 2; });
}

TEST(Beginning, ofAQuery)
{
    auto const prepare = [](World& world) {
        world.services.Start();
        registerTool(world);
    };
    expectSound({prepare, [](World& world) {
                     auto& context = world.context;
                     EXPECT_EQ(4U, context.GetServiceReferences(std::string(), "(service.id>=1)").size());
                     EXPECT_EQ(1U, context.GetServiceReferences<Tool>("(service.ranking=1)").size());
                     EXPECT_EQ(1U, context.GetServiceReferences(std::string(), "(objectclass=*Tool)").size());
                     EXPECT_TRUE(context.GetServiceReference<Tool>());
                     EXPECT_EQ(3U, context.GetBundles().size());
                     EXPECT_EQ(1U, context.GetBundles(world.services.GetLocation()).size());
                     EXPECT_EQ("3.8.4", context.GetProperty(Constants::FRAMEWORK_VERSION).ToString());
                     EXPECT_EQ(3U, world.services.GetRegisteredServices().size());
                     EXPECT_FALSE(world.services.GetHeaders().AtCompoundKey("zq.component.name").Empty());
                     EXPECT_TRUE(LDAPFilter("(&(a=1)(!(b~=two)))").Match(AnyMap({{"A", 1}})));
                 }});
}

} // namespace
