// What no real bundle can bring about.
#include "support/Seams.h"

#include "integration/console/ConsoleFixture.h"
#include "integration/console/ConsoleSeams.h"

#include <stdexcept>

namespace ostrel::test {
namespace {

using cppmicroservices::AnyMap;
using cppmicroservices::Bundle;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class ConsoleReportSeams : public ConsoleFixture {
protected:
    ConsoleSeams consoleSeams;
    Seams seams;
};

TEST_F(ConsoleReportSeams, GivenInvalidHandleBeforeAnother_WhenPropertiesArePrinted_ThenTheOtherAloneHasLines)
{
    const Bundle alpha = started("alpha");
    seams.getBundles = [&alpha](const std::string&) { return std::vector<Bundle>{Bundle{}, alpha, Bundle{}}; };

    container.printBundleProperties("any");

    EXPECT_THAT(console.flushed(), ElementsAre("  1 | alpha | ACTIVE\n", "No services in use.\n", "Properties:\n",
                                               "  bundle.symbolic_name: alpha\n"));
}

TEST_F(ConsoleReportSeams, GivenInvalidHandleBeforeAnother_WhenServicesArePrinted_ThenTheOtherAloneHasLines)
{
    const Bundle alpha = started("alpha");
    registerGreeter(alpha.GetBundleContext());
    seams.getBundles = [&alpha](const std::string&) { return std::vector<Bundle>{Bundle{}, alpha, Bundle{}}; };

    container.printBundleServices("any", 1);

    EXPECT_THAT(console.flushed(), ElementsAre(" Service: [ostrel::test::Greeter]\n"));
}

TEST_F(ConsoleReportSeams, GivenLocation_WhenItsBundlesAreAskedFor_ThenTheLockIsHeld)
{
    LockProbe probe{container};
    seams.getBundles = [&probe](const std::string&) {
        probe.look();
        return std::vector<Bundle>{};
    };

    container.printBundleServices("any", 0);
    container.printBundleProperties("any");

    EXPECT_THAT(probe.found(), ElementsAre(LockProbe::held, LockProbe::held));
}

TEST_F(ConsoleReportSeams, GivenInvalidHandleAmongAll_WhenTheTableIsPrinted_ThenItIsAskedAllTheSame)
{
    const Bundle alpha = started("alpha");
    consoleSeams.getAllBundles = [&alpha] { return std::vector<Bundle>{alpha, Bundle{}}; };

    EXPECT_THROW(container.printAllBundles(), std::invalid_argument);

    EXPECT_THAT(console.flushed(), SizeIs(2));
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(ConsoleReportSeams, GivenInvalidHandleAmongAll_WhenServicesArePrinted_ThenItIsAskedAllTheSame)
{
    const Bundle alpha = started("alpha");
    consoleSeams.getAllBundles = [&alpha] { return std::vector<Bundle>{alpha, Bundle{}}; };

    EXPECT_THROW(container.printAllServices(), std::invalid_argument);

    EXPECT_THAT(console.flushed(), ElementsAre("Manually loaded service types: \n", "alpha:\n"));
    EXPECT_EQ(console.rest(), "");
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(ConsoleReportSeams, GivenBundlesInAnyOrder_WhenPrinted_ThenItIsKept)
{
    const Bundle alpha = started("alpha");
    const Bundle beta = started("beta");
    consoleSeams.getAllBundles = [&] { return std::vector<Bundle>{beta, alpha}; };

    container.printAllServices();

    EXPECT_EQ(console.text(), "Manually loaded service types: \nbeta:\nalpha:\n");
}

TEST_F(ConsoleReportSeams, GivenOnlyUserWithoutAName_WhenPrinted_ThenTheBracketsAreEmpty)
{
    const Bundle alpha = started("alpha");
    const Bundle beta = started("beta");
    auto greeter = registerGreeter(alpha.GetBundleContext());
    use(beta, greeter);
    consoleSeams.getSymbolicName = [](const Bundle&) { return std::string{}; };

    container.printBundleServices(alpha, 0);
    container.printService(greeter);

    EXPECT_EQ(console.flushed().at(0), "Service: [ostrel::test::Greeter] (used by: )\n");
    EXPECT_EQ(console.flushed().at(1), "Service: " + std::to_string(idOf(greeter)) + " (used by: )\n");
}

TEST_F(ConsoleReportSeams, GivenNameThatEndsInTheSeparator_WhenPrinted_ThenOnlyTheLastOneIsCutOff)
{
    const Bundle alpha = started("alpha");
    const Bundle beta = started("beta");
    use(beta, registerGreeter(alpha.GetBundleContext()));
    consoleSeams.getSymbolicName = [](const Bundle&) { return std::string{"odd, "}; };

    container.printBundleServices(alpha, 0);

    EXPECT_EQ(console.text(), "Service: [ostrel::test::Greeter] (used by: odd, )\n");
}

TEST_F(ConsoleReportSeams, GivenBundleWithoutHeaders_WhenPrinted_ThenItEndsWithTheHead)
{
    const Bundle alpha = started("alpha");
    const AnyMap none{AnyMap::ORDERED_MAP};
    consoleSeams.getHeaders = [&none](const Bundle&) -> const AnyMap& { return none; };

    container.printBundleProperties(alpha.GetLocation());

    EXPECT_THAT(console.flushed(), ElementsAre("  1 | alpha | ACTIVE\n", "No services in use.\n", "Properties:\n"));
    EXPECT_EQ(console.rest(), "");
}

TEST_F(ConsoleReportSeams, GivenHeadersWithOneEntry_WhenPrinted_ThenALongNameIsNotPadded)
{
    const Bundle alpha = started("alpha");
    const AnyMap one{AnyMap::ORDERED_MAP, {{"zq.component.name", std::string{"alpha"}}}};
    consoleSeams.getHeaders = [&one](const Bundle&) -> const AnyMap& { return one; };
    consoleSeams.getSymbolicName = [](const Bundle&) { return std::string(50, 'x'); };

    container.printBundleProperties(alpha.GetLocation());

    EXPECT_THAT(console.flushed(), ElementsAre("  1 | " + std::string(50, 'x') + " | ACTIVE\n", "No services in use.\n",
                                               "Properties:\n", "  zq.component.name: alpha\n"));
}

TEST_F(ConsoleReportSeams, GivenNameThatThrows_WhenThePropertiesArePrinted_ThenTheLockIsFree)
{
    const Bundle alpha = started("alpha");
    consoleSeams.getSymbolicName = [](const Bundle&) -> std::string { throw std::runtime_error{"planned fault"}; };

    EXPECT_THROW(container.printBundleProperties(alpha.GetLocation()), std::runtime_error);
    EXPECT_THROW(container.printAllBundles(), std::runtime_error);
    EXPECT_THROW(container.printAllServices(), std::runtime_error);

    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(ConsoleReportSeams, GivenUserWhoseNameThrows_WhenAServiceIsPrinted_ThenNothingIsWrittenAndTheLockIsFree)
{
    const Bundle alpha = started("alpha");
    auto greeter = registerGreeter(host.context());
    use(alpha, greeter);
    consoleSeams.getSymbolicName = [](const Bundle&) -> std::string { throw std::runtime_error{"planned fault"}; };

    EXPECT_THROW(container.printService(greeter), std::runtime_error);
    EXPECT_THROW(container.printServiceProperties(greeterName), std::runtime_error);
    EXPECT_THROW(container.printBundleServices(host.context().GetBundle(), 3), std::runtime_error);
    EXPECT_THROW(container.printBundleServices("System Bundle", 3), std::runtime_error);

    EXPECT_EQ(console.text(), "");
    EXPECT_TRUE(lockIsFree(container));
}

} // namespace
} // namespace ostrel::test
