#include "contract/BundlesByManifest.h"
#include "contract/StartedFramework.h"
#include "contract/ThrownText.h"

#include <cppmicroservices/Constants.h>

#include <gmock/gmock.h>

#include <dlfcn.h>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>

namespace {

using namespace cppmicroservices;
using ostrel::test::stopAndWait;
using ostrel::test::thrownText;

Framework started(FrameworkConfiguration const& configuration, std::ostream* log = nullptr)
{
    auto framework = FrameworkFactory().NewFramework(configuration, log);
    framework.Start();
    return framework;
}

std::string property(Framework const& framework, std::string const& key)
{
    return framework.GetBundleContext().GetProperty(key).ToStringNoExcept();
}

TEST(Configuration, isGivenBackUnchanged)
{
    auto framework = started({{"Text", std::string("x")},
                              {Constants::FRAMEWORK_STORAGE, std::string("/s/")},
                              {Constants::FRAMEWORK_STORAGE_CLEAN, Constants::FRAMEWORK_STORAGE_CLEAN_ONFIRSTINIT},
                              {Constants::LIBRARY_LOAD_OPTIONS, 2}});
    EXPECT_EQ("x", property(framework, "Text"));
    EXPECT_TRUE(framework.GetBundleContext().GetProperty("text").Empty());
    EXPECT_EQ("/s/", property(framework, "org.cppmicroservices.framework.storage"));
    EXPECT_EQ("onFirstInit", property(framework, "org.cppmicroservices.framework.storage.clean"));
    EXPECT_EQ("2", property(framework, "org.cppmicroservices.library.load.options"));
    auto const all = framework.GetBundleContext().GetProperties();
    EXPECT_EQ(AnyMap::UNORDERED_MAP, all.GetType());
    EXPECT_EQ(1U, all.count("Text"));
    stopAndWait(framework);
}

TEST(Configuration, hasDefaults)
{
    auto framework = started({});
    EXPECT_EQ("fwdir", property(framework, Constants::FRAMEWORK_STORAGE));
    EXPECT_EQ("0", property(framework, Constants::FRAMEWORK_LOG));
    EXPECT_EQ("multi", property(framework, Constants::FRAMEWORK_THREADING_SUPPORT));
    EXPECT_EQ("3.8.4", property(framework, Constants::FRAMEWORK_VERSION));
    EXPECT_EQ("CppMicroServices", property(framework, Constants::FRAMEWORK_VENDOR));
    EXPECT_EQ(RTLD_LAZY, any_cast<int>(framework.GetBundleContext().GetProperty(Constants::LIBRARY_LOAD_OPTIONS)));
    EXPECT_FALSE(property(framework, Constants::FRAMEWORK_WORKING_DIR).empty());
    auto other = started({});
    EXPECT_NE(property(framework, Constants::FRAMEWORK_UUID), property(other, Constants::FRAMEWORK_UUID));
    stopAndWait(framework);
    stopAndWait(other);
}

TEST(Configuration, doesNotChangeWhatTheFrameworkIs)
{
    std::string const given = "given";
    auto framework = started({{Constants::FRAMEWORK_VERSION, given},
                              {Constants::FRAMEWORK_VENDOR, given},
                              {Constants::FRAMEWORK_UUID, given},
                              {Constants::FRAMEWORK_THREADING_SUPPORT, given},
                              {Constants::FRAMEWORK_WORKING_DIR, given}});
    EXPECT_EQ("3.8.4", property(framework, Constants::FRAMEWORK_VERSION));
    EXPECT_EQ("CppMicroServices", property(framework, Constants::FRAMEWORK_VENDOR));
    EXPECT_NE(given, property(framework, Constants::FRAMEWORK_UUID));
    EXPECT_EQ("multi", property(framework, Constants::FRAMEWORK_THREADING_SUPPORT));
    EXPECT_EQ(given, property(framework, Constants::FRAMEWORK_WORKING_DIR));
    stopAndWait(framework);
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

TEST(Configuration, mayBeAnOrderedMap)
{
    auto framework = FrameworkFactory().NewFramework(std::map<std::string, Any>{{"k", 1}});
    framework.Start();
    EXPECT_EQ("1", property(framework, "k"));
    stopAndWait(framework);
}
#pragma GCC diagnostic pop

std::string logged(bool wanted)
{
    std::ostringstream log;
    auto framework = started({{Constants::FRAMEWORK_LOG, wanted}}, &log);
    ostrel::test::installByManifest(framework.GetBundleContext(), {"b"}).at(0).Start();
    stopAndWait(framework);
    return log.str();
}

TEST(Configuration, decidesWhetherDiagnosticsAreWritten)
{
    EXPECT_FALSE(logged(true).empty());
    EXPECT_EQ("", logged(false));
}

TEST(Configuration, mayWriteDiagnosticsFromTheBeginning)
{
    std::ostringstream log;
    FrameworkFactory().NewFramework(FrameworkConfiguration{{Constants::FRAMEWORK_LOG, true}}, &log);
    EXPECT_NE("", log.str());
}

void expectRefused(std::string const& key, Any const& value)
{
    FrameworkConfiguration const configuration{{key, value}};
    EXPECT_THROW(started(configuration), BadAnyCastException) << key;
}

TEST(Configuration, ofAnotherTypeIsRefusedOrIgnored)
{
    expectRefused(Constants::FRAMEWORK_LOG, std::string("true"));
    expectRefused(Constants::FRAMEWORK_LOG, 1);
    expectRefused(Constants::FRAMEWORK_BUNDLE_VALIDATION_FUNC, 1);
    auto notYetRefused =
        FrameworkFactory().NewFramework(FrameworkConfiguration{{Constants::FRAMEWORK_BUNDLE_VALIDATION_FUNC, 1}});
    EXPECT_THROW(notYetRefused.Init(), BadAnyCastException);
    auto framework = started({{Constants::LIBRARY_LOAD_OPTIONS, std::string("x")}});
    EXPECT_EQ(Bundle::STATE_ACTIVE, framework.GetState());
    stopAndWait(framework);
}

} // namespace
