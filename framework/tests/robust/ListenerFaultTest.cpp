// Listeners that throw, and that turn against what the event tells of.
#include "contract/robust/WildFixture.h"
#include "support/TestBundles.h"

#include <cppmicroservices/BundleEvent.h>
#include <cppmicroservices/FrameworkFactory.h>
#include <cppmicroservices/ServiceEvent.h>

#include <optional>

namespace {

using namespace cppmicroservices;
using namespace ostrel::test;

struct Plain {};

class ListenerFault : public WildFixture, public ::testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(faults, ListenerFault, ::testing::ValuesIn(faults));

TEST_P(ListenerFault, disturbsNobody)
{
    auto context = host.context();
    int reported = 0;
    int service = 0;
    int bundle = 0;
    auto const fault = [kind = GetParam()](int& count) {
        ++count;
        throwFault(kind);
    };
    std::vector<ListenerToken> tokens;
    tokens.push_back(context.AddServiceListener([&](ServiceEvent const&) { fault(service); }));
    tokens.push_back(context.AddBundleListener([&](BundleEvent const&) { fault(bundle); }));
    tokens.push_back(context.AddFrameworkListener([&](FrameworkEvent const& event) {
        if (event.GetType() == FrameworkEvent::FRAMEWORK_ERROR) {
            fault(reported);
        }
    }));
    auto wild = start("wild");
    EXPECT_EQ(active, wild.GetState());
    wild.Uninstall();
    EXPECT_EQ(uninstalled, wild.GetState());
    EXPECT_EQ(2, service);
    EXPECT_EQ(8, bundle);
    EXPECT_EQ(service + bundle, reported);
    for (auto& token : tokens) {
        context.RemoveListener(std::move(token));
    }
}

using ListenerActs = WildFixture;

TEST_F(ListenerActs, unregistersInTheOwnEvents)
{
    auto context = host.context();
    std::optional<ServiceRegistration<Plain>> registration;
    int calls = 0;
    context.AddServiceListener([&](ServiceEvent const& event) {
        if (event.GetType() == ServiceEvent::SERVICE_UNREGISTERING && registration) {
            EXPECT_TRUE(event.GetServiceReference());
            ++calls;
            EXPECT_NO_THROW(registration->Unregister());
            EXPECT_TRUE(event.GetServiceReference());
        }
    });
    registration = context.RegisterService<Plain>(std::make_shared<Plain>());
    registration->Unregister();
    EXPECT_EQ(1, calls);
    EXPECT_THROW(registration->Unregister(), std::logic_error);
    host.stop();
}

TEST_F(ListenerActs, stopsTheBundleThatRegisters)
{
    auto context = host.context();
    auto bundle = install("wild");
    int refused = 0;
    context.AddServiceListener([&](ServiceEvent const&) {
        try {
            bundle.Stop();
        } catch (std::runtime_error const&) {
            ++refused;
        }
    });
    bundle.Start();
    EXPECT_EQ(1, refused); // inside its start
    EXPECT_EQ(active, bundle.GetState());
    auto own = bundle.GetBundleContext();
    auto const registration = own.RegisterService<Plain>(std::make_shared<Plain>()); // outside: it stops
    EXPECT_EQ(resolved, bundle.GetState());
    EXPECT_THROW(registration.GetReference(), std::logic_error);
    EXPECT_FALSE(context.GetServiceReference<Plain>());
    host.stop();
}

TEST_F(ListenerActs, turnsAgainstTheBundleOfTheEvent)
{
    auto context = host.context();
    int refused = 0;
    int seen = 0;
    context.AddBundleListener([&](BundleEvent const& event) {
        ++seen;
        for (auto const operation : {0, 1, 2}) {
            try {
                auto bundle = event.GetBundle();
                if (operation == 0) {
                    bundle.Start();
                } else if (operation == 1) {
                    bundle.Stop();
                } else {
                    bundle.Uninstall();
                }
            } catch (std::exception const&) {
                ++refused;
            }
        }
    });
    auto bundle = install("wild"); // whose event starts, stops and uninstalls it
    EXPECT_EQ(uninstalled, bundle.GetState());
    EXPECT_EQ(1, countOf("start wild"));
    EXPECT_EQ(1, countOf("destroy wild"));
    EXPECT_GE(seen, 8);
    EXPECT_GE(refused, 3 * (seen - 1)); // all but the first event come from inside an operation
    EXPECT_THROW(bundle.Start(), std::logic_error);
    host.stop();
}

TEST_F(ListenerActs, stopsTheFramework)
{
    auto context = host.context();
    auto system = framework();
    auto bundle = start("wild");
    context.AddServiceListener([&system](ServiceEvent const&) mutable { system.Stop(); });
    context.RegisterService<Plain>(std::make_shared<Plain>());
    EXPECT_EQ(FrameworkEvent::FRAMEWORK_STOPPED, system.WaitForStop(std::chrono::milliseconds(0)).GetType());
    EXPECT_EQ(installed, bundle.GetState());
    host.stop();
}

TEST_F(ListenerActs, waitsForTheStopInTheStop)
{
    auto context = host.context();
    auto system = framework();
    start("wild");
    int refused = 0;
    context.AddBundleListener([&](BundleEvent const& event) {
        if (event.GetType() == BundleEvent::BUNDLE_STOPPING) {
            try {
                system.WaitForStop(std::chrono::milliseconds(0));
            } catch (std::runtime_error const&) {
                ++refused;
            }
        }
    });
    host.stop();
    EXPECT_GE(refused, 1);
}

TEST(ListenerHandle, lettingTheLastFrameworkHandleGoStopsIt)
{
    std::optional<Framework> framework(FrameworkFactory().NewFramework());
    framework->Start();
    auto context = framework->GetBundleContext();
    int seen = 0;
    auto token = context.AddServiceListener([&](ServiceEvent const&) {
        ++seen;
        framework.reset();
    });
    auto const registration = context.RegisterService<Plain>(std::make_shared<Plain>());
    EXPECT_EQ(1, seen);
    EXPECT_FALSE(context);
    EXPECT_THROW(context.RemoveListener(std::move(token)), std::runtime_error);
}

TEST_F(ListenerActs, keepsTokensBeyondTheStop)
{
    ListenerToken kept;
    int seen = 0;
    script.on("start wild",
              [&](BundleContext own) { kept = own.AddServiceListener([&seen](ServiceEvent const&) { ++seen; }); });
    auto bundle = start("wild");
    auto stale = bundle.GetBundleContext();
    bundle.Stop();
    seen = 0;
    auto context = host.context();
    context.RegisterService<Plain>(std::make_shared<Plain>());
    EXPECT_EQ(0, seen);
    EXPECT_THROW(stale.RemoveListener(std::move(kept)), std::runtime_error);
    context.RemoveListener(std::move(kept)); // no longer known to anyone
    host.stop();
    EXPECT_FALSE(kept);
}

} // namespace
