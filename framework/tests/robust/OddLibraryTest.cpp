// Libraries whose functions for the framework are not as the macros make them, files that change once they are
// installed, and odd names.
#include "contract/robust/WildFixture.h"
#include "support/TestBundles.h"

#include <cppmicroservices/SharedLibraryException.h>

#include <filesystem>
#include <fstream>

namespace {

using namespace cppmicroservices;
using namespace ostrel::test;

class OddLibrary : public WildFixture {
protected:
    static AnyMap manifest(std::string const& name, bool activator = true)
    {
        AnyMap result(any_map::UNORDERED_MAP_CASEINSENSITIVE_KEYS);
        result["bundle.symbolic_name"] = name;
        result["bundle.activator"] = activator;
        return result;
    }

    /// Installs the library under another name than its own manifest gives, instead of any that it had.
    Bundle installAs(std::string const& name, bool activator = true)
    {
        for (auto& former : host.context().GetBundles(location)) {
            former.Uninstall();
        }
        AnyMap manifests(any_map::UNORDERED_MAP_CASEINSENSITIVE_KEYS);
        manifests[name] = manifest(name, activator);
        return host.context().InstallBundles(location, manifests).at(0);
    }

    std::string startFailure(Bundle bundle) const
    {
        auto const text = thrownText<std::runtime_error>([&bundle] { bundle.Start(); });
        EXPECT_EQ(resolved, bundle.GetState());
        EXPECT_FALSE(bundle.GetBundleContext());
        auto const start = "Bundle " + bundle.GetSymbolicName() + " (location= " + location + ") start failed: ";
        EXPECT_EQ(0U, text.find(start)) << text;
        return text.substr(std::min(start.size(), text.size()));
    }

    std::string const location = host.locationOf(host.add("odd_symbols"));
};

TEST_F(OddLibrary, lacksAFunction)
{
    auto const where = [this](std::string const& name) { return "Bundle " + name + " (location=" + location + ")"; };
    EXPECT_EQ(where("nothing") + " activator constructor not found", startFailure(installAs("nothing")));
    EXPECT_EQ(where("no_destroy") + " activator destructor not found", startFailure(installAs("no_destroy")));
    auto withoutSlot = installAs("no_slot");
    withoutSlot.Start();
    EXPECT_EQ(active, withoutSlot.GetState());
}

TEST_F(OddLibrary, makesNoActivator)
{
    auto bundle = installAs("returns_null");
    EXPECT_EQ("Bundle returns_null (location=" + location + ") activator constructor returned a null pointer",
              startFailure(bundle));
    bundle.Uninstall();
    EXPECT_EQ(uninstalled, bundle.GetState());
}

TEST_F(OddLibrary, throwsWhenTheActivatorIsDestroyed)
{
    auto bundle = installAs("destroy_throws");
    for (int i = 0; i < 2; ++i) {
        bundle.Start();
        EXPECT_EQ("Bundle destroy_throws (location=" + location +
                      "), BundleActivator::Stop() failed: planned fault: destroy",
                  thrownText<std::runtime_error>([&] { bundle.Stop(); }));
        EXPECT_EQ(resolved, bundle.GetState());
        EXPECT_FALSE(bundle.GetBundleContext());
    }
    bundle.Start();
    bundle.Uninstall();
    EXPECT_EQ(uninstalled, bundle.GetState());
    auto again = installAs("destroy_throws");
    again.Start();
    host.stop();
    EXPECT_EQ(installed, again.GetState());
}

TEST_F(OddLibrary, throwsWhenItsSlotIsSet)
{
    auto bundle = installAs("slot_throws");
    EXPECT_EQ("planned fault: set", startFailure(bundle));
    bundle.Uninstall();
    EXPECT_EQ(uninstalled, bundle.GetState());
}

TEST_F(OddLibrary, hasAnyName)
{
    std::string const longName(70000, 'x');
    for (std::string const& name :
         {std::string("a b"), std::string("\"quoted\""), std::string("a/b"), std::string("../up"),
          std::string("\xc3\xa4\xe2\x82\xac"), std::string("\xff\xfe"), std::string("%s%n"), longName}) {
        auto plain = installAs(name, false);
        ASSERT_TRUE(plain) << name;
        EXPECT_EQ(name, plain.GetSymbolicName());
        plain.Start();
        EXPECT_EQ(active, plain.GetState());
        plain.Uninstall();
        EXPECT_EQ("Bundle " + name + " (location=" + location + ") activator constructor not found",
                  startFailure(installAs(name)));
    }
}

TEST_F(OddLibrary, liesAtAnyPlace)
{
    for (char const* const name : {"a b.so", "\"q\".so", "\xc3\xa4.so", "\xff.so", "new\nline", "%n", "-rf"}) {
        Host other;
        auto bundle = other.context().InstallBundles(other.locationOf(other.add("alpha", name))).at(0);
        bundle.Start();
        EXPECT_EQ(active, bundle.GetState()) << name;
    }
}

TEST_F(OddLibrary, wasCutShort)
{
    auto const fileName = host.add("wild");
    auto const file = host.directory() / fileName;
    auto bundle = host.context().InstallBundles(file.string()).at(0);
    auto const whole = std::filesystem::file_size(file);
    for (auto const size : {whole / 10 * 9, whole / 2, whole / 10, std::uintmax_t{4096}, std::uintmax_t{100},
                            std::uintmax_t{4}, std::uintmax_t{0}}) {
        std::filesystem::resize_file(file, size);
        EXPECT_THROW(bundle.Start(), SharedLibraryException) << size << " of " << whole;
        EXPECT_EQ(resolved, bundle.GetState());
    }
    std::filesystem::copy_file(testBundle("wild"), file, std::filesystem::copy_options::overwrite_existing);
    bundle.Start();
    EXPECT_EQ(active, bundle.GetState());
}

TEST_F(OddLibrary, wasCutShortBeforeItWasInstalled)
{
    std::filesystem::resize_file(location, std::filesystem::file_size(location) / 2);
    auto bundle = installAs("no_slot"); // with a manifest of the caller's, as its own is cut off
    EXPECT_THROW(bundle.Start(), SharedLibraryException);
    EXPECT_EQ(resolved, bundle.GetState());
}

TEST_F(OddLibrary, isAnotherFileByNow)
{
    auto const file = host.directory() / host.add("wild");
    auto bundle = host.context().InstallBundles(file.string()).at(0);
    std::filesystem::remove(file);
    EXPECT_THROW(bundle.Start(), SharedLibraryException);
    std::filesystem::create_directory(file);
    EXPECT_THROW(bundle.Start(), SharedLibraryException);
    std::filesystem::remove(file);
    std::ofstream(file) << "no library at all\n";
    EXPECT_THROW(bundle.Start(), SharedLibraryException);
    std::filesystem::remove(file);
    std::filesystem::copy_file(testBundle("alpha"), file);
    EXPECT_THROW(bundle.Start(), std::runtime_error); // the activator of another bundle
    EXPECT_EQ(resolved, bundle.GetState());
    bundle.Uninstall();
}

} // namespace
