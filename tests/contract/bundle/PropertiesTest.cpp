#include "contract/BundlesByManifest.h"
#include "contract/StartedFramework.h"
#include "contract/ThrownText.h"

#include <gmock/gmock.h>

#include <dlfcn.h>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace {

using namespace cppmicroservices;
using ostrel::test::thrownText;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Properties : public ::testing::Test {
protected:
    Properties()
    {
        framework.Start();
        AnyMap inner(AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS);
        inner["in"] = 3;
        AnyMap outer(AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS);
        outer["inner"] = inner;
        AnyMap manifest(AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS);
        manifest["bundle.symbolic_name"] = std::string("b");
        manifest["Mine"] = std::string("x");
        manifest["shared"] = 2;
        manifest["outer"] = outer;
        manifest["list"] = std::vector<Any>{inner};
        bundle =
            framework.GetBundleContext()
                .InstallBundles("/proc/self/exe", AnyMap(AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS, {{"b", manifest}}))
                .at(0);
    }

    ~Properties() override { ostrel::test::stopAndWait(framework); }

    Framework framework =
        FrameworkFactory().NewFramework(FrameworkConfiguration{{"own", std::string("framework's")}, {"shared", 1}});
    Bundle bundle;
};

TEST_F(Properties, areThoseOfTheManifestBeforeThoseOfTheFramework)
{
    EXPECT_EQ("x", bundle.GetProperty("Mine").ToString());
    EXPECT_EQ("2", bundle.GetProperty("shared").ToString());
    EXPECT_EQ("framework's", bundle.GetProperty("own").ToString());
    EXPECT_TRUE(bundle.GetProperty("mine").Empty());
    EXPECT_TRUE(bundle.GetProperty("nope").Empty());
    EXPECT_TRUE(bundle.GetProperty("outer.inner").Empty());
    bundle.Uninstall();
    EXPECT_EQ("x", bundle.GetProperty("Mine").ToString());
}

TEST_F(Properties, ofTheFrameworkAreItsOwn)
{
    EXPECT_EQ("framework's", framework.GetProperty("own").ToString());
    EXPECT_TRUE(framework.GetProperty("OWN").Empty());
    EXPECT_TRUE(framework.GetProperty("bundle.symbolic_name").Empty());
    EXPECT_THAT(framework.GetProperties(), IsEmpty());
    EXPECT_THAT(framework.GetPropertyKeys(), IsEmpty());
}

TEST_F(Properties, areListedInOrder)
{
    EXPECT_THAT(bundle.GetPropertyKeys(), ElementsAre("Mine", "bundle.symbolic_name", "list", "outer", "shared"));
    EXPECT_EQ(5U, bundle.GetProperties().size());
    EXPECT_EQ("x", bundle.GetProperties().at("Mine").ToString());
}

TEST_F(Properties, haveStandardMapsForMaps)
{
    using Map = std::map<std::string, Any>;
    auto const all = bundle.GetProperties();
    auto const outer = any_cast<Map>(all.at("outer"));
    EXPECT_EQ("3", any_cast<Map>(outer.at("inner")).at("in").ToString());
    EXPECT_EQ(typeid(Map), bundle.GetProperty("outer").Type());
    auto const list = any_cast<std::vector<Any>>(all.at("list"));
    EXPECT_EQ(typeid(AnyMap), list.at(0).Type());
}

TEST_F(Properties, needABundle)
{
    EXPECT_EQ("invalid bundle", thrownText<std::invalid_argument>([] { Bundle().GetProperty("x"); }));
    EXPECT_EQ("invalid bundle", thrownText<std::invalid_argument>([] { Bundle().GetProperties(); }));
    EXPECT_EQ("invalid bundle", thrownText<std::invalid_argument>([] { Bundle().GetPropertyKeys(); }));
}

TEST_F(Properties, symbolsAreFoundWhileTheBundleIsActive)
{
    void* const self = dlopen(nullptr, RTLD_LAZY);
    auto const inactive = "Bundle is not started and active!";
    EXPECT_EQ(inactive, thrownText<std::runtime_error>([&] { bundle.GetSymbol(self, "malloc"); }));
    bundle.Start();
    EXPECT_EQ(dlsym(self, "malloc"), bundle.GetSymbol(self, "malloc"));
    EXPECT_EQ(nullptr, bundle.GetSymbol(self, "there_is_no_such_symbol"));
    EXPECT_EQ(dlsym(self, "malloc"), framework.GetSymbol(self, "malloc"));
    bundle.Stop();
    EXPECT_EQ(inactive, thrownText<std::runtime_error>([&] { bundle.GetSymbol(self, "malloc"); }));
    bundle.Uninstall();
    EXPECT_EQ(inactive, thrownText<std::runtime_error>([&] { bundle.GetSymbol(self, "malloc"); }));
    dlclose(self);
}

TEST_F(Properties, symbolsNeedAHandleAndAName)
{
    void* const self = dlopen(nullptr, RTLD_LAZY);
    bundle.Start();
    auto const text = "Error : Either bundle or inputs supplied are invalid!";
    EXPECT_EQ(text, thrownText<std::invalid_argument>([&] { bundle.GetSymbol(nullptr, "malloc"); }));
    EXPECT_EQ(text, thrownText<std::invalid_argument>([&] { bundle.GetSymbol(self, ""); }));
    EXPECT_EQ(text, thrownText<std::invalid_argument>([&] { Bundle().GetSymbol(self, "malloc"); }));
    dlclose(self);
}

} // namespace

#pragma GCC diagnostic pop
