#include "contract/BundlesByManifest.h"
#include "contract/StartedFramework.h"
#include "contract/event/Seen.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace cppmicroservices;
using contract::Seen;
using contract::textOf;
using ostrel::test::installByManifest;
using ostrel::test::stopAndWait;
using BundleListeners = ostrel::test::StartedFramework;

TEST_F(BundleListeners, seeEachChangeOfState)
{
    std::vector<std::string> seen;
    context.AddBundleListener([&seen](BundleEvent const& event) {
        EXPECT_TRUE(event.GetOrigin() == event.GetBundle());
        seen.push_back(textOf(event.GetType()) + " " + textOf(event.GetBundle().GetState()));
    });
    auto bundle = installByManifest(context, {"plain"}).at(0);
    EXPECT_EQ((std::vector<std::string>{"INSTALLED INSTALLED"}), seen);
    seen.clear();
    bundle.Start();
    EXPECT_EQ((std::vector<std::string>{"RESOLVED RESOLVED", "STARTING STARTING", "STARTED ACTIVE"}), seen);
    seen.clear();
    bundle.Start();
    EXPECT_TRUE(seen.empty());
    bundle.Stop();
    EXPECT_EQ((std::vector<std::string>{"STOPPING STOPPING", "STOPPED RESOLVED"}), seen);
    seen.clear();
    bundle.Stop();
    EXPECT_TRUE(seen.empty());
    bundle.Start();
    EXPECT_EQ((std::vector<std::string>{"STARTING STARTING", "STARTED ACTIVE"}), seen);
    seen.clear();
    bundle.Uninstall();
    EXPECT_EQ((std::vector<std::string>{"STOPPING STOPPING", "STOPPED RESOLVED", "UNRESOLVED INSTALLED",
                                        "UNINSTALLED UNINSTALLED"}),
              seen);
    stopAndWait(framework);
}

TEST_F(BundleListeners, seeNoLazyActivation)
{
    Seen seen;
    auto bundle =
        installByManifest(context, {"lazy"}, {{Constants::BUNDLE_ACTIVATIONPOLICY, Constants::ACTIVATION_LAZY}}).at(0);
    context.AddBundleListener(std::ref(seen));
    bundle.Start(Bundle::START_ACTIVATION_POLICY);
    EXPECT_EQ(Bundle::STATE_ACTIVE, bundle.GetState());
    EXPECT_EQ("RESOLVED STARTING STARTED", seen.types());
    stopAndWait(framework);
}

TEST_F(BundleListeners, seeTheirBundleStoppingButNotStopped)
{
    auto bundle = installByManifest(context, {"plain"}).at(0);
    bundle.Start();
    Seen mine;
    bundle.GetBundleContext().AddBundleListener(std::ref(mine));
    bundle.Stop();
    EXPECT_EQ("STOPPING", mine.types());
    bundle.Start();
    EXPECT_EQ("STOPPING", mine.types());
    stopAndWait(framework);
}

TEST_F(BundleListeners, findNoContextOnceTheBundleIsStopped)
{
    auto bundle = installByManifest(context, {"plain"}).at(0);
    bundle.Start();
    auto const own = bundle.GetBundleContext();
    std::vector<bool> valid;
    context.AddBundleListener([&](BundleEvent const&) { valid.push_back(own && bundle.GetBundleContext()); });
    bundle.Stop();
    EXPECT_EQ((std::vector<bool>{true, false}), valid);
    stopAndWait(framework);
}

TEST_F(BundleListeners, mayBeAddedTwice)
{
    Seen seen;
    BundleListener const listener = std::ref(seen);
    auto first = context.AddBundleListener(listener);
    auto second = context.AddBundleListener(listener);
    auto bundle = installByManifest(context, {"plain"}).at(0);
    EXPECT_EQ("INSTALLED INSTALLED", seen.typesAndClear());
    context.RemoveListener(std::move(second));
    bundle.Start();
    EXPECT_EQ("RESOLVED STARTING STARTED", seen.typesAndClear());
    context.RemoveListener(std::move(first));
    bundle.Stop();
    EXPECT_EQ("", seen.types());
    stopAndWait(framework);
}

TEST_F(BundleListeners, addedDuringAnEventGetTheNext)
{
    Seen late;
    bool done = false;
    auto bundle = installByManifest(context, {"plain"}).at(0);
    context.AddBundleListener([&](BundleEvent const&) {
        if (!done) {
            done = true;
            context.AddBundleListener(std::ref(late));
        }
    });
    bundle.Start();
    EXPECT_EQ("STARTING STARTED", late.types());
    stopAndWait(framework);
}

TEST_F(BundleListeners, mayStartAndStopOtherBundles)
{
    auto bundles = installByManifest(context, {"one", "two"});
    std::vector<std::string> seen;
    context.AddBundleListener([&](BundleEvent const& event) {
        seen.push_back(event.GetBundle().GetSymbolicName() + " " + textOf(event.GetType()));
        if (event.GetBundle() == bundles[0] && event.GetType() == BundleEvent::BUNDLE_STARTED) {
            bundles[1].Start();
        }
    });
    bundles[0].Start();
    EXPECT_EQ((std::vector<std::string>{"one RESOLVED", "one STARTING", "one STARTED", "two RESOLVED", "two STARTING",
                                        "two STARTED"}),
              seen);
    stopAndWait(framework);
}

TEST(BundleListenersOfARun, seeOnlyThatTheFrameworkStops)
{
    auto framework = FrameworkFactory().NewFramework();
    framework.Init();
    auto context = framework.GetBundleContext();
    std::vector<std::string> seen;
    context.AddBundleListener([&](BundleEvent const& event) {
        EXPECT_TRUE(context);
        seen.push_back(event.GetBundle().GetSymbolicName() + " " + textOf(event.GetType()));
    });
    framework.Start();
    EXPECT_TRUE(seen.empty());
    auto bundle = installByManifest(context, {"plain"}).at(0);
    bundle.Start();
    seen.clear();
    stopAndWait(framework);
    EXPECT_EQ((std::vector<std::string>{"system_bundle STOPPING", "plain STOPPING", "plain STOPPED"}), seen);
    seen.clear();
    framework.Start();
    stopAndWait(framework);
    EXPECT_TRUE(seen.empty());
}

} // namespace
