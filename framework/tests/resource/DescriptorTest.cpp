// Installed bundles keep few files open, whatever their number and the size of what they carry.
#include "contract/ThrownText.h"
#include "contract/resource/ResourceFixture.h"

#include <cppmicroservices/BundleResourceStream.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <iterator>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <system_error>
#include <vector>

namespace {

using namespace cppmicroservices;
using ostrel::test::manifestOf;
using ostrel::test::Pack;
using ostrel::test::thrownText;

class Descriptors : public ostrel::test::ResourceFixture {
protected:
    static constexpr rlim_t limit = 64;

    Descriptors()
    {
        rlimit few{limit, limit};
        if (setrlimit(RLIMIT_NOFILE, &few) != 0) {
            throw std::system_error(errno, std::generic_category(), "setrlimit");
        }
    }

    Bundle installWith(std::string const& name, std::string const& data)
    {
        return install(
            name,
            {{name + "/", ""}, {name + "/manifest.json", manifestOf(name)}, {name + "/data", data, Pack::stored}});
    }

    static std::size_t openFiles()
    {
        std::filesystem::directory_iterator const all("/proc/self/fd");
        return static_cast<std::size_t>(std::distance(begin(all), end(all)));
    }

    static std::string read(Bundle const& bundle)
    {
        BundleResourceStream stream(bundle.GetResource("data"), std::ios_base::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    std::string const large = std::string(100000, 'x');
};

TEST_F(Descriptors, doNotGrowWithBundlesThatCarrySmallResources)
{
    auto const before = openFiles();
    std::vector<Bundle> bundles;
    for (int i = 0; i < 300; ++i) {
        bundles.push_back(installWith("b" + std::to_string(i), "data"));
    }
    EXPECT_EQ(before, openFiles());
    for (auto const& bundle : bundles) {
        EXPECT_EQ("data", read(bundle));
    }
    EXPECT_EQ(before, openFiles());
}

TEST_F(Descriptors, growByAFewWithBundlesThatCarryLargeOnes)
{
    auto const before = openFiles();
    std::vector<Bundle> bundles;
    for (int i = 0; i < 100; ++i) {
        bundles.push_back(installWith("b" + std::to_string(i), large + std::to_string(i)));
    }
    EXPECT_EQ(before + 16, openFiles());
    for (int i = 0; i < 100; ++i) {
        EXPECT_EQ(large + std::to_string(i), read(bundles[static_cast<std::size_t>(i)]));
    }
    EXPECT_EQ(before + 16, openFiles());
    for (auto& bundle : bundles) {
        bundle.Uninstall();
    }
    bundles.clear();
    EXPECT_EQ(before, openFiles());
}

TEST_F(Descriptors, ofALargeArchiveThatWasClosedAndIsGoneAreMissedWithAClearError)
{
    auto const gone = installWith("gone", large);
    auto const held = gone.GetResource("data");
    auto const unasked = installWith("unasked", large);
    std::vector<Bundle> others;
    for (int i = 0; i < 16; ++i) {
        others.push_back(installWith("b" + std::to_string(i), large));
    }
    std::filesystem::remove(gone.GetLocation());
    std::filesystem::remove(unasked.GetLocation());

    EXPECT_TRUE(BundleResourceStream(held).bad());
    EXPECT_EQ(static_cast<int>(large.size()), held.GetSize()) << "what is known of it stays";
    EXPECT_EQ("cannot read the archive in '" + unasked.GetLocation() +
                  "': the file was removed, replaced or changed since it was first read",
              thrownText<std::runtime_error>([&] { unasked.GetResource("data"); }));
    EXPECT_EQ(large, read(others.front()));
}

} // namespace
