// The table of all bundles.
#include "integration/console/ConsoleFixture.h"

#include <iomanip>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using BundleTable = ConsoleFixture;

const std::string caption =
    " Id  |                                  Library |                                     Name | Status\n";
const std::string rule = "------------------------------------------------------------------------------------------\n";
const std::string systemRow = "   0 |                            system_bundle | ACTIVE\n";

TEST_F(BundleTable, GivenBundlesInStates_WhenPrinted_ThenEachHasARowInTheOrderOfTheFramework)
{
    started("beta");
    installed("alpha");
    Bundle gamma = started("gamma");
    gamma.Stop();

    container.printAllBundles();

    // The rule is flushed with the row after it.
    EXPECT_THAT(console.flushed(),
                ElementsAre(caption, rule + "   2 |                                    alpha | INSTALLED\n",
                            "   1 |                                     beta | ACTIVE\n",
                            "   3 |                                    gamma | RESOLVED\n", systemRow));
    EXPECT_EQ(console.rest(), "");
}

TEST_F(BundleTable, GivenTheRule_WhenMeasured_ThenItHasNinetyDashes)
{
    EXPECT_EQ(rule, std::string(90, '-') + "\n");
}

TEST_F(BundleTable, GivenBundlesNotStartedThroughTheContainer_WhenPrinted_ThenTheyStandThereToo)
{
    started("alpha");

    container.printAllBundles();

    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
    EXPECT_THAT(console.flushed(), SizeIs(3));
}

TEST_F(BundleTable, GivenNameOfFortyCharacters_WhenPrinted_ThenItFillsTheColumn)
{
    installed(std::string(40, 'x'));

    container.printAllBundles();

    EXPECT_THAT(console.text(), HasSubstr("\n   1 | " + std::string(40, 'x') + " | INSTALLED\n"));
}

TEST_F(BundleTable, GivenNameOfMoreThanFortyCharacters_WhenPrinted_ThenItIsWrittenWholeAndMovesTheRest)
{
    installed(std::string(53, 'x'));

    container.printAllBundles();

    EXPECT_THAT(console.text(), HasSubstr("\n   1 | " + std::string(53, 'x') + " | INSTALLED\n"));
}

TEST_F(BundleTable, GivenAlignmentAndFill_WhenPrinted_ThenTheColumnsFollowThemAndTheyStay)
{
    std::cout << std::left << std::setfill('*');

    container.printAllBundles();

    EXPECT_THAT(console.flushed(), ElementsAre(" Id  | Library********************************* | "
                                               "Name************************************ | Status\n",
                                               rule + "0*** | system_bundle*************************** | ACTIVE\n"));
    EXPECT_EQ(std::cout.flags() & std::ios::adjustfield, std::ios::left);
    EXPECT_EQ(std::cout.fill(), '*');
    EXPECT_EQ(std::cout.width(), 0);
}

TEST_F(BundleTable, GivenUntouchedConsole_WhenPrinted_ThenItStaysSo)
{
    const auto flags = std::cout.flags();

    container.printAllBundles();

    EXPECT_EQ(std::cout.flags(), flags);
    EXPECT_EQ(std::cout.fill(), ' ');
    EXPECT_EQ(std::cout.width(), 0);
}

TEST_F(BundleTable, GivenTwoCalls_WhenABundleCameBetween_ThenTheSecondHasIt)
{
    container.printAllBundles();
    const std::size_t before = console.flushed().size();
    installed("alpha");

    container.printAllBundles();

    EXPECT_THAT(console.flushed(), SizeIs(2 * before + 1));
}

} // namespace
} // namespace ostrel::test
