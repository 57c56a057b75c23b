#include "bundles/shared/OwnContext.h"

#include "support/Host.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/ServiceReference.h>

#include <memory>

namespace {

using namespace cppmicroservices;
using ostrel::test::OwnContext;

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

} // namespace
