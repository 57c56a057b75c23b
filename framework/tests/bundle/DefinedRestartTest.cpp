// Where the other framework mixes what belongs to two runs, or says too little.
#include "contract/BundlesByManifest.h"
#include "contract/StartedFramework.h"
#include "contract/ThrownText.h"

#include <cppmicroservices/BundleEvent.h>
#include <cppmicroservices/Constants.h>
#include <cppmicroservices/FrameworkEvent.h>

#include <gtest/gtest.h>

#include <regex>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

using namespace cppmicroservices;
using ostrel::test::installByManifest;
using ostrel::test::stopAndWait;
using ostrel::test::thrownText;

class DefinedRestart : public ostrel::test::StartedFramework {};

TEST_F(DefinedRestart, keepsTheBundlesOfTwoRunsApart)
{
    auto old = installByManifest(context, {"b"}).at(0);
    stopAndWait(framework);
    framework.Start();
    auto const now = installByManifest(framework.GetBundleContext(), {"b"}).at(0);
    EXPECT_EQ(old.GetBundleId(), now.GetBundleId());
    EXPECT_NE(old, now);
    EXPECT_EQ("Bundle b (location=/proc/self/exe) belongs to a stopped framework",
              thrownText<std::runtime_error>([&] { old.Start(); }));
    EXPECT_EQ(Bundle::STATE_INSTALLED, now.GetState());
}

TEST_F(DefinedRestart, endsBundlesThatWereInstalledWhileItStopped)
{
    auto bundle = installByManifest(context, {"a"}).at(0);
    bundle.Start();
    Bundle late;
    context.AddBundleListener([this, &late](BundleEvent const& event) {
        if (event.GetType() == BundleEvent::BUNDLE_STOPPING && event.GetBundle().GetSymbolicName() == "a") {
            AnyMap const manifest{{"bundle.symbolic_name", std::string("late")}};
            // Behind the other one in the order of locations, so that the stop has passed by its place.
            late = context.InstallBundles("/proc/thread-self/exe", AnyMap{{"late", manifest}}).at(0);
        }
    });
    stopAndWait(framework);
    ASSERT_TRUE(late);
    framework.Start();
    EXPECT_EQ("Bundle late (location=/proc/thread-self/exe) belongs to a stopped framework",
              thrownText<std::runtime_error>([&] { late.Start(); }));
}

TEST_F(DefinedRestart, startsBundlesAfterInitAsInTheFirstRun)
{
    stopAndWait(framework);
    framework.Init();
    auto bundle = installByManifest(framework.GetBundleContext(), {"b"}).at(0);
    bundle.Start();
    EXPECT_EQ(Bundle::STATE_ACTIVE, bundle.GetState());
    framework.Start();
    EXPECT_EQ(Bundle::STATE_ACTIVE, bundle.GetState());
}

TEST_F(DefinedRestart, hasAUuidInTheUsualForm)
{
    auto const uuid = context.GetProperty(Constants::FRAMEWORK_UUID).ToString();
    EXPECT_TRUE(std::regex_match(uuid, std::regex("[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}"))) << uuid;
}

TEST(DefinedConfiguration, tellsOfLoadOptionsOfAnotherType)
{
    std::ostringstream log;
    FrameworkConfiguration configuration{{Constants::FRAMEWORK_LOG, true}, {Constants::LIBRARY_LOAD_OPTIONS, 1}};
    FrameworkFactory().NewFramework(configuration, &log);
    EXPECT_EQ(std::string::npos, log.str().find("is no int"));
    configuration[Constants::LIBRARY_LOAD_OPTIONS] = 1L;
    FrameworkFactory().NewFramework(configuration, &log);
    EXPECT_NE(std::string::npos,
              log.str().find("The property org.cppmicroservices.library.load.options is no int; 2 is "
                             "used instead.\n"));
}

TEST(DefinedConfiguration, isRefusedAsOftenAsItIsTried)
{
    auto framework =
        FrameworkFactory().NewFramework(FrameworkConfiguration{{Constants::FRAMEWORK_BUNDLE_VALIDATION_FUNC, 1}});
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_THROW(framework.Init(), BadAnyCastException);
        EXPECT_THROW(framework.Start(), BadAnyCastException);
        EXPECT_EQ(Bundle::STATE_INSTALLED, framework.GetState());
        EXPECT_FALSE(framework.GetBundleContext());
    }
    framework.Stop();
    EXPECT_EQ(FrameworkEvent::FRAMEWORK_STOPPED, framework.WaitForStop(std::chrono::seconds(1)).GetType());
}

TEST(DefinedStorage, saysWhichFolderCannotBeMade)
{
    auto framework = FrameworkFactory().NewFramework(
        FrameworkConfiguration{{Constants::FRAMEWORK_STORAGE, std::string("/proc/none")}});
    framework.Start();
    auto bundle = installByManifest(framework.GetBundleContext(), {"b"}).at(0);
    bundle.Start();
    EXPECT_EQ("Cannot make the folder /proc/none/data/1/ for a bundle's data: No such file or directory. Check the "
              "property org.cppmicroservices.framework.storage.",
              thrownText<std::invalid_argument>([&] { bundle.GetBundleContext().GetDataFile("x"); }));
    stopAndWait(framework);
}

} // namespace
