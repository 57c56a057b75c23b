// A library that was built for an installed CppMicroServices: two frameworks in one process must never meet.
#include "contract/ThrownText.h"
#include "support/Host.h"
#include "unit/ZipText.h"

#include <cppmicroservices/AnyMap.h>
#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>

#include <dlfcn.h>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace {

using namespace cppmicroservices;
using ostrel::test::bundleZip;
using ostrel::test::contentOf;
using ostrel::test::thrownText;

class ForeignLibrary : public ostrel::test::HostFixture {
protected:
    static std::string refusalOf(std::string const& location)
    {
        return "Failed to install bundle library at " + location +
               ": it was built for an installed CppMicroServices (it needs libCppMicroServices.so.3.8.4), not for the "
               "embedded framework; build the bundle again against this one.";
    }

    /// Whether the library is in the process: then its static objects have been made, so code of it has run.
    static bool isLoaded(std::string const& location)
    {
        void* const library = dlopen(location.c_str(), RTLD_NOW | RTLD_NOLOAD);
        if (library != nullptr) {
            dlclose(library);
        }
        return library != nullptr;
    }

    static AnyMap manifestsOfGiven()
    {
        return AnyMap(
            {{"given", AnyMap({{"bundle.symbolic_name", std::string("given")}, {"bundle.activator", true}})}});
    }
};

TEST_F(ForeignLibrary, isRefusedAtTheInstallation)
{
    host.context().InstallBundles(host.locationOf(host.add("alpha")));
    auto const before = host.context().GetBundles();
    auto const location = host.locationOf(host.write("foreign.so", contentOf(NEEDS_INSTALLED) + bundleZip("foreign")));

    EXPECT_EQ(refusalOf(location), thrownText<std::runtime_error>([&] { host.context().InstallBundles(location); }));

    EXPECT_EQ(before, host.context().GetBundles());
    EXPECT_TRUE(host.context().GetBundles(location).empty());
    EXPECT_FALSE(isLoaded(location));
}

TEST_F(ForeignLibrary, isRefusedWithManifestsOfTheCallerToo)
{
    auto const before = host.context().GetBundles();
    auto const location = host.locationOf(host.write("foreign.so", contentOf(NEEDS_INSTALLED)));

    EXPECT_EQ(refusalOf(location),
              thrownText<std::runtime_error>([&] { host.context().InstallBundles(location, manifestsOfGiven()); }));

    EXPECT_EQ(before, host.context().GetBundles());
    EXPECT_FALSE(isLoaded(location));
}

TEST_F(ForeignLibrary, isRefusedAtTheStartWhenItReplacedTheFile)
{
    auto const location = host.locationOf(host.write("given.so", "no bundle yet\n"));
    auto bundle = host.context().InstallBundles(location, manifestsOfGiven()).at(0);
    std::filesystem::remove(location);
    host.write("given.so", contentOf(NEEDS_INSTALLED));

    EXPECT_EQ("Bundle given (location= " + location + ") start failed: " + refusalOf(location),
              thrownText<std::runtime_error>([&] { bundle.Start(); }));

    EXPECT_EQ(Bundle::STATE_RESOLVED, bundle.GetState());
    EXPECT_FALSE(isLoaded(location));
}

TEST_F(ForeignLibrary, isToldByItsNeedsAlone)
{
    auto const location = host.locationOf(host.write("own.so", contentOf(NEEDS_EMBEDDED) + bundleZip("own")));

    EXPECT_EQ(1U, host.context().InstallBundles(location).size());
}

} // namespace
