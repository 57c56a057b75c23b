#include "contract/ThrownText.h"
#include "support/Host.h"

#include <cppmicroservices/AnyMap.h>
#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>

#include <gmock/gmock.h>

#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace cppmicroservices;
using ostrel::test::thrownText;
using ::testing::ElementsAre;
using ::testing::EndsWith;

class Installing : public ostrel::test::HostFixture {
protected:
    std::string failure(std::string const& location, AnyMap const& manifests = AnyMap())
    {
        return thrownText<std::runtime_error>([&] { host.context().InstallBundles(location, manifests); });
    }

    std::vector<std::string> names(std::vector<Bundle> const& bundles)
    {
        std::vector<std::string> result;
        for (auto const& bundle : bundles) {
            result.push_back(bundle.GetSymbolicName());
        }
        return result;
    }
};

TEST_F(Installing, makesABundleOfEachFolder)
{
    auto const location = host.locationOf(host.add("two_bundles"));
    auto const bundles = host.context().InstallBundles(location);
    EXPECT_THAT(names(bundles), ElementsAre("two_bundles_first", "two_bundles_second"));
    EXPECT_EQ(location, bundles[0].GetLocation());
    EXPECT_EQ("1.0.0", bundles[0].GetVersion().ToString());
    EXPECT_EQ(bundles[0].GetBundleId() + 1, bundles[1].GetBundleId());
    std::ostringstream text;
    text << bundles[0];
    EXPECT_EQ("Bundle[id=1, loc=" + location + ", name=two_bundles_first, state=INSTALLED]", text.str());
}

TEST_F(Installing, givesBackWhatIsInstalled)
{
    auto const location = host.locationOf(host.add("two_bundles"));
    auto bundles = host.context().InstallBundles(location);
    EXPECT_EQ(bundles, host.context().InstallBundles(location));
    bundles[0].Uninstall();
    auto const again = host.context().InstallBundles(location);
    EXPECT_THAT(names(again), ElementsAre("two_bundles_second", "two_bundles_first"));
    EXPECT_EQ(bundles[1], again[0]);
    EXPECT_GT(again[1].GetBundleId(), bundles[1].GetBundleId());
}

TEST_F(Installing, listsBundlesByLocation)
{
    host.context().InstallBundles(host.locationOf(host.add("beta")));
    host.context().InstallBundles(host.locationOf(host.add("alpha")));
    EXPECT_THAT(names(host.context().GetBundles()), ElementsAre("alpha", "beta", "system_bundle"));
    EXPECT_THAT(names(host.context().GetBundles(host.locationOf("libbeta.so"))), ElementsAre("beta"));
    EXPECT_TRUE(host.context().GetBundles("").empty());
    EXPECT_EQ(1U, host.context().GetBundles("System Bundle").size());
    EXPECT_FALSE(host.context().GetBundle(77));
    EXPECT_FALSE(host.context().GetBundle(-1));
}

TEST_F(Installing, refusesASecondOneOfTheSameNameAndVersion)
{
    host.context().InstallBundles(host.locationOf(host.add("alpha")));
    auto const copy = host.locationOf(host.add("alpha", "copy"));
    EXPECT_EQ("Failed to install bundle library at " + copy + ": Bundle alpha (location=" + copy +
                  "), a bundle with same symbolic name and version is already installed (alpha, 1.0.0)",
              failure(copy));
}

TEST_F(Installing, refusesFilesWithoutBundles)
{
    EXPECT_EQ("/no/such/file does not exist", failure("/no/such/file"));
    EXPECT_EQ(" does not exist", failure(""));
    auto const text = host.locationOf(host.write("text.so", "no bundle\n"));
    EXPECT_EQ("Could not init zip archive for bundle at " + text, failure(text));
    auto const folder = host.directory().string();
    EXPECT_EQ("Could not init zip archive for bundle at " + folder, failure(folder));
}

TEST_F(Installing, takesManifestsFromTheCaller)
{
    auto const text = host.locationOf(host.write("text", "no bundle\n"));
    AnyMap manifests;
    manifests["given"] = AnyMap({{"bundle.symbolic_name", std::string("given")}, {"x", 1}});
    auto bundles = host.context().InstallBundles(text, manifests);
    ASSERT_THAT(names(bundles), ElementsAre("given"));
    EXPECT_EQ(1, any_cast<int>(bundles[0].GetHeaders().at("x")));
    EXPECT_EQ("0.0.0", bundles[0].GetVersion().ToString());
    bundles[0].Start();
    EXPECT_EQ(Bundle::STATE_ACTIVE, bundles[0].GetState());
}

TEST_F(Installing, addsNoFurtherNamesToALocation)
{
    auto const text = host.locationOf(host.write("text", "no bundle\n"));
    auto const named = [](std::vector<std::string> const& all) {
        AnyMap manifests;
        for (auto const& name : all) {
            manifests[name] = AnyMap({{"bundle.symbolic_name", name}});
        }
        return manifests;
    };
    auto bundles = host.context().InstallBundles(text, named({"p", "q"}));
    ASSERT_THAT(names(bundles), ElementsAre("p", "q"));
    EXPECT_EQ(bundles, host.context().InstallBundles(text, named({"r"})));
    EXPECT_EQ(bundles, host.context().InstallBundles(text, named({"p", "q", "r"})));
    EXPECT_EQ(bundles, host.context().InstallBundles(text));

    bundles[0].Uninstall(); // now p is missing, whatever is asked for; if it is not given, it must be in the file
    EXPECT_THAT(failure(text, named({"q", "r"})), EndsWith("Could not init zip archive for bundle at " + text));
    EXPECT_THAT(names(host.context().InstallBundles(text, named({"p", "q"}))), ElementsAre("q", "p"));

    for (auto& bundle : host.context().GetBundles(text)) {
        bundle.Uninstall();
    }
    EXPECT_THAT(names(host.context().InstallBundles(text, named({"r"}))), ElementsAre("r"));
}

TEST_F(Installing, addsNoGivenNamesToAFileThatIsInstalled)
{
    auto const location = host.locationOf(host.add("two_bundles"));
    auto const bundles = host.context().InstallBundles(location);
    AnyMap const manifests({{"given", AnyMap({{"bundle.symbolic_name", std::string("given")}})}});
    EXPECT_EQ(bundles, host.context().InstallBundles(location, manifests));
}

TEST_F(Installing, checksGivenManifests)
{
    auto const text = host.locationOf(host.write("text", "no bundle\n"));
    auto const with = [this, &text](Any const& manifest) {
        AnyMap manifests;
        manifests["N"] = manifest;
        return failure(text, manifests);
    };
    auto const head = "Failed to install bundle library at " + text + ": ";
    auto const named = [](Any const& version) {
        return AnyMap({{"bundle.symbolic_name", std::string("N")}, {"bundle.version", version}});
    };
    EXPECT_EQ(head + "bundle.symbolic_name is not defined in the bundle manifest for bundle N (location=" + text + ").",
              with(AnyMap({{"x", 1}})));
    EXPECT_EQ(head + "bundle.symbolic_name is empty in the bundle manifest for bundle N(location=" + text + ").",
              with(AnyMap({{"bundle.symbolic_name", std::string()}})));
    auto const version = head + "The Json value for bundle.version for bundle N (location=" + text + ") is not valid: ";
    EXPECT_EQ(version + "The version identifier must be a string", with(named(1)));
    EXPECT_EQ(version + "The version identifier is invalid: invalid format", with(named(std::string("a.b"))));
    EXPECT_EQ(head +
                  "cppmicroservices::BadAnyCastException: any_cast: Failed to convert from cppmicroservices::Any type "
                  "int to target type cppmicroservices::AnyMap",
              with(7));
}

} // namespace
