// Bundles that stop themselves or their framework from inside, and where a wait could never end.
#include "contract/robust/WildFixture.h"
#include "support/TemporaryDirectory.h"
#include "support/TestBundles.h"

#include <cppmicroservices/FrameworkFactory.h>

#include <filesystem>
#include <future>
#include <optional>

namespace {

using namespace cppmicroservices;
using namespace ostrel::test;
using std::chrono::milliseconds;

using Circle = WildFixture;

char const* const inside = "was called from inside the bundle's own activator";

TEST_F(Circle, isRefusedInConstructorAndDestructor)
{
    std::vector<std::string> refusals;
    auto const tryAll = [&](BundleContext own) {
        auto bundle = own.GetBundle();
        refusals.push_back(thrownText<std::runtime_error>([&] { bundle.Start(); }));
        refusals.push_back(thrownText<std::runtime_error>([&] { bundle.Stop(); }));
        refusals.push_back(thrownText<std::runtime_error>([&] { bundle.Uninstall(); }));
    };
    for (std::string const event : {"construct wild", "start wild", "stop wild", "destroy wild"}) {
        script.on(event, tryAll);
    }
    auto bundle = start("wild");
    bundle.Stop();
    EXPECT_EQ(resolved, bundle.GetState());
    EXPECT_EQ(12U, refusals.size());
    for (auto const& refusal : refusals) {
        EXPECT_NE(std::string::npos, refusal.find(inside)) << refusal;
    }
    host.stop();
}

TEST_F(Circle, isRefusedInWhatTheStopLetsGo)
{
    std::vector<std::string> refusals;
    auto bundle = start("wild");
    auto const stopAgain = [&](auto) {
        try {
            bundle.Stop();
        } catch (std::runtime_error const& e) {
            refusals.push_back(e.what());
        }
    };
    for (std::string const event : {"release wild", "end wild", "close wild"}) {
        script.on(event, stopAgain);
    }
    auto word = host.context().GetService(wordOf(bundle));
    std::weak_ptr<Word> const watch = word;
    bundle.Stop();
    EXPECT_EQ(resolved, bundle.GetState());
    word.reset(); // now the Word and its factory go; nobody holds the bundle
    EXPECT_TRUE(watch.expired());
    EXPECT_EQ(1, countOf("end wild"));
    // Before the Word goes the factory is asked to take it back, and goes itself; the Word is let go after the stop.
    EXPECT_EQ(2U, refusals.size());
    EXPECT_EQ(1, countOf("release wild"));
    EXPECT_EQ(1, countOf("close wild"));
    host.stop();
}

TEST_F(Circle, throughAnotherBundleIsRefused)
{
    auto first = install("wild");
    auto second = start("wild_too");
    std::string refusal;
    script.on("start wild", [=](BundleContext) mutable { second.Stop(); });
    script.on("stop wild_too",
              [&](BundleContext) { refusal = thrownText<std::runtime_error>([&first] { first.Stop(); }); });
    first.Start();
    EXPECT_NE(std::string::npos, refusal.find(inside));
    EXPECT_EQ(active, first.GetState());
    EXPECT_EQ(resolved, second.GetState());
    host.stop();
}

TEST_F(Circle, stopsWhatAnotherThreadStartsAsItMay)
{
    auto first = install("wild");
    auto second = install("wild_too");
    std::future<std::string> other;
    script.on("start wild", [&](BundleContext) {
        Latch begun;
        other = std::async(std::launch::async, [&begun, &first, &second] {
            second.Start();
            begun.open();
            try {
                first.Stop();
            } catch (std::runtime_error const& e) {
                return std::string(e.what());
            }
            return std::string();
        });
        EXPECT_TRUE(begun.waitFor());
        second.Stop();
    });
    first.Start();
    EXPECT_EQ("", other.get());
    EXPECT_EQ(resolved, first.GetState());
    EXPECT_EQ(resolved, second.GetState());
    host.stop();
}

TEST_F(Circle, waitingForTheStopIsRefusedOrEndsInTime)
{
    for (std::string const event : {"construct wild", "start wild", "stop wild", "destroy wild"}) {
        Host own;
        BundleScript actions(own.context());
        Framework system(own.context().GetBundle(0));
        actions.on(event, [system](BundleContext) mutable {
            system.Stop();
            EXPECT_EQ(FrameworkEvent::FRAMEWORK_WAIT_TIMEDOUT, system.WaitForStop(milliseconds(30)).GetType());
            EXPECT_THROW(system.WaitForStop(milliseconds(0)), std::runtime_error);
        });
        auto bundle = own.context().InstallBundles(own.locationOf(own.add("wild"))).at(0);
        bundle.Start();
        bundle.Stop();
        EXPECT_EQ(FrameworkEvent::FRAMEWORK_STOPPED, system.WaitForStop(milliseconds(0)).GetType()) << event;
        EXPECT_EQ(installed, bundle.GetState());
    }
}

TEST_F(Circle, waitingForTheStopInAFactoryEnds)
{
    auto bundle = start("wild");
    auto context = host.context();
    auto system = framework();
    std::optional<FrameworkEvent::Type> ended;
    script.on("get wild", [&](auto) {
        system.Stop();
        ended = system.WaitForStop(milliseconds(0)).GetType();
    });
    EXPECT_EQ(nullptr, context.GetService(wordOf(bundle)));
    EXPECT_EQ(FrameworkEvent::FRAMEWORK_STOPPED, ended);
    EXPECT_EQ(1, countOf("make wild"));
    EXPECT_EQ(1, countOf("end wild"));
    EXPECT_FALSE(context);
    host.stop();
}

TEST_F(Circle, theFrameworkDoesNotStartInsideItsOwnStop)
{
    auto system = framework();
    auto bundle = install("wild");
    std::string starting;
    script.on("start wild", [&](BundleContext) {
        Latch stopping;
        script.on("stop wild_too", [&](BundleContext) {
            stopping.open();
            EXPECT_THROW(system.Start(), std::runtime_error);
        });
        start("wild_too");
        system.Stop();
        EXPECT_TRUE(stopping.waitFor());
        starting = thrownText<std::runtime_error>([&] { system.Start(); });
        script.on("stop wild_too", nullptr);
    });
    bundle.Start();
    EXPECT_EQ("The framework cannot be started from inside its own stop.", starting);
    EXPECT_EQ(FrameworkEvent::FRAMEWORK_STOPPED, system.WaitForStop(milliseconds(0)).GetType());
    EXPECT_EQ(installed, bundle.GetState());
    host.stop();
}

/// A framework whose only handles are here.
class LastHandle : public ::testing::Test {
protected:
    LastHandle()
    {
        framework->Start();
        script.emplace(framework->GetBundleContext());
        TemporaryDirectory const& place = directory;
        auto const file = place.path() / "wild.so";
        std::filesystem::copy_file(testBundle("wild"), file);
        bundle = framework->GetBundleContext().InstallBundles(file.string()).at(0);
    }

    void letGo()
    {
        framework.reset();
        bundle = nullptr;
    }

    TemporaryDirectory directory;
    std::optional<Framework> framework{FrameworkFactory().NewFramework()};
    std::optional<BundleScript> script;
    Bundle bundle;
};

TEST_F(LastHandle, goesInTheActivator)
{
    BundleContext kept;
    script->on("start wild", [&](BundleContext own) {
        letGo();
        EXPECT_TRUE(own); // the framework lives until the start is done
        kept = own;
    });
    bundle.Start();
    EXPECT_FALSE(kept);
    EXPECT_THAT(script->events(),
                ::testing::ElementsAre("construct wild", "start wild", "stop wild", "destroy wild", "close wild"));
}

TEST_F(LastHandle, goesInTheFactory)
{
    bundle.Start();
    auto context = framework->GetBundleContext();
    auto const word = context.GetServiceReference<Word>();
    script->on("get wild", [&](auto) {
        letGo();
        EXPECT_TRUE(context); // the factory was given a handle of its user
    });
    EXPECT_EQ(nullptr, context.GetService(word));
    EXPECT_FALSE(context);
    EXPECT_FALSE(word);
    EXPECT_EQ(Bundle(), word.GetBundle());
}

TEST_F(LastHandle, goesInTheStopOfTheFramework)
{
    bundle.Start();
    Latch done;
    script->on("stop wild", [&](BundleContext) {
        letGo();
        done.open();
    });
    auto const stopIt = [this] {
        auto copy = *framework;
        copy.Stop();
    };
    stopIt(); // `framework` is let go by the thread that stops, or by this one
    EXPECT_TRUE(done.waitFor());
    EXPECT_FALSE(bundle);
}

} // namespace
