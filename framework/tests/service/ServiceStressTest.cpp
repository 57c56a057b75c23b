// For the thread sanitizer first of all: many threads on one registry, and a stop in the middle.
#include "contract/StartedFramework.h"
#include "contract/service/TestServices.h"

#include <cppmicroservices/ServiceFactory.h>

#include <atomic>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace cppmicroservices;
using contract::Both;
using contract::Plain;

class SlowFactory final : public ServiceFactory {
public:
    InterfaceMapConstPtr GetService(Bundle const&, ServiceRegistrationBase const&) override
    {
        EXPECT_EQ(1, ++inside); // one at a time for one bundle
        std::this_thread::yield();
        --inside;
        ++made;
        return MakeInterfaceMap<Plain>(std::make_shared<Both>());
    }
    void UngetService(Bundle const&, ServiceRegistrationBase const&, InterfaceMapConstPtr const&) override { ++taken; }

    std::atomic<int> inside{0};
    std::atomic<int> made{0};
    std::atomic<int> taken{0};
};

template <class Work>
void inThreads(int count, Work work)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i) {
        threads.emplace_back([work, i] { work(i); });
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

using Stress = ostrel::test::StartedFramework;

TEST_F(Stress, registersFindsUsesAndUnregistersAtOnce)
{
    inThreads(4, [this](int number) {
        for (int round = 0; round < 200; ++round) {
            auto registration = context.RegisterService<Plain>(std::make_shared<Both>(), {{"n", number}});
            registration.SetProperties({{"n", number}, {"service.ranking", round % 3}});
            auto const own = registration.GetReference();
            auto const id = std::to_string(any_cast<long>(own.GetProperty("service.id")));
            EXPECT_EQ(1U, context.GetServiceReferences("", "(service.id=" + id + ")").size());
            EXPECT_EQ(1, context.GetService(own)->number());
            for (auto const& any : context.GetServiceReferences<Plain>()) {
                try {
                    context.GetService(any);
                } catch (std::invalid_argument const&) {
                    continue; // another thread unregistered it
                }
            }
            registration.Unregister();
        }
    });
    EXPECT_TRUE(context.GetServiceReferences("").empty());
    EXPECT_TRUE(context.GetBundle().GetServicesInUse().empty());
}

TEST_F(Stress, makesAndTakesWithOneFactoryFromManyThreads)
{
    auto const factory = std::make_shared<SlowFactory>();
    auto const reference = context.RegisterService<Plain>(ToFactory(factory)).GetReference();
    inThreads(4, [this, &reference](int) {
        for (int round = 0; round < 200; ++round) {
            EXPECT_TRUE(context.GetService(reference));
        }
    });
    EXPECT_EQ(factory->made, factory->taken);
    EXPECT_TRUE(reference.GetUsingBundles().empty());
}

TEST(StressOfStates, startsAndStopsFromManyThreads)
{
    auto framework = FrameworkFactory().NewFramework();
    inThreads(4, [handle = framework](int number) {
        auto framework = handle;
        for (int round = 0; round < 30; ++round) {
            if (number % 2 == 0) {
                framework.Start();
                try {
                    auto context = framework.GetBundleContext();
                    auto const service = context.RegisterService<Plain>(std::make_shared<Both>());
                    context.GetService(service.GetReference());
                } catch (std::runtime_error const& e) {
                    EXPECT_STREQ("The bundle context is no longer valid", e.what());
                }
            } else {
                framework.Stop();
                framework.WaitForStop(std::chrono::milliseconds(50));
            }
        }
    });
    framework.Start();
    ostrel::test::stopAndWait(framework);
    EXPECT_EQ(Bundle::STATE_RESOLVED, framework.GetState());
}

} // namespace
