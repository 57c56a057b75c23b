// For the thread sanitizer first of all: listeners come and go while events are delivered.
#include "contract/BundlesByManifest.h"
#include "contract/StartedFramework.h"
#include "contract/event/Seen.h"
#include "contract/service/TestServices.h"

#include <atomic>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

using namespace cppmicroservices;
using contract::Both;
using contract::Named;
using contract::Plain;
using ostrel::test::installByManifest;
using ListenerStress = ostrel::test::StartedFramework;

TEST_F(ListenerStress, addsAndRemovesWhileServicesComeAndGo)
{
    std::atomic<int> always{0};
    std::atomic<int> passing{0};
    std::atomic<int> faults{0};
    auto kept =
        context.AddServiceListener([&always](ServiceEvent const&) { ++always; }, "(objectclass=contract::Plain)");
    auto errors = context.AddFrameworkListener([&faults](FrameworkEvent const&) { ++faults; });
    constexpr int rounds = 200;
    std::vector<std::thread> threads;
    for (int number = 0; number < 2; ++number) {
        threads.emplace_back([this] {
            for (int round = 0; round < rounds; ++round) {
                auto registration = context.RegisterService<Plain>(std::make_shared<Both>(), {{"a", 1}});
                registration.SetProperties({{"a", 2}});
                registration.Unregister();
            }
        });
        threads.emplace_back([this, &passing, number] {
            for (int round = 0; round < rounds; ++round) {
                auto token = context.AddServiceListener([&passing](ServiceEvent const&) { ++passing; },
                                                        number == 0 ? "(objectclass=contract::Plain)" : "(a=1)");
                auto thrower = context.AddServiceListener([](ServiceEvent const&) { throw 1; });
                context.RegisterService<Named>(std::make_shared<Both>(), {{"a", 1}}).Unregister();
                context.RemoveListener(std::move(thrower));
                context.RemoveListener(std::move(token));
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(2 * rounds * 3, always);
    EXPECT_LE(2 * rounds, passing); // the second one's own services at least
    EXPECT_LE(2 * rounds * 2, faults);
    context.RemoveListener(std::move(kept));
    context.RemoveListener(std::move(errors));
}

TEST_F(ListenerStress, stopsBundlesWhileTheirListenersAreCalled)
{
    auto bundles = installByManifest(context, {"one", "two"});
    std::atomic<bool> done{false};
    std::atomic<int> calls{0};
    std::thread causer([&] {
        while (!done.load()) {
            auto registration = context.RegisterService<Plain>(std::make_shared<Both>());
            registration.Unregister();
        }
    });
    std::vector<std::thread> stoppers;
    for (auto& bundle : bundles) {
        stoppers.emplace_back([&calls, bundle]() mutable {
            for (int round = 0; round < 100; ++round) {
                bundle.Start();
                auto own = bundle.GetBundleContext();
                own.AddServiceListener([&calls](ServiceEvent const&) { ++calls; });
                own.AddBundleListener([&calls](BundleEvent const&) { ++calls; });
                auto const left = own.RegisterService<Named>(std::make_shared<Both>());
                bundle.Stop();
            }
        });
    }
    for (auto& stopper : stoppers) {
        stopper.join();
    }
    done = true;
    causer.join();
    EXPECT_LE(2 * 100 * 2, calls); // each hears of its own service and of its bundle's stopping
    int const atTheEnd = calls;
    auto const registration = context.RegisterService<Plain>(std::make_shared<Both>());
    EXPECT_EQ(atTheEnd, calls);
}

} // namespace
