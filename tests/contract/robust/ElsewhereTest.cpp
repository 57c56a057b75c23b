// Registering, installing, stopping and uninstalling from where one would not expect it.
#include "contract/robust/WildFixture.h"

#include <future>

namespace {

using namespace cppmicroservices;
using namespace ostrel::test;

struct Plain {};

using Elsewhere = WildFixture;

TEST_F(Elsewhere, registersInTheActivatorsDestructor)
{
    auto bundle = start("wild");
    ServiceReferenceU late;
    script.on("destroy wild", [&](BundleContext own) {
        late = own.RegisterService<Plain>(std::make_shared<Plain>()).GetReference();
        EXPECT_TRUE(late);
    });
    bundle.Stop();
    EXPECT_FALSE(late);
    EXPECT_EQ(resolved, bundle.GetState());
    bundle.Start();
    bundle.Stop();
    EXPECT_EQ(2, countOf("destroy wild"));
    EXPECT_FALSE(host.context().GetServiceReference<Plain>());
    host.stop();
}

TEST_F(Elsewhere, installsInStartAndStop)
{
    auto const locationOfAlpha = host.locationOf(host.add("alpha"));
    auto const locationOfBeta = host.locationOf(host.add("beta"));
    script.on("start wild", [=](BundleContext own) { own.InstallBundles(locationOfAlpha).at(0).Start(); });
    script.on("stop wild", [=](BundleContext own) { own.InstallBundles(locationOfBeta); });
    auto bundle = start("wild");
    EXPECT_EQ(active, host.bundleIn("libalpha.so").GetState());
    bundle.Stop();
    EXPECT_EQ(installed, host.bundleIn("libbeta.so").GetState());
}

TEST_F(Elsewhere, installsWhileTheFrameworkStops)
{
    start("wild");
    auto const location = host.locationOf(host.add("alpha"));
    Bundle late;
    script.on("stop wild", [&](BundleContext own) { late = own.InstallBundles(location).at(0); });
    host.stop();
    ASSERT_TRUE(late);
    EXPECT_EQ(installed, late.GetState());
    EXPECT_EQ("Bundle alpha (location=" + location + ") belongs to a stopped framework",
              thrownText<std::runtime_error>([&] { late.Start(); }));
}

TEST_F(Elsewhere, stopsAnotherBundleInStartAndStop)
{
    auto other = start("wild_too");
    script.on("start wild", [=](BundleContext) mutable { other.Stop(); });
    script.on("stop wild", [=](BundleContext) mutable { other.Uninstall(); });
    auto bundle = start("wild");
    EXPECT_EQ(resolved, other.GetState());
    bundle.Stop();
    EXPECT_EQ(uninstalled, other.GetState());
    EXPECT_EQ(resolved, bundle.GetState());
}

TEST_F(Elsewhere, uninstallsAnotherWhileTheFrameworkStops)
{
    auto other = start("wild_too");
    start("wild");
    // The one that stops first ends the other.
    script.on("stop wild_too", [&](BundleContext own) {
        for (auto each : own.GetBundles(host.locationOf("libwild.so"))) {
            each.Uninstall();
        }
    });
    host.stop();
    EXPECT_EQ(1, countOf("stop wild"));
    EXPECT_EQ(1, countOf("destroy wild"));
    EXPECT_EQ(installed, other.GetState());
}

TEST_F(Elsewhere, uninstallsWhatStops)
{
    auto bundle = start("wild");
    std::future<void> other;
    script.on("stop wild", [&](BundleContext) {
        other = std::async(std::launch::async, [bundle]() mutable { bundle.Uninstall(); });
        EXPECT_EQ(std::future_status::timeout, other.wait_for(glance)); // it waits for this stop
    });
    bundle.Stop();
    other.get();
    EXPECT_EQ(uninstalled, bundle.GetState());
    EXPECT_EQ(1, countOf("stop wild"));
    host.stop();
}

TEST_F(Elsewhere, stopsItselfInAnotherThread)
{
    std::future<void> other;
    script.on("start wild", [&](BundleContext own) {
        other = std::async(std::launch::async, [bundle = own.GetBundle()]() mutable { bundle.Stop(); });
        EXPECT_EQ(std::future_status::timeout, other.wait_for(glance)); // it waits for this start
    });
    auto bundle = start("wild");
    other.get();
    EXPECT_EQ(resolved, bundle.GetState());
    EXPECT_EQ(1, countOf("stop wild"));
    host.stop();
}

TEST_F(Elsewhere, stopsItselfInItsFactory)
{
    auto bundle = start("wild");
    auto const word = wordOf(bundle);
    script.on("get wild", [bundle](auto) mutable { bundle.Stop(); });
    EXPECT_NO_THROW(host.context().GetService(word));
    EXPECT_EQ(resolved, bundle.GetState());
    EXPECT_FALSE(word);
    EXPECT_EQ(1, countOf("make wild"));
    EXPECT_EQ(1, countOf("end wild"));
}

TEST_F(Elsewhere, stopsItselfWhenItsServiceIsLetGo)
{
    auto bundle = start("wild");
    script.on("release wild", [bundle](auto) mutable { bundle.Stop(); });
    auto service = host.context().GetService(wordOf(bundle));
    service.reset();
    EXPECT_EQ(resolved, bundle.GetState());
    EXPECT_EQ(1, countOf("release wild"));
    EXPECT_EQ(1, countOf("end wild"));
}

TEST_F(Elsewhere, stopsTheFramework)
{
    using std::chrono::milliseconds;
    for (std::string const event : {"construct wild", "start wild", "get wild"}) {
        ostrel::test::Host own;
        BundleScript actions(own.context());
        Framework system(own.context().GetBundle(0));
        actions.on(event, [system](auto) mutable { system.Stop(); });
        auto bundle = own.context().InstallBundles(own.locationOf(own.add("wild"))).at(0);
        try {
            bundle.Start();
            own.context().GetService(own.context().GetServiceReference<Word>());
        } catch (std::exception const&) {
            // As far as it comes before the stop.
        }
        EXPECT_EQ(FrameworkEvent::FRAMEWORK_STOPPED, system.WaitForStop(milliseconds(0)).GetType()) << event;
        EXPECT_EQ(resolved, system.GetState());
        EXPECT_EQ(installed, bundle.GetState());
    }
}

} // namespace
