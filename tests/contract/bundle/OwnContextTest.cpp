#include "bundles/shared/OwnContext.h"

#include "contract/StartedFramework.h"
#include "support/Host.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/BundleEvent.h>
#include <cppmicroservices/ServiceEvent.h>
#include <cppmicroservices/ServiceReference.h>

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

namespace {

using namespace cppmicroservices;
using ostrel::test::OwnContext;
using ::testing::ElementsAre;

class GetBundleContextInside : public ostrel::test::HostFixture {
protected:
    std::shared_ptr<OwnContext> inside() const
    {
        return host.context().GetService(host.context().GetServiceReference<OwnContext>());
    }

    Bundle bundle = host.context().InstallBundles(host.locationOf(host.add("own_context"))).at(0);
};

TEST_F(GetBundleContextInside, namesTheBundleWhileItIsStarted)
{
    bundle.Start();
    auto const service = inside();
    ASSERT_TRUE(service);
    ASSERT_TRUE(service->now());
    EXPECT_EQ(bundle.GetBundleContext(), service->now());
    EXPECT_EQ(bundle, service->now().GetBundle());
    EXPECT_EQ(service->now(), service->atConstruction());
    EXPECT_NE(host.context(), service->now());
}

TEST_F(GetBundleContextInside, isInvalidOnceTheBundleIsStopped)
{
    bundle.Start();
    auto const service = inside();
    ASSERT_TRUE(service);
    bundle.Stop();
    EXPECT_FALSE(service->now());
    EXPECT_FALSE(service->atConstruction());
}

TEST_F(GetBundleContextInside, isThereWhileTheServicesAreUnregistered)
{
    bundle.Start();
    auto const service = inside();
    ASSERT_TRUE(service);
    std::vector<std::string> seen;
    auto const look = [&](std::string const& when) { seen.push_back(when + (service->now() ? " valid" : " invalid")); };
    host.context().AddServiceListener([&](ServiceEvent const&) { look("UNREGISTERING"); });
    host.context().AddBundleListener([&](BundleEvent const& event) {
        look(event.GetType() == BundleEvent::BUNDLE_STOPPING ? "STOPPING" : "STOPPED");
    });
    bundle.Stop();
    EXPECT_THAT(seen, ElementsAre("STOPPING valid", "UNREGISTERING valid", "STOPPED invalid"));
    host.stop(); // while the listeners may still look
}

TEST_F(GetBundleContextInside, isTheNewOneAfterARestart)
{
    bundle.Start();
    auto const service = inside();
    ASSERT_TRUE(service);
    auto const first = service->now();
    bundle.Stop();
    bundle.Start();
    ASSERT_TRUE(service->now());
    EXPECT_EQ(bundle.GetBundleContext(), service->now());
    EXPECT_NE(first, service->now());
}

TEST_F(GetBundleContextInside, isOneForAllFrameworks)
{
    bundle.Start();
    auto const service = inside();
    auto framework = FrameworkFactory().NewFramework();
    framework.Start();
    auto context = framework.GetBundleContext();
    auto other = context.InstallBundles(bundle.GetLocation()).at(0);
    other.Start();
    auto const others = context.GetService(context.GetServiceReference<OwnContext>());
    EXPECT_EQ(other.GetBundleContext(), others->now());
    EXPECT_EQ(other.GetBundleContext(), service->now()); // that of the last start
    EXPECT_EQ(bundle.GetBundleContext(), service->atConstruction());
    bundle.Stop();
    EXPECT_FALSE(others->now());
    EXPECT_TRUE(other.GetBundleContext());
    bundle.Start();
    EXPECT_EQ(bundle.GetBundleContext(), others->now());
    ostrel::test::stopAndWait(framework);
    EXPECT_FALSE(service->now());
    EXPECT_TRUE(bundle.GetBundleContext());
    bundle.Stop();
    bundle.Start();
    EXPECT_EQ(bundle.GetBundleContext(), service->now());
}

} // namespace
