#include "bundles/shared/Word.h"
#include "contract/ThrownText.h"
#include "support/BundleScript.h"
#include "support/Host.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>

#include <gmock/gmock.h>

#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace cppmicroservices;
using ostrel::test::BundleScript;
using ostrel::test::Host;
using ostrel::test::thrownText;
using ostrel::test::Word;
using ::testing::ElementsAre;

class Lifecycle : public ostrel::test::HostFixture {
protected:
    Bundle install(std::string const& target)
    {
        return host.context().InstallBundles(host.locationOf(host.add(target))).at(0);
    }

    BundleScript script{host.context()};
};

std::string startFailure(Bundle bundle)
{
    return thrownText<std::runtime_error>([&bundle] { bundle.Start(); });
}

TEST_F(Lifecycle, goesThroughItsStates)
{
    auto bundle = install("alpha");
    std::vector<Bundle::State> inside;
    script.on("start alpha", [&](BundleContext own) { inside.push_back(own.GetBundle().GetState()); });
    script.on("stop alpha", [&](BundleContext own) { inside.push_back(own.GetBundle().GetState()); });
    EXPECT_EQ(Bundle::STATE_INSTALLED, bundle.GetState());
    EXPECT_FALSE(bundle.GetBundleContext());
    bundle.Start();
    EXPECT_EQ(Bundle::STATE_ACTIVE, bundle.GetState());
    bundle.Start();
    auto const context = bundle.GetBundleContext();
    EXPECT_TRUE(context);
    bundle.Stop();
    EXPECT_EQ(Bundle::STATE_RESOLVED, bundle.GetState());
    EXPECT_FALSE(context);
    bundle.Stop();
    bundle.Start();
    EXPECT_NE(context, bundle.GetBundleContext());
    EXPECT_THAT(inside, ElementsAre(Bundle::STATE_STARTING, Bundle::STATE_STOPPING, Bundle::STATE_STARTING));
    EXPECT_THAT(script.events(), ElementsAre("start alpha", "stop alpha", "start alpha"));
    host.stop(); // while the script's actions may still run
}

TEST_F(Lifecycle, takesItsServicesAlongAtTheStop)
{
    auto bundle = install("alpha");
    bundle.Start();
    ASSERT_EQ(1U, bundle.GetRegisteredServices().size());
    ServiceReference<Word> const word(bundle.GetRegisteredServices().front());
    EXPECT_EQ(bundle, word.GetBundle());
    auto const service = host.context().GetService(word);
    EXPECT_EQ("alpha", service->text());
    bundle.Stop();
    EXPECT_FALSE(word);
    EXPECT_TRUE(bundle.GetRegisteredServices().empty());
    EXPECT_THAT(script.events(), ElementsAre("start alpha", "get alpha", "stop alpha", "release alpha"));
}

TEST_F(Lifecycle, releasesWhatItUsedAtTheStop)
{
    auto user = install("alpha");
    auto provider = install("beta");
    provider.Start();
    auto const word = ServiceReference<Word>(provider.GetRegisteredServices().front());
    std::shared_ptr<Word> held;
    script.on("start alpha", [&](BundleContext own) { held = own.GetService(word); });
    user.Start();
    ASSERT_EQ(1U, word.GetUsingBundles().size());
    EXPECT_EQ(user, word.GetUsingBundles().front());
    user.Stop();
    EXPECT_TRUE(word.GetUsingBundles().empty());
    EXPECT_EQ("beta", held->text());
}

TEST_F(Lifecycle, endsWithUninstall)
{
    auto bundle = install("alpha");
    auto const id = bundle.GetBundleId();
    auto const where = "Bundle alpha (location=" + bundle.GetLocation() + ")";
    bundle.Start();
    bundle.Uninstall();
    EXPECT_TRUE(bundle);
    EXPECT_EQ(Bundle::STATE_UNINSTALLED, bundle.GetState());
    EXPECT_EQ("alpha", bundle.GetSymbolicName());
    EXPECT_FALSE(host.context().GetBundle(id));
    EXPECT_EQ(where + " is uninstalled", thrownText<std::logic_error>([&] { bundle.Start(); }));
    EXPECT_EQ(where + " is uninstalled", thrownText<std::logic_error>([&] { bundle.Stop(); }));
    EXPECT_EQ(where + " is in BUNDLE_UNINSTALLED state", thrownText<std::logic_error>([&] { bundle.Uninstall(); }));
    EXPECT_EQ(where + " is in UNINSTALLED state",
              thrownText<std::logic_error>([&] { bundle.GetRegisteredServices(); }));
    EXPECT_THAT(script.events(), ElementsAre("start alpha", "stop alpha"));
}

TEST_F(Lifecycle, reportsAFailingStart)
{
    for (std::string const target : {"start_throws", "constructor_throws"}) {
        auto bundle = install(target);
        EXPECT_EQ("Bundle " + target + " (location= " + bundle.GetLocation() +
                      ") start failed: planned fault: " + target,
                  startFailure(bundle));
        EXPECT_EQ(Bundle::STATE_RESOLVED, bundle.GetState());
        EXPECT_FALSE(bundle.GetBundleContext());
        EXPECT_TRUE(bundle.GetRegisteredServices().empty());
    }
    auto odd = install("start_throws_int");
    EXPECT_EQ("Bundle start_throws_int (location= " + odd.GetLocation() + ") start failed: unknown", startFailure(odd));
}

TEST_F(Lifecycle, reportsAFailingStopAfterIt)
{
    auto bundle = install("stop_throws");
    bundle.Start();
    EXPECT_EQ("Bundle stop_throws (location=" + bundle.GetLocation() +
                  "), BundleActivator::Stop() failed: planned fault: stop_throws",
              thrownText<std::runtime_error>([&] { bundle.Stop(); }));
    EXPECT_EQ(Bundle::STATE_RESOLVED, bundle.GetState());
    bundle.Stop();
    bundle.Start();
    EXPECT_EQ(Bundle::STATE_ACTIVE, bundle.GetState());
}

TEST_F(Lifecycle, waitsForAStartInAnotherThread)
{
    auto bundle = install("alpha");
    std::thread other;
    script.on("start alpha", [&](BundleContext) {
        other = std::thread([bundle]() mutable { bundle.Stop(); });
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    });
    bundle.Start();
    other.join();
    EXPECT_EQ(Bundle::STATE_RESOLVED, bundle.GetState());
    EXPECT_THAT(script.events(), ElementsAre("start alpha", "stop alpha"));
}

TEST_F(Lifecycle, stopsTheBundlesWithTheFramework)
{
    auto alpha = install("alpha");
    auto beta = install("beta");
    beta.Start();
    alpha.Start();
    script.clear();
    host.stop();
    EXPECT_THAT(script.events(), ElementsAre("stop beta", "stop alpha"));
    EXPECT_EQ(Bundle::STATE_INSTALLED, alpha.GetState());
    EXPECT_TRUE(alpha.GetRegisteredServices().empty());
    alpha.Stop();
    alpha.Uninstall();
    EXPECT_EQ("Bundle alpha (location=" + alpha.GetLocation() + ") belongs to a stopped framework",
              startFailure(alpha));
}

TEST(BundleHandle, namesNoBundleAtFirst)
{
    Bundle none;
    EXPECT_FALSE(none);
    EXPECT_EQ(Bundle(), none);
    EXPECT_EQ("invalid bundle", thrownText<std::invalid_argument>([&] { none.GetState(); }));
    EXPECT_EQ("invalid bundle", thrownText<std::invalid_argument>([&] { none.Start(); }));
    std::ostringstream text;
    EXPECT_THROW(text << none, std::invalid_argument);
    EXPECT_EQ("Bundle[id=", text.str());
}

} // namespace
