#include "integration/reports/ReportsFixture.h"

namespace ostrel::test {
namespace {

using cppmicroservices::Any;
using cppmicroservices::Bundle;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

using PrintAllBundles = ReportsFixture;

TEST_F(PrintAllBundles, GivenNothingStarted_WhenPrinted_ThenThereIsTheHeadAlone)
{
    container.printAllBundles(stream);

    EXPECT_EQ(stream.str(), "Bundles:\n");
}

TEST_F(PrintAllBundles, GivenBundleWithHeadersOfEveryKind_WhenPrinted_ThenEachIsOneLineInTheFrameworksOrder)
{
    container.startBundle(addArchive(
        host, "alpha.zip",
        {{"alpha", R"({"bundle.symbolic_name": "alpha", "number": 5, "flag": true, "list": ["a", 1], "map": {"k": "v"},
                       "empty": ""})"}}));
    const Bundle bundle = host.bundleIn("alpha.zip");

    container.printAllBundles(stream);

    EXPECT_EQ(stream.str(), "Bundles:\n" + bundleLines(bundle, "1", "ACTIVE"));
    for (const char* line : {"        number = 5\n", "        flag = 1\n", "        list = [a,1]\n",
                             "        map = {k : v}\n", "        empty = \n"}) {
        EXPECT_THAT(stream.str(), HasSubstr(line));
    }
}

TEST_F(PrintAllBundles, GivenBundlesStarted_WhenPrinted_ThenTheyStandInTheOrderOfTheInventory)
{
    started("alpha");
    started("beta");
    started("gamma");
    std::string expected = "Bundles:\n";
    for (const std::string& location : container.listManuallyLoadedBundles()) {
        const Bundle bundle = host.context().GetBundles(location).at(0);
        expected += bundleLines(bundle, std::to_string(bundle.GetBundleId()), "ACTIVE");
    }

    container.printAllBundles(stream);

    EXPECT_EQ(stream.str(), expected);
}

TEST_F(PrintAllBundles, GivenTwoBundlesInOneFile_WhenPrinted_ThenBothHaveTheirLines)
{
    container.startBundle(addArchive(host, "pair.zip", {bundleWith("alpha"), bundleWith("beta")}));
    const auto bundles = host.context().GetBundles(host.locationOf("pair.zip"));
    ASSERT_EQ(bundles.size(), 2U);

    container.printAllBundles(stream);

    EXPECT_EQ(stream.str(),
              "Bundles:\n" + bundleLines(bundles[0], "1", "ACTIVE") + bundleLines(bundles[1], "2", "ACTIVE"));
}

TEST_F(PrintAllBundles, GivenBundleStoppedByTheHostItself_WhenPrinted_ThenItsStateIsTheFrameworks)
{
    Bundle bundle = started("alpha");
    bundle.Stop();

    container.printAllBundles(stream);

    EXPECT_EQ(stream.str(), "Bundles:\n" + bundleLines(bundle, "1", "RESOLVED"));
}

TEST_F(PrintAllBundles, GivenBundlesThatTheContainerDidNotStart_WhenPrinted_ThenTheyAreNotAmongThem)
{
    const std::string file = addArchive(host, "beta.zip", {bundleWith("beta")});
    host.context().InstallBundles(host.locationOf(file)).at(0).Start();

    container.printAllBundles(stream);

    EXPECT_EQ(stream.str(), "Bundles:\n");
}

TEST_F(PrintAllBundles, GivenLongNameAndValue_WhenPrinted_ThenBothAreWhole)
{
    const std::string name(300, 'n');
    const std::string value(5000, 'v');
    const std::string manifest = R"({"bundle.symbolic_name": ")" + name + R"(", "long": ")" + value + "\"}";
    container.startBundle(addArchive(host, "long.zip", {{name, manifest}}));

    container.printAllBundles(stream);

    EXPECT_THAT(stream.str(), HasSubstr("    " + name + ", 1, ACTIVE\n"));
    EXPECT_THAT(stream.str(), HasSubstr("        long = " + value + "\n"));
}

TEST_F(PrintAllBundles, GivenTextInTheStream_WhenPrinted_ThenTheReportFollowsIt)
{
    stream << "before|";

    container.printAllBundles(stream);

    EXPECT_EQ(stream.str(), "before|Bundles:\n");
}

TEST_F(PrintAllBundles, GivenWidthAndFill_WhenPrinted_ThenTheyTakeEffectAtTheFirstPieceAlone)
{
    const Bundle bundle = started("alpha");
    stream.width(12);
    stream.fill('*');

    container.printAllBundles(stream);

    EXPECT_EQ(stream.str(), "***Bundles:\n" + bundleLines(bundle, "1", "ACTIVE"));
}

TEST_F(PrintAllBundles, GivenFlagsOfTheCaller_WhenPrinted_ThenTheIdFollowsThemLikeAnyInsertion)
{
    const Bundle bundle = started("alpha");
    stream.setf(std::ios::hex, std::ios::basefield);
    stream.setf(std::ios::showbase);
    const auto flags = stream.flags();

    container.printAllBundles(stream);

    EXPECT_EQ(stream.str(), "Bundles:\n" + bundleLines(bundle, "0x1", "ACTIVE"));
    EXPECT_EQ(stream.flags(), flags);
}

TEST_F(PrintAllBundles, GivenStream_WhenPrinted_ThenItIsNotFlushed)
{
    started("alpha");
    PieceStream out;

    container.printAllBundles(out.stream());

    EXPECT_EQ(out.buffer.flushes, 0);
    EXPECT_EQ(out.buffer.pieces.front(), "Bundles:\n");
    EXPECT_EQ(out.buffer.pieces.back(), "\n");
}

TEST_F(PrintAllBundles, GivenHeaderWithoutText_WhenItThrew_ThenWhatWasWrittenStays)
{
    startedWithHeader("odd", Textless{});

    EXPECT_THROW(container.printAllBundles(stream), std::runtime_error);

    EXPECT_EQ(stream.str().find("Bundles:\n    alpha, 1, ACTIVE\n"), 0U);
    EXPECT_NE(stream.str().back(), '\n');
}

TEST_F(PrintAllBundles, GivenHeaderWithoutText_WhenItThrew_ThenTheLockIsFree)
{
    startedWithHeader("odd", Textless{});

    EXPECT_THROW(container.printAllBundles(stream), std::runtime_error);

    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(PrintAllBundles, GivenEmptyHeader_WhenPrinted_ThenTheFrameworksErrorComesThrough)
{
    startedWithHeader("odd", Any{});

    EXPECT_THROW(container.printAllBundles(stream), std::logic_error);
}

TEST_F(PrintAllBundles, GivenFrameworkStopped_WhenABundleIsRecorded_ThenTheHeadAloneIsWritten)
{
    started("alpha");
    host.stop();

    EXPECT_THROW(container.printAllBundles(stream), std::runtime_error);

    EXPECT_EQ(stream.str(), "Bundles:\n");
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(PrintAllBundles, GivenPieceBeingWritten_WhenAnotherThreadAsks_ThenTheLockIsHeld)
{
    LockProbe probe{container};
    PieceStream out;
    out.buffer.onPiece = [&probe](const std::string& piece) {
        if (piece == "Bundles:\n") {
            probe.look();
        }
    };

    container.printAllBundles(out.stream());

    EXPECT_THAT(probe.found(), ElementsAre(LockProbe::held));
}

} // namespace
} // namespace ostrel::test
