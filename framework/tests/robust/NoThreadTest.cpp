// Stopping a framework in a process that can make no thread for it.
#include "contract/robust/WildFixture.h"

#include <cppmicroservices/BundleEvent.h>
#include <cppmicroservices/FrameworkFactory.h>
#include <cppmicroservices/ServiceEvent.h>

#include <cstddef>
#include <pthread.h>
#include <thread>

namespace {

using namespace cppmicroservices;
using namespace ostrel::test;
using ::testing::HasSubstr;

/// No thread can be made while it lives: each would get a stack that is larger than the address space.
class NoThreads {
public:
    NoThreads()
    {
        pthread_attr_init(&m_before);
        pthread_getattr_default_np(&m_before);
        pthread_attr_t huge;
        pthread_attr_init(&huge);
        pthread_attr_setstacksize(&huge, std::size_t{1} << 47);
        pthread_setattr_default_np(&huge);
        pthread_attr_destroy(&huge);
    }
    NoThreads(NoThreads const&) = delete;
    NoThreads& operator=(NoThreads const&) = delete;
    ~NoThreads()
    {
        pthread_setattr_default_np(&m_before);
        pthread_attr_destroy(&m_before);
    }

private:
    pthread_attr_t m_before;
};

class NoThread : public WildFixture {
protected:
    /// Stops the framework where no thread can be made; what that throws.
    std::string refusal() const
    {
        NoThreads const none;
        auto own = framework();
        return thrownText<std::runtime_error>([&] { own.Stop(); });
    }

    void expectRefused(std::string const& text) const
    {
        EXPECT_THAT(text, HasSubstr("The framework cannot be stopped from inside an activator or a listener of its own "
                                    "bundles, as no thread can be made"));
        EXPECT_EQ(active, framework().GetState());
    }
};

TEST_F(NoThread, isNeededForAStop)
{
    std::vector<std::thread::id> stoppedBy;
    script.on("stop wild", [&](auto) { stoppedBy.push_back(std::this_thread::get_id()); });
    auto bundle = start("wild");
    auto own = framework();
    {
        NoThreads const none;
        EXPECT_ANY_THROW(std::thread([] {}).join()); // as was planned
        own.Stop();
    }
    EXPECT_EQ(resolved, own.GetState());
    EXPECT_EQ(installed, bundle.GetState());
    EXPECT_EQ(std::vector<std::thread::id>{std::this_thread::get_id()}, stoppedBy);
    EXPECT_EQ(FrameworkEvent::FRAMEWORK_STOPPED, own.WaitForStop(std::chrono::milliseconds::zero()).GetType());
    own.Start();
    EXPECT_EQ(active, own.GetState());
}

TEST_F(NoThread, isNeededForAStopThatActivatorsAskForOnceMore)
{
    auto own = framework();
    script.on("stop wild", [&](auto) { own.Stop(); });
    auto bundle = start("wild");
    NoThreads const none;
    own.Stop();
    EXPECT_EQ(resolved, own.GetState());
    EXPECT_EQ(1, countOf("stop wild"));
}

TEST_F(NoThread, refusesAStopInsideAnActivator)
{
    auto bundle = install("wild");
    for (std::string const event : {"construct wild", "start wild", "stop wild"}) {
        std::string text;
        script.on(event, [&](auto) { text = refusal(); });
        bundle.Start();
        bundle.Stop();
        expectRefused(text);
        script.on(event, nullptr);
    }
    bundle.Start();
    host.stop(); // with threads again
    EXPECT_EQ(installed, bundle.GetState());
}

TEST_F(NoThread, refusesAStopInsideAListener)
{
    auto context = host.context();
    std::string ofBundles;
    std::string ofServices;
    std::string ofFramework;
    auto bundles = context.AddBundleListener([&](BundleEvent const&) { ofBundles = refusal(); });
    install("wild");
    context.RemoveListener(std::move(bundles));
    context.AddServiceListener([&](ServiceEvent const&) { ofServices = refusal(); });
    context.AddServiceListener([&](ServiceEvent const&) { throw std::runtime_error("planned fault"); });
    context.AddFrameworkListener([&](FrameworkEvent const&) { ofFramework = refusal(); });
    context.RegisterService<int>(std::make_shared<int>(1)).Unregister();
    expectRefused(ofBundles);
    expectRefused(ofServices);
    expectRefused(ofFramework);
}

TEST_F(NoThread, refusesAStopInsideAListenerThatAnotherFrameworkWasCalledFrom)
{
    auto other = FrameworkFactory().NewFramework();
    other.Start();
    auto otherContext = other.GetBundleContext();
    auto context = host.context();
    std::string text;
    otherContext.AddServiceListener([&](ServiceEvent const&) { text = refusal(); });
    context.AddServiceListener(
        [&](ServiceEvent const&) { otherContext.RegisterService<int>(std::make_shared<int>(1)); });
    context.RegisterService<int>(std::make_shared<int>(1));
    expectRefused(text);
}

TEST_F(NoThread, stopsInAListenerOfAnotherFramework)
{
    auto other = FrameworkFactory().NewFramework();
    other.Start();
    auto own = framework();
    bool stopped = false;
    other.GetBundleContext().AddServiceListener([&](ServiceEvent const&) {
        NoThreads const none;
        own.Stop();
        stopped = own.GetState() == resolved;
    });
    other.GetBundleContext().RegisterService<int>(std::make_shared<int>(1));
    EXPECT_TRUE(stopped);
}

TEST_F(NoThread, stopsWhileAListenerRunsInAnotherThread)
{
    Latch inside;
    Latch done;
    auto context = host.context();
    context.AddServiceListener([&](ServiceEvent const&) {
        inside.open();
        done.waitFor();
    });
    std::thread registering([&] { context.RegisterService<int>(std::make_shared<int>(1)); });
    ASSERT_TRUE(inside.waitFor());
    auto own = framework();
    {
        NoThreads const none;
        own.Stop();
    }
    EXPECT_EQ(resolved, own.GetState());
    done.open();
    registering.join();
}

} // namespace
