#include "contract/StartedFramework.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleActivator.h>
#include <cppmicroservices/BundleResource.h>
#include <cppmicroservices/BundleResourceStream.h>
#include <cppmicroservices/GetBundleContext.h>

#include <gmock/gmock.h>

#include <filesystem>
#include <string>
#include <vector>

namespace {

using namespace cppmicroservices;
using ostrel::test::stopAndWait;
using ::testing::ElementsAre;

struct Greeter {
    virtual ~Greeter() = default;
    virtual std::string greet() const { return "from " + GetBundleContext().GetBundle().GetSymbolicName(); }
};

std::vector<std::string> steps;

class Activator : public BundleActivator {
public:
    void Start(BundleContext context) override
    {
        steps.emplace_back(context == GetBundleContext() ? "start" : "start with another context");
        context.RegisterService<Greeter>(std::make_shared<Greeter>());
    }

    void Stop(BundleContext context) override
    {
        steps.emplace_back(context == GetBundleContext() ? "stop" : "stop with another context");
    }
};

std::string location()
{
    return std::filesystem::read_symlink("/proc/self/exe").string();
}

class Program : public ::testing::Test {
protected:
    Program()
    {
        steps.clear();
        framework.Start();
    }

    ~Program() override { stopAndWait(framework); }

    Bundle own() { return framework.GetBundleContext().GetBundle(1); }

    Framework framework = FrameworkFactory().NewFramework();
};

TEST(ProgramAtInit, isThere)
{
    auto framework = FrameworkFactory().NewFramework();
    framework.Init();
    auto const bundles = framework.GetBundleContext().GetBundles();
    ASSERT_EQ(3U, bundles.size());
    EXPECT_EQ("contract_program", bundles[0].GetSymbolicName());
    EXPECT_EQ("2.1.0", bundles[0].GetVersion().ToString());
    EXPECT_EQ("more", bundles[1].GetSymbolicName());
    for (long id : {1, 2}) {
        EXPECT_EQ(id, bundles[id - 1].GetBundleId());
        EXPECT_EQ(location(), bundles[id - 1].GetLocation());
        EXPECT_EQ(Bundle::STATE_INSTALLED, bundles[id - 1].GetState());
    }
    stopAndWait(framework);
}

TEST_F(Program, isInstalledAlready)
{
    auto const bundles = framework.GetBundleContext().InstallBundles(location());
    ASSERT_EQ(2U, bundles.size());
    EXPECT_EQ(own(), bundles[0]);
    EXPECT_EQ(3U, framework.GetBundleContext().GetBundles().size());
}

TEST_F(Program, hasAnActivator)
{
    EXPECT_FALSE(GetBundleContext());
    own().Start();
    EXPECT_EQ(own().GetBundleContext(), GetBundleContext());
    auto context = GetBundleContext();
    EXPECT_EQ("from contract_program", context.GetService(context.GetServiceReference<Greeter>())->greet());
    own().Stop();
    EXPECT_FALSE(GetBundleContext());
    EXPECT_THAT(steps, ElementsAre("start", "stop"));
}

TEST_F(Program, hasResourcesInEachOfItsBundles)
{
    EXPECT_FALSE(own().GetResource("text.txt"));
    auto const resource = framework.GetBundleContext().GetBundle(2).GetResource("text.txt");
    ASSERT_TRUE(resource);
    BundleResourceStream stream(resource);
    std::string line;
    std::getline(stream, line);
    EXPECT_EQ("a text", line);
}

TEST_F(Program, canBeUninstalledAndInstalledAgain)
{
    own().Start();
    own().Uninstall();
    EXPECT_FALSE(own());
    auto again = framework.GetBundleContext().InstallBundles(location());
    ASSERT_EQ(2U, again.size());
    EXPECT_EQ("contract_program", again[1].GetSymbolicName());
    EXPECT_EQ(3, again[1].GetBundleId());
    again[1].Start();
    EXPECT_TRUE(GetBundleContext());
}

TEST_F(Program, isThereAfterARestart)
{
    own().Start();
    stopAndWait(framework);
    EXPECT_FALSE(GetBundleContext());
    framework.Start();
    EXPECT_EQ(Bundle::STATE_INSTALLED, own().GetState());
    own().Start();
    EXPECT_THAT(steps, ElementsAre("start", "stop", "start"));
}

TEST_F(Program, isABundleOfEachFramework)
{
    auto other = FrameworkFactory().NewFramework();
    other.Start();
    auto others = other.GetBundleContext().GetBundle(1);
    EXPECT_NE(own(), others);
    own().Start();
    others.Start();
    EXPECT_EQ(others.GetBundleContext(), GetBundleContext()); // one slot for all: that of the last start
    own().Stop();
    EXPECT_FALSE(GetBundleContext());
    EXPECT_TRUE(others.GetBundleContext());
    stopAndWait(other);
    EXPECT_THAT(steps, ElementsAre("start", "start", "stop with another context", "stop with another context"));
}

} // namespace

CPPMICROSERVICES_EXPORT_BUNDLE_ACTIVATOR(Activator)
