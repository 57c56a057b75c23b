#include "contract/StartedFramework.h"
#include "contract/ThrownText.h"

#include <cppmicroservices/Constants.h>

#include <chrono>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

using namespace cppmicroservices;
using ostrel::test::stopAndWait;
using ostrel::test::thrownText;
using std::chrono::milliseconds;

std::string const invalidContext = "The bundle context is no longer valid";

TEST(FrameworkStates, goUpAndDown)
{
    auto framework = FrameworkFactory().NewFramework();
    EXPECT_EQ(Bundle::STATE_INSTALLED, framework.GetState());
    EXPECT_FALSE(framework.GetBundleContext());
    framework.Init();
    EXPECT_EQ(Bundle::STATE_STARTING, framework.GetState());
    auto const context = framework.GetBundleContext();
    EXPECT_TRUE(context);
    framework.Start();
    EXPECT_EQ(Bundle::STATE_ACTIVE, framework.GetState());
    EXPECT_EQ(context, framework.GetBundleContext());
    framework.Start();
    framework.Init();
    EXPECT_EQ(Bundle::STATE_ACTIVE, framework.GetState());
    framework.Stop();
    auto const stopped = framework.WaitForStop(milliseconds(0));
    EXPECT_EQ(FrameworkEvent::FRAMEWORK_STOPPED, stopped.GetType());
    EXPECT_EQ("", stopped.GetMessage());
    EXPECT_EQ(framework, stopped.GetBundle());
    EXPECT_EQ(Bundle::STATE_RESOLVED, framework.GetState());
    EXPECT_FALSE(context);
    framework.Stop();
    EXPECT_EQ(FrameworkEvent::FRAMEWORK_STOPPED, framework.WaitForStop(milliseconds(0)).GetType());
}

TEST(FrameworkStates, stopsAfterInitAlone)
{
    auto framework = FrameworkFactory().NewFramework();
    framework.Init();
    stopAndWait(framework);
    EXPECT_EQ(Bundle::STATE_RESOLVED, framework.GetState());
}

TEST(FrameworkStates, waitNotForOneThatWasNeverStarted)
{
    auto framework = FrameworkFactory().NewFramework();
    auto const event = framework.WaitForStop(milliseconds(0));
    EXPECT_EQ(FrameworkEvent::FRAMEWORK_ERROR, event.GetType());
    std::ostringstream text;
    text << event;
    EXPECT_EQ("ERROR\n \n Bundle[id=0, loc=System Bundle, name=system_bundle, state=INSTALLED]\n Exception: NONE",
              text.str());
}

TEST(FrameworkStates, takeAStopBeforeAnyStart)
{
    auto framework = FrameworkFactory().NewFramework();
    framework.Stop();
    EXPECT_EQ(Bundle::STATE_INSTALLED, framework.GetState());
    EXPECT_EQ(FrameworkEvent::FRAMEWORK_STOPPED, framework.WaitForStop(milliseconds(0)).GetType());
    EXPECT_EQ(Bundle::STATE_INSTALLED, framework.GetState());
}

TEST(FrameworkStates, waitNoLongerThanAsked)
{
    auto framework = FrameworkFactory().NewFramework();
    framework.Start();
    EXPECT_EQ(FrameworkEvent::FRAMEWORK_WAIT_TIMEDOUT, framework.WaitForStop(milliseconds(5)).GetType());
    EXPECT_EQ(FrameworkEvent::FRAMEWORK_WAIT_TIMEDOUT, framework.WaitForStop(milliseconds(-1)).GetType());
    stopAndWait(framework);
}

TEST(FrameworkStates, startAgainWithANewContext)
{
    auto framework = FrameworkFactory().NewFramework();
    framework.Start();
    auto const first = framework.GetBundleContext();
    stopAndWait(framework);
    framework.Start();
    EXPECT_FALSE(first);
    EXPECT_TRUE(framework.GetBundleContext());
    EXPECT_EQ(1U, framework.GetBundleContext().GetBundles().size());
    stopAndWait(framework);
}

TEST(FrameworkStates, stopByTheHandleOfBundleZero)
{
    auto framework = FrameworkFactory().NewFramework();
    framework.Start();
    auto bundle = framework.GetBundleContext().GetBundle(0);
    EXPECT_EQ(framework, bundle);
    bundle.Stop();
    EXPECT_EQ(FrameworkEvent::FRAMEWORK_STOPPED, Framework(bundle).WaitForStop(milliseconds(0)).GetType());
}

TEST(FrameworkStates, endQuietlyWithTheLastHandle)
{
    BundleContext context;
    Bundle kept;
    {
        auto framework = FrameworkFactory().NewFramework();
        framework.Start();
        context = framework.GetBundleContext();
        kept = context.GetBundle();
    }
    EXPECT_TRUE(context);
    kept = nullptr;
    EXPECT_FALSE(context);
    EXPECT_EQ(invalidContext, thrownText<std::runtime_error>([&] { context.GetBundles(); }));
}

TEST(FrameworkStates, refuseUninstall)
{
    auto framework = FrameworkFactory().NewFramework();
    framework.Start();
    EXPECT_EQ("Cannot uninstall a system bundle.", thrownText<std::runtime_error>([&] { framework.Uninstall(); }));
    stopAndWait(framework);
}

TEST(FrameworkBundle, describesItself)
{
    auto const framework = FrameworkFactory().NewFramework();
    EXPECT_EQ(0, framework.GetBundleId());
    EXPECT_EQ("system_bundle", framework.GetSymbolicName());
    EXPECT_EQ("System Bundle", framework.GetLocation());
    EXPECT_EQ("3.8.4", framework.GetVersion().ToString());
    EXPECT_EQ("C++ Micro Services", framework.GetHeaders().at("bundle.vendor").ToString());
    EXPECT_EQ("System Bundle", framework.GetHeaders().at("bundle.name").ToString());
    EXPECT_EQ("3.8.4", framework.GetHeaders().at("bundle.version").ToString());
    EXPECT_EQ("system_bundle", framework.GetHeaders().at("bundle.symbolic_name").ToString());
    EXPECT_EQ("C++ Micro Services System Bundle", framework.GetHeaders().at("bundle.description").ToString());
    EXPECT_EQ("2", framework.GetHeaders().at("Bundle.Manifest_Version").ToString());
}

TEST(FrameworkProperties, areThoseGivenAndDefaults)
{
    FrameworkConfiguration configuration;
    configuration["my.key"] = 7;
    auto framework = FrameworkFactory().NewFramework(configuration);
    framework.Start();
    auto const context = framework.GetBundleContext();
    EXPECT_EQ(7, any_cast<int>(context.GetProperty("my.key")));
    EXPECT_TRUE(context.GetProperty("My.Key").Empty());
    EXPECT_EQ("3.8.4", context.GetProperty(Constants::FRAMEWORK_VERSION).ToString());
    EXPECT_EQ("CppMicroServices", context.GetProperty(Constants::FRAMEWORK_VENDOR).ToString());
    EXPECT_EQ("multi", context.GetProperty(Constants::FRAMEWORK_THREADING_SUPPORT).ToString());
    EXPECT_FALSE(any_cast<bool>(context.GetProperty(Constants::FRAMEWORK_LOG)));
    EXPECT_EQ(any_map::UNORDERED_MAP, context.GetProperties().GetType());
    auto other = FrameworkFactory().NewFramework();
    other.Start();
    EXPECT_NE(context.GetProperty(Constants::FRAMEWORK_UUID).ToString(),
              other.GetBundleContext().GetProperty(Constants::FRAMEWORK_UUID).ToString());
    stopAndWait(other);
    stopAndWait(framework);
}

TEST(InvalidContext, refusesEverything)
{
    BundleContext none;
    EXPECT_EQ(none, BundleContext());
    EXPECT_FALSE(none);
    EXPECT_EQ(invalidContext, thrownText<std::runtime_error>([&] { none.GetBundle(); }));
    EXPECT_EQ(invalidContext, thrownText<std::runtime_error>([&] { none.GetBundle(0); }));
    EXPECT_EQ(invalidContext, thrownText<std::runtime_error>([&] { none.GetBundles(); }));
    EXPECT_EQ(invalidContext, thrownText<std::runtime_error>([&] { none.GetBundles("x"); }));
    EXPECT_EQ(invalidContext, thrownText<std::runtime_error>([&] { none.GetProperty("x"); }));
    EXPECT_EQ(invalidContext, thrownText<std::runtime_error>([&] { none.GetProperties(); }));
    EXPECT_EQ(invalidContext, thrownText<std::runtime_error>([&] { none.InstallBundles("x"); }));
    EXPECT_EQ(invalidContext, thrownText<std::runtime_error>([&] { none.GetServiceReferences("x"); }));
    EXPECT_EQ(invalidContext, thrownText<std::runtime_error>([&] { none.GetServiceReference("x"); }));
    EXPECT_EQ(invalidContext,
              thrownText<std::runtime_error>([&] { (void)none.RegisterService(InterfaceMapConstPtr()); }));
}

} // namespace
