#include "contract/BundlesByManifest.h"
#include "contract/StartedFramework.h"
#include "contract/ThrownText.h"
#include "contract/service/TestServices.h"

#include <cppmicroservices/Constants.h>

#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

namespace {

using namespace cppmicroservices;
using contract::Both;
using contract::Plain;
using ostrel::test::installByManifest;
using ostrel::test::stopAndWait;
using ostrel::test::thrownText;

class Restart : public ostrel::test::StartedFramework {};

TEST_F(Restart, takesAnyOptions)
{
    stopAndWait(framework);
    framework.Start(Bundle::START_TRANSIENT | Bundle::START_ACTIVATION_POLICY);
    EXPECT_EQ(Bundle::STATE_ACTIVE, framework.GetState());
    framework.Stop(Bundle::STOP_TRANSIENT);
    framework.WaitForStop(std::chrono::milliseconds::zero());
    EXPECT_EQ(Bundle::STATE_RESOLVED, framework.GetState());
    framework.Start(99);
    auto bundle = installByManifest(framework.GetBundleContext(), {"b"}).at(0);
    bundle.Start(99);
    EXPECT_EQ(Bundle::STATE_ACTIVE, bundle.GetState());
    bundle.Stop(77);
    EXPECT_EQ(Bundle::STATE_RESOLVED, bundle.GetState());
}

TEST_F(Restart, goesThroughInit)
{
    for (int cycle = 0; cycle < 3; ++cycle) {
        stopAndWait(framework);
        framework.Init();
        EXPECT_EQ(Bundle::STATE_STARTING, framework.GetState());
        EXPECT_TRUE(framework.GetBundleContext());
        stopAndWait(framework);
        EXPECT_EQ(Bundle::STATE_RESOLVED, framework.GetState());
        framework.Init();
        framework.Start();
        EXPECT_EQ(Bundle::STATE_ACTIVE, framework.GetState());
    }
}

TEST_F(Restart, forgetsBundlesAndServices)
{
    auto bundle = installByManifest(context, {"b"}).at(0);
    bundle.Start();
    auto const ofBundle = bundle.GetBundleContext().RegisterService<Plain>(std::make_shared<Both>());
    auto const ofFramework = context.RegisterService<Plain>(std::make_shared<Both>());
    auto const stopped = ofBundle.GetReference();
    auto const kept = ofFramework.GetReference();
    stopAndWait(framework);
    framework.Start();
    auto now = framework.GetBundleContext();
    EXPECT_NE(context, now);
    EXPECT_FALSE(context);
    EXPECT_EQ(1U, now.GetBundles().size());
    EXPECT_FALSE(now.GetBundle(1));
    EXPECT_FALSE(now.GetServiceReference<Plain>());
    EXPECT_TRUE(framework.GetRegisteredServices().empty());
    EXPECT_FALSE(stopped);
    EXPECT_TRUE(kept);
}

TEST_F(Restart, leavesOldHandlesBehind)
{
    auto bundle = installByManifest(context, {"b"}).at(0);
    bundle.Start();
    stopAndWait(framework);
    EXPECT_EQ(Bundle::STATE_INSTALLED, bundle.GetState());
    EXPECT_EQ("Bundle b (location=/proc/self/exe) belongs to a stopped framework",
              thrownText<std::runtime_error>([&] { bundle.Start(); }));
    framework.Start();
    EXPECT_EQ(Bundle::STATE_INSTALLED, bundle.GetState());
    EXPECT_EQ("b", bundle.GetSymbolicName());
    EXPECT_FALSE(bundle.GetBundleContext());
    EXPECT_TRUE(bundle.GetRegisteredServices().empty());
    auto again = installByManifest(framework.GetBundleContext(), {"b"}).at(0);
    EXPECT_EQ(1, again.GetBundleId());
    again.Start();
    EXPECT_EQ(Bundle::STATE_ACTIVE, again.GetState());
    EXPECT_EQ(Bundle::STATE_INSTALLED, bundle.GetState());
}

TEST_F(Restart, hasAnotherUuid)
{
    auto const uuid = context.GetProperty(Constants::FRAMEWORK_UUID).ToString();
    EXPECT_EQ(uuid, context.GetProperties().at(Constants::FRAMEWORK_UUID).ToString());
    stopAndWait(framework);
    framework.Start();
    EXPECT_NE(uuid, framework.GetBundleContext().GetProperty(Constants::FRAMEWORK_UUID).ToString());
}

TEST_F(Restart, keepsTheConfiguration)
{
    auto own = FrameworkFactory().NewFramework(FrameworkConfiguration{{"k", 1}});
    own.Start();
    stopAndWait(own);
    own.Start();
    EXPECT_EQ("1", own.GetBundleContext().GetProperty("k").ToString());
    stopAndWait(own);
}

TEST_F(Restart, doesNotConcernOtherFrameworks)
{
    auto other = FrameworkFactory().NewFramework();
    other.Start();
    auto otherContext = other.GetBundleContext();
    auto const mine = installByManifest(context, {"b"}).at(0);
    auto const theirs = installByManifest(otherContext, {"b"}).at(0);
    EXPECT_EQ(mine.GetBundleId(), theirs.GetBundleId());
    EXPECT_NE(mine, theirs);
    auto const registration = otherContext.RegisterService<Plain>(std::make_shared<Both>());
    EXPECT_FALSE(context.GetServiceReference<Plain>());
    stopAndWait(framework);
    EXPECT_EQ(Bundle::STATE_ACTIVE, other.GetState());
    EXPECT_TRUE(otherContext.GetService(registration.GetReference()));
    EXPECT_EQ(2U, otherContext.GetBundles().size());
    stopAndWait(other);
}

} // namespace
