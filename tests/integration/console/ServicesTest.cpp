// The services of one bundle, of a location, and of all bundles.
#include "integration/console/ConsoleFixture.h"

#include <stdexcept>
#include <type_traits>

namespace ostrel::test {
namespace {

using cppmicroservices::Bundle;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using us_container::MicroServicesContainer;

using Container = MicroServicesContainer;
static_assert(
    std::is_same_v<decltype(&Container::printBundleProperties), void (Container::*)(const std::string&) const>);
static_assert(std::is_same_v<decltype(&Container::printServiceProperties), void (Container::*)(const std::string&)>);
[[maybe_unused]] constexpr void (Container::*table)() const = &Container::printAllBundles;
[[maybe_unused]] constexpr void (Container::*services)() const = &Container::printAllServices;
[[maybe_unused]] constexpr void (Container::*service)(ServiceReferenceU&) const = &Container::printService;
[[maybe_unused]] constexpr void (Container::*ofBundle)(Bundle, unsigned int) const = &Container::printBundleServices;
[[maybe_unused]] constexpr void (Container::*ofLocation)(const std::string&,
                                                         unsigned int) const = &Container::printBundleServices;

class ConsoleServices : public ConsoleFixture {
protected:
    /// The report on what is loaded and on all bundles, with these lines after each bundle's name.
    Lines expectedWith(Lines lines, const std::vector<std::pair<std::string, Lines>>& ofBundles) const
    {
        lines.insert(lines.begin(), "Manually loaded service types: \n");
        for (const Bundle& bundle : host.context().GetBundles()) {
            lines.push_back(bundle.GetSymbolicName() + ":\n");
            for (const auto& [name, more] : ofBundles) {
                if (name == bundle.GetSymbolicName()) {
                    lines.insert(lines.end(), more.begin(), more.end());
                }
            }
        }
        return lines;
    }
};

TEST_F(ConsoleServices, GivenBundleWithServices_WhenPrinted_ThenEachHasALineInOrderOfRegistration)
{
    const Bundle alpha = started("alpha");
    const auto first = registerGreeter(alpha.GetBundleContext(), {{"colour", std::string{"red"}}});
    const auto second = registerFactory<Singer>(alpha.GetBundleContext(), newMap<Singer>);
    use(started("beta"), first);

    container.printBundleServices(alpha, 3);

    EXPECT_THAT(console.flushed(), ElementsAre("   Service: [ostrel::test::Greeter] (used by: beta)\n",
                                               "   Service: " + second.GetProperty("objectclass").ToString() + "\n"));
    EXPECT_EQ(console.rest(), "");
}

TEST_F(ConsoleServices, GivenNoIndent_WhenPrinted_ThenTheLineBeginsAtOnce)
{
    const Bundle alpha = started("alpha");
    registerGreeter(alpha.GetBundleContext());

    container.printBundleServices(alpha, 0);

    EXPECT_EQ(console.text(), "Service: [ostrel::test::Greeter]\n");
}

TEST_F(ConsoleServices, GivenLargeIndent_WhenPrinted_ThenThereAreAsManySpacesWhateverTheFill)
{
    const Bundle alpha = started("alpha");
    registerGreeter(alpha.GetBundleContext());
    std::cout.fill('*');

    container.printBundleServices(alpha, 300);

    EXPECT_EQ(console.text(), std::string(300, ' ') + "Service: [ostrel::test::Greeter]\n");
}

TEST_F(ConsoleServices, GivenManyUsers_WhenPrinted_ThenTheyStandInTheOrderOfTheFramework)
{
    const Bundle alpha = started("alpha");
    const auto greeter = registerGreeter(alpha.GetBundleContext());
    for (const char* name : {"beta", "gamma", "delta"}) {
        use(started(name), greeter);
    }

    container.printBundleServices(alpha, 1);

    ASSERT_THAT(usersOf(greeter), SizeIs(3));
    EXPECT_EQ(console.text(), " Service: [ostrel::test::Greeter] (used by: " + joined(usersOf(greeter)) + ")\n");
}

TEST_F(ConsoleServices, GivenFactories_WhenPrinted_ThenTheyAreNotAsked)
{
    const Bundle alpha = started("alpha");
    int asked = 0;
    const auto greeter = registerFactory(alpha.GetBundleContext(), [&asked] {
        ++asked;
        return newMap<Greeter>();
    });

    container.printBundleServices(alpha, 1);
    container.printAllServices();

    EXPECT_EQ(asked, 0);
    EXPECT_THAT(usersOf(greeter), IsEmpty());
}

TEST_F(ConsoleServices, GivenBundleWithoutServices_WhenPrinted_ThenNothingIsWritten)
{
    container.printBundleServices(started("alpha"), 2);

    EXPECT_THAT(console.flushed(), IsEmpty());
    EXPECT_EQ(console.text(), "");
}

TEST_F(ConsoleServices, GivenLocationOfTwoBundles_WhenPrinted_ThenTheServicesOfBothStandInOrder)
{
    const std::string file = addArchive(host, "both.zip", {bundleWith("alpha"), bundleWith("beta")});
    std::vector<Bundle> bundles = host.context().InstallBundles(host.locationOf(file));
    bundles.at(0).Start();
    bundles.at(1).Start();
    registerFactory<Singer>(bundles.at(1).GetBundleContext(), newMap<Singer>);
    registerGreeter(bundles.at(0).GetBundleContext());
    const auto singer = bundles.at(1).GetRegisteredServices().at(0);

    container.printBundleServices(host.locationOf(file), 4);

    EXPECT_THAT(console.flushed(), ElementsAre("    Service: [ostrel::test::Greeter]\n",
                                               "    Service: " + singer.GetProperty("objectclass").ToString() + "\n"));
}

TEST_F(ConsoleServices, GivenUnknownLocation_WhenPrinted_ThenNothingIsWritten)
{
    registerGreeter(started("alpha").GetBundleContext());

    container.printBundleServices(std::string{}, 2);
    container.printBundleServices("alpha", 2);

    EXPECT_THAT(console.flushed(), IsEmpty());
    EXPECT_EQ(console.text(), "");
}

TEST_F(ConsoleServices, GivenUninstalledBundle_WhenPrinted_ThenItsExceptionLeavesTheLockFree)
{
    Bundle alpha = started("alpha");
    alpha.Uninstall();

    EXPECT_THROW(container.printBundleServices(alpha, 2), std::logic_error);

    EXPECT_EQ(console.text(), "");
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(ConsoleServices, GivenInvalidBundle_WhenPrinted_ThenItsExceptionLeavesTheLockFree)
{
    EXPECT_THROW(container.printBundleServices(Bundle{}, 2), std::invalid_argument);

    EXPECT_EQ(console.text(), "");
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(ConsoleServices, GivenNothing_WhenAllArePrinted_ThenTheSystemBundleFollowsTheHeadAtOnce)
{
    container.printAllServices();

    EXPECT_THAT(console.flushed(), ElementsAre("Manually loaded service types: \n", "system_bundle:\n"));
    EXPECT_EQ(console.rest(), "");
}

TEST_F(ConsoleServices, GivenNamesLoaded_WhenAllArePrinted_ThenTheNamesStandAscendingAndNotTheClasses)
{
    const auto greeter = registerGreeter(host.context());
    container.loadServices(std::vector<std::string>{greeterName, loadNameOf(greeter), ""});

    container.printAllServices();

    EXPECT_THAT(console.flushed(),
                ElementsAre("Manually loaded service types: \n", "  \n", "  " + loadNameOf(greeter) + "\n",
                            "  ostrel::test::Greeter\n", "system_bundle:\n",
                            "  Service: [ostrel::test::Greeter] (used by: system_bundle)\n"));
}

TEST_F(ConsoleServices, GivenNameThatHoldsNothingAnyMore_WhenAllArePrinted_ThenItStillStandsThere)
{
    auto registration = host.context().RegisterService<Greeter>(std::make_shared<PlainGreeter>());
    container.loadService(greeterName);
    registration.Unregister();

    container.printAllServices();

    EXPECT_THAT(console.flushed(),
                ElementsAre("Manually loaded service types: \n", "  ostrel::test::Greeter\n", "system_bundle:\n"));
}

TEST_F(ConsoleServices, GivenBundlesOfAllSorts_WhenAllArePrinted_ThenEachInstalledOneStandsInTheFrameworksOrder)
{
    const Bundle gamma = started("gamma");
    const Bundle alpha = started("alpha");
    installed("beta");
    const auto greeter = registerGreeter(alpha.GetBundleContext());
    registerGreeter(gamma.GetBundleContext());
    use(gamma, greeter);

    container.printAllServices();

    EXPECT_THAT(console.flushed(),
                ElementsAreArray(expectedWith({}, {{"alpha", {"  Service: [ostrel::test::Greeter] (used by: gamma)\n"}},
                                                   {"gamma", {"  Service: [ostrel::test::Greeter]\n"}}})));
    EXPECT_THAT(console.flushed(), SizeIs(7));
}

TEST_F(ConsoleServices, GivenFrameworkStopped_WhenPrinted_ThenNothingIsWrittenAndTheLockIsFree)
{
    registerGreeter(host.context());
    container.loadService(greeterName);
    host.stop();

    EXPECT_THROW(container.printAllServices(), std::runtime_error);
    EXPECT_THROW(container.printAllBundles(), std::runtime_error);
    EXPECT_THROW(container.printBundleProperties("a"), std::runtime_error);
    EXPECT_THROW(container.printBundleServices("a", 1), std::runtime_error);
    EXPECT_THROW(container.printServiceProperties("a"), std::runtime_error);

    EXPECT_EQ(console.text(), "");
    EXPECT_THAT(console.flushed(), IsEmpty());
    EXPECT_TRUE(lockIsFree(container));
}

} // namespace
} // namespace ostrel::test
