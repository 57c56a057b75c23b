#include "contract/BundlesByManifest.h"
#include "contract/StartedFramework.h"
#include "contract/ThrownText.h"

#include <cppmicroservices/Constants.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <unistd.h>

namespace {

using namespace cppmicroservices;
using ostrel::test::stopAndWait;
namespace fs = std::filesystem;

class Storage : public ::testing::Test {
protected:
    ~Storage() override { fs::remove_all(folder); }

    /// Starts a framework, and a bundle with the id 1 in it.
    Framework startWith(Any const& storage)
    {
        auto framework = FrameworkFactory().NewFramework(FrameworkConfiguration{
            {Constants::FRAMEWORK_STORAGE, storage}, {Constants::FRAMEWORK_WORKING_DIR, folder}});
        framework.Start();
        bundle = ostrel::test::installByManifest(framework.GetBundleContext(), {"b"}).at(0);
        bundle.Start();
        return framework;
    }

    std::string dataFile(std::string const& name) { return bundle.GetBundleContext().GetDataFile(name); }

    std::string const folder = ::testing::TempDir() + "storage_test_" + std::to_string(getpid());
    Bundle bundle;
};

TEST_F(Storage, hasAFolderForEachBundle)
{
    auto framework = startWith(folder + "/s");
    EXPECT_FALSE(fs::exists(folder));
    EXPECT_EQ(folder + "/s/data/1/x", dataFile("x"));
    EXPECT_TRUE(fs::is_directory(folder + "/s/data/1"));
    EXPECT_FALSE(fs::exists(folder + "/s/data/1/x"));
    EXPECT_EQ(folder + "/s/data/1/", dataFile(""));
    EXPECT_EQ(folder + "/s/data/1/a/b", dataFile("a/b"));
    EXPECT_EQ(folder + "/s/data/1//x", dataFile("/x"));
    stopAndWait(framework);
}

TEST_F(Storage, isLeftAsGiven)
{
    auto framework = startWith(folder + "/s/");
    EXPECT_EQ(folder + "/s//data/1/x", dataFile("x"));
    stopAndWait(framework);
}

TEST_F(Storage, isSeenFromTheWorkingFolder)
{
    auto framework = startWith(std::string("s"));
    EXPECT_EQ(folder + "/s/data/1/x", dataFile("x"));
    stopAndWait(framework);
    framework = startWith(5);
    EXPECT_EQ(folder + "/fwdir/data/1/x", dataFile("x"));
    stopAndWait(framework);
}

TEST_F(Storage, mayBeNone)
{
    auto framework = startWith(std::string());
    EXPECT_EQ("", dataFile("x"));
    stopAndWait(framework);
}

TEST_F(Storage, hasNothingForTheFramework)
{
    auto framework = startWith(folder + "/s");
    EXPECT_EQ("", framework.GetBundleContext().GetDataFile("x"));
    EXPECT_FALSE(fs::exists(folder));
    stopAndWait(framework);
}

TEST_F(Storage, isEmptiedWhenABundleIsUninstalled)
{
    auto framework = startWith(folder + "/s");
    auto const file = dataFile("x");
    std::ofstream(file) << "data";
    bundle.Stop();
    EXPECT_TRUE(fs::exists(file));
    bundle.Uninstall();
    EXPECT_FALSE(fs::exists(folder + "/s/data/1"));
    EXPECT_TRUE(fs::exists(folder + "/s/data"));
    stopAndWait(framework);
}

TEST_F(Storage, outlivesTheFramework)
{
    auto framework = startWith(folder + "/s");
    auto const file = dataFile("x");
    std::ofstream(file) << "data";
    stopAndWait(framework);
    EXPECT_TRUE(fs::exists(file));
    framework.Start();
    EXPECT_TRUE(fs::exists(file));
    stopAndWait(framework);
}

TEST_F(Storage, needsAFolderThatCanBeMade)
{
    auto framework = startWith(std::string("/proc/none"));
    EXPECT_THROW(dataFile("x"), std::invalid_argument);
    stopAndWait(framework);
}

} // namespace
