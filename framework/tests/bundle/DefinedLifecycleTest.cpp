// Where the other framework never returns, crashes or ends the process.
#include "contract/ThrownText.h"
#include "support/BundleScript.h"
#include "support/Host.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/Framework.h>
#include <cppmicroservices/FrameworkEvent.h>
#include <cppmicroservices/FrameworkFactory.h>
#include <cppmicroservices/SharedLibraryException.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace cppmicroservices;
using ostrel::test::thrownText;

class DefinedLifecycle : public ostrel::test::HostFixture {
protected:
    Bundle install(std::string const& target)
    {
        return host.context().InstallBundles(host.locationOf(host.add(target))).at(0);
    }

    ostrel::test::BundleScript script{host.context()};
};

TEST_F(DefinedLifecycle, refusesTheOwnStartAndStopInsideTheActivator)
{
    auto bundle = install("alpha");
    std::string starting;
    std::string stopping;
    std::string uninstalling;
    script.on("start alpha",
              [&](BundleContext own) { starting = thrownText<std::runtime_error>([&] { own.GetBundle().Start(); }); });
    script.on("stop alpha", [&](BundleContext own) {
        stopping = thrownText<std::runtime_error>([&] { own.GetBundle().Stop(); });
        uninstalling = thrownText<std::runtime_error>([&] { own.GetBundle().Uninstall(); });
    });
    bundle.Start();
    bundle.Stop();
    EXPECT_NE(std::string::npos, starting.find(": Start() was called from inside the bundle's own activator"));
    EXPECT_NE(std::string::npos, stopping.find(": Stop() was called from inside the bundle's own activator"));
    EXPECT_NE(std::string::npos, uninstalling.find(": Uninstall() was called from inside the bundle's own activator"));
    EXPECT_EQ(Bundle::STATE_RESOLVED, bundle.GetState());
}

TEST_F(DefinedLifecycle, refusesTwoActivatorsThatWaitForEachOther)
{
    auto alpha = install("alpha");
    auto beta = install("beta");
    std::atomic<int> inside{0};
    std::atomic<int> refused{0};
    auto const startTheOther = [&](Bundle other) {
        return [&inside, &refused, other](BundleContext) mutable {
            ++inside;
            while (inside < 2) {
                std::this_thread::yield();
            }
            try {
                other.Start();
            } catch (std::runtime_error const&) {
                ++refused;
            }
        };
    };
    script.on("start alpha", startTheOther(beta));
    script.on("start beta", startTheOther(alpha));
    std::thread first([alpha]() mutable { alpha.Start(); });
    std::thread second([beta]() mutable { beta.Start(); });
    first.join();
    second.join();
    EXPECT_EQ(1, refused);
    EXPECT_EQ(Bundle::STATE_ACTIVE, alpha.GetState());
    EXPECT_EQ(Bundle::STATE_ACTIVE, beta.GetState());
}

TEST_F(DefinedLifecycle, refusesToWaitForTheStopInsideAnActivator)
{
    auto bundle = install("alpha");
    std::string waiting;
    script.on("start alpha", [&](BundleContext own) {
        Framework framework(own.GetBundle(0));
        waiting = thrownText<std::runtime_error>([&] { framework.WaitForStop(std::chrono::milliseconds(0)); });
    });
    bundle.Start();
    EXPECT_EQ(0U, waiting.find("WaitForStop() without a time limit was called from inside an activator"));
}

TEST_F(DefinedLifecycle, startsNothingWhileTheFrameworkStops)
{
    auto alpha = install("alpha");
    auto beta = install("beta");
    beta.Start();
    alpha.Start();
    beta.Stop();
    std::string starting;
    script.on("stop alpha", [&](BundleContext) { starting = thrownText<std::runtime_error>([&] { beta.Start(); }); });
    host.stop();
    EXPECT_EQ("Bundle beta (location=" + beta.GetLocation() + ") belongs to a stopped framework", starting);
}

TEST_F(DefinedLifecycle, namesTheMissingSymbolByDefault)
{
    auto framework = FrameworkFactory().NewFramework(); // without load options
    framework.Start();
    auto bundle = framework.GetBundleContext().InstallBundles(host.locationOf(host.add("missing_symbol"))).at(0);
    auto const text = thrownText<SharedLibraryException>([&] { bundle.Start(); });
    EXPECT_EQ("Error loading " + bundle.GetLocation() + ". " + bundle.GetLocation() +
                  ": undefined symbol: ostrelTestNobodyDefinesThis: Success: Success",
              text);
    EXPECT_EQ(Bundle::STATE_RESOLVED, bundle.GetState());
    framework.Stop();
    framework.WaitForStop(std::chrono::milliseconds(0));
}

TEST_F(DefinedLifecycle, cannotInstallTheFrameworkItself)
{
    EXPECT_EQ("'System Bundle' is the location of the framework itself; nothing can be installed from there.",
              thrownText<std::runtime_error>([&] { host.context().InstallBundles("System Bundle"); }));
    EXPECT_THROW(Framework{install("alpha")}, std::logic_error);
}

TEST_F(DefinedLifecycle, startsAndStopsOneBundleFromManyThreads)
{
    auto bundle = install("alpha");
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([bundle, i]() mutable {
            for (int round = 0; round < 50; ++round) {
                i % 2 == 0 ? bundle.Start() : bundle.Stop();
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    bundle.Stop();
    EXPECT_EQ(Bundle::STATE_RESOLVED, bundle.GetState());
    EXPECT_EQ(0U, script.events().size() % 2);
}

} // namespace
