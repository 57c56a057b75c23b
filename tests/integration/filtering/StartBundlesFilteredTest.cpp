#include "container/DiagnosticLog.h"
#include "integration/filtering/StartBundlesFilteredFixture.h"
#include "integration/support/LockProbe.h"

namespace ostrel::test {
namespace {

using cppmicroservices::Bundle;
using ostrel::us_container::MicroServicesContainer;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

TEST_F(StartBundlesFiltered, GivenEmptyDirectory_WhenStarted_ThenNothingHappens)
{
    container.startBundles(dayRequired);

    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StartBundlesFiltered, GivenAdmittedBundle_WhenStarted_ThenItIsActiveAndRecorded)
{
    const std::string file = addComponent("alpha", "first", inDayMode);

    container.startBundles(dayRequired);

    EXPECT_TRUE(isActive(file));
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf(file)));
}

TEST_F(StartBundlesFiltered, GivenAdmittedBundle_WhenStarted_ThenTheFiltersRecordsComeFirst)
{
    addComponent("alpha", "first", inDayMode);

    container.startBundles(dayRequired);

    EXPECT_THAT(log.records(), ElementsAre(decision(R"(first: filters: [{"mode" : "day"}])"),
                                           decision("first: filter does match"), starting("first")));
}

TEST_F(StartBundlesFiltered, GivenAdmittedBundle_WhenStarted_ThenItStopsUnderItsComponentName)
{
    const std::string file = addComponent("alpha", "first");
    container.startBundles(nothingAsked);

    container.stopBundle("first");

    EXPECT_FALSE(isActive(file));
    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
}

TEST_F(StartBundlesFiltered, GivenRefusedBundle_WhenStarted_ThenItStaysInstalledOnly)
{
    const std::string file = addComponent("alpha", "first", inNightMode);

    container.startBundles(dayRequired);

    EXPECT_EQ(stateOf(file), Bundle::STATE_INSTALLED);
    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
}

TEST_F(StartBundlesFiltered, GivenRefusedBundle_WhenStarted_ThenTheSkipIsRecordedLast)
{
    addComponent("alpha", "first", inNightMode);

    container.startBundles(dayRequired);

    EXPECT_THAT(log.records(), ElementsAre(decision(R"(first: filters: [{"mode" : "night"}])"),
                                           decision("first: filter does not match"), skippingBundle("first")));
}

TEST_F(StartBundlesFiltered, GivenNoDeclaration_WhenNothingIsRequired_ThenItIsStarted)
{
    addComponent("alpha", "first");

    container.startBundles(day);

    EXPECT_THAT(log.records(), ElementsAre(emptyMatches("first"), starting("first")));
}

TEST_F(StartBundlesFiltered, GivenNoDeclaration_WhenAnAttributeIsRequired_ThenItIsSkipped)
{
    const std::string file = addComponent("alpha", "first");

    container.startBundles(dayRequired);

    EXPECT_FALSE(isActive(file));
    EXPECT_THAT(log.records(),
                ElementsAre(decision("first: empty filter is missing required attribute"), skippingBundle("first")));
}

TEST_F(StartBundlesFiltered, GivenSeveralBundles_WhenStarted_ThenEachIsDecidedInTheOrderOfTheFiles)
{
    addComponent("b", "second", inNightMode);
    addComponent("a", "first");
    addComponent("c", "third");

    container.startBundles(day);

    EXPECT_THAT(log.records(), ElementsAre(emptyMatches("first"), starting("first"),
                                           decision(R"(second: filters: [{"mode" : "night"}])"),
                                           decision("second: filter does not match"), skippingBundle("second"),
                                           emptyMatches("third"), starting("third")));
    EXPECT_THAT(container.listManuallyLoadedBundles(),
                UnorderedElementsAre(host.locationOf("a.zip"), host.locationOf("c.zip")));
}

TEST_F(StartBundlesFiltered, GivenTwoBundlesInOneFile_WhenOneIsRefused_ThenTheOtherIsStarted)
{
    addArchive(host, "pair.zip", {componentWith("a", "first", inNightMode), componentWith("b", "second", inDayMode)});

    container.startBundles(dayRequired);

    const auto bundles = host.context().GetBundles(host.locationOf("pair.zip"));
    ASSERT_EQ(bundles.size(), 2U);
    EXPECT_EQ(bundles[0].GetState(), Bundle::STATE_INSTALLED);
    EXPECT_EQ(bundles[1].GetState(), Bundle::STATE_ACTIVE);
}

TEST_F(StartBundlesFiltered, GivenActivatorThatLogs_WhenStarted_ThenItsRecordFollowsTheStartsRecord)
{
    host.add("logs_on_start");

    container.startBundles(dayRequired);

    EXPECT_THAT(log.records(),
                ElementsAre(decision(R"(talker: filters: [{"mode" : "day"}])"), decision("talker: filter does match"),
                            starting("talker"), LogRecord{0x1, "logs_on_start: started"}));
}

TEST_F(StartBundlesFiltered, GivenActivatorRunning_WhenItAsks_ThenItsBundleIsNotRecordedYet)
{
    host.add("alpha");
    std::vector<std::string> recorded{"not asked"};
    script.on("start alpha", [&](const auto&) { recorded = container.listManuallyLoadedBundles(); });

    container.startBundles(nothingAsked);

    EXPECT_THAT(recorded, IsEmpty());
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("libalpha.so")));
}

TEST_F(StartBundlesFiltered, GivenActivatorThatCallsBack_WhenStarted_ThenBothBundlesAreStarted)
{
    host.add("alpha");
    host.add("beta");
    script.on("start alpha", [&](const auto&) { container.startBundle("libbeta.so"); });

    container.startBundles(nothingAsked);

    EXPECT_THAT(script.events(), ElementsAre("start alpha", "start beta"));
}

TEST_F(StartBundlesFiltered, GivenActivatorRunning_WhenAnotherThreadAsks_ThenTheLockIsHeld)
{
    LockProbe probe{container};
    host.add("alpha");
    script.on("start alpha", [&probe](const auto&) { probe.look(); });

    container.startBundles(nothingAsked);

    EXPECT_THAT(probe.found(), ElementsAre(LockProbe::held));
}

TEST_F(StartBundlesFiltered, GivenFilterRecordBeingWritten_WhenAnotherThreadAsks_ThenTheLockIsHeld)
{
    LockProbe probe{container};
    addComponent("alpha", "first");
    log.onRecord([&](const LogRecord& record) {
        if (record == emptyMatches("first")) {
            probe.look();
        }
    });

    container.startBundles(nothingAsked);

    EXPECT_THAT(probe.found(), ElementsAre(LockProbe::held));
}

TEST_F(StartBundlesFiltered, GivenBundlesStarted_WhenCalledAgain_ThenEverythingIsDecidedAnew)
{
    addComponent("a", "first");
    addComponent("b", "second", inNightMode);
    container.startBundles(day);
    const auto before = log.records();
    log.clear();

    container.startBundles(day);

    EXPECT_EQ(log.records(), before);
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("a.zip")));
}

TEST_F(StartBundlesFiltered, GivenBundleStarted_WhenCalledAgain_ThenItsActivatorDoesNotRunAgain)
{
    host.add("alpha");
    container.startBundles(nothingAsked);

    container.startBundles(nothingAsked);

    EXPECT_THAT(script.events(), ElementsAre("start alpha"));
}

TEST_F(StartBundlesFiltered, GivenBundleStoppedByTheHostItself_WhenCalledAgain_ThenItIsStartedAgain)
{
    host.add("alpha");
    container.startBundles(nothingAsked);
    host.bundleIn("libalpha.so").Stop();

    container.startBundles(nothingAsked);

    EXPECT_TRUE(isActive("libalpha.so"));
}

TEST_F(StartBundlesFiltered, GivenBundleRefusedLater_WhenCalledAgain_ThenItIsNotStopped)
{
    const std::string file = addComponent("alpha", "first", inDayMode);
    container.startBundles(dayRequired);

    container.startBundles(FilterMap{{"mode", required("night")}});

    EXPECT_TRUE(isActive(file));
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf(file)));
}

TEST_F(StartBundlesFiltered, GivenAdmittedBundleStartedByTheHostItself_WhenStarted_ThenItIsRecorded)
{
    const std::string file = addComponent("alpha", "first", inDayMode);
    host.context().InstallBundles(host.locationOf(file)).at(0).Start();

    container.startBundles(dayRequired);

    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf(file)));
}

TEST_F(StartBundlesFiltered, GivenRefusedBundleStartedByTheHostItself_WhenStarted_ThenItStaysActiveAndUnrecorded)
{
    const std::string file = addComponent("alpha", "first", inNightMode);
    host.context().InstallBundles(host.locationOf(file)).at(0).Start();

    container.startBundles(dayRequired);

    EXPECT_TRUE(isActive(file));
    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
}

TEST_F(StartBundlesFiltered, GivenOneComponentNameTwice_WhenStarted_ThenBothRunAndTheLaterLocationIsKept)
{
    addComponent("a", "same");
    addComponent("b", "same");

    container.startBundles(nothingAsked);

    EXPECT_TRUE(isActive("a.zip"));
    EXPECT_TRUE(isActive("b.zip"));
    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("b.zip")));
}

TEST_F(StartBundlesFiltered, GivenNameStartedBeforeFromAnotherFile_WhenStarted_ThenItsLocationIsOverwritten)
{
    addArchive(host, "elsewhere.zip", {bundleWith("elsewhere", R"({"component": {"name": "elsewhere.zip"}})")});
    container.startBundle("elsewhere.zip");
    addComponent("zz", "elsewhere.zip");

    container.startBundles(nothingAsked);

    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(host.locationOf("zz.zip")));
}

TEST_F(StartBundlesFiltered, GivenComponentNameThatIsANumber_WhenStarted_ThenItsTextIsTheName)
{
    addArchive(host, "alpha.zip", {bundleWith("alpha", R"({"component": {"name": 7}})")});
    container.startBundles(nothingAsked);
    EXPECT_THAT(log.records(), ElementsAre(emptyMatches("7"), starting("7")));

    container.stopBundle("7");

    EXPECT_FALSE(isActive("alpha.zip"));
}

TEST_F(StartBundlesFiltered, GivenUnexpectedDeclaration_WhenNothingIsRequired_ThenItIsReportedAndTheBundleStarted)
{
    const std::string file = addComponent("alpha", "first", R"({"mode": "night"})");

    container.startBundles(day);

    EXPECT_TRUE(isActive(file));
    EXPECT_THAT(log.records(),
                ElementsAre(LogRecord{0x100, R"(first: unexpected type for filters: {"mode" : "night"})"},
                            emptyMatches("first"), starting("first")));
}

TEST_F(StartBundlesFiltered, GivenDeclarationInAManifest_WhenTheAttributeIsInOtherCase_ThenItIsNotTheSame)
{
    const std::string file = addComponent("alpha", "first", R"([{"Mode": "day"}])");

    container.startBundles(dayRequired);

    EXPECT_FALSE(isActive(file));
}

TEST_F(StartBundlesFiltered, GivenDeclaredNumberAndBoolean_WhenTheirTextsAreAsked_ThenTheBundleIsStarted)
{
    const std::string file = addComponent("alpha", "first", R"([{"level": 3, "debug": true}])");

    container.startBundles(FilterMap{{"level", required("3")}, {"debug", required("1")}});

    EXPECT_TRUE(isActive(file));
}

TEST_F(StartBundlesFiltered, GivenDecisionsMasked_WhenStarted_ThenTheBundlesStartWithoutRecords)
{
    addComponent("a", "first");
    addComponent("b", "second", inNightMode);
    ostrel::us_container::diagnosticLog().setEnabledSeverities(~std::uint32_t{0x8});

    container.startBundles(day);

    EXPECT_TRUE(isActive("a.zip"));
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(StartBundlesFiltered, GivenPathWithBackslash_WhenItsFlagIsSet_ThenTheDirectoryIsFound)
{
    std::filesystem::create_directory(host.directory() / "sub");
    addArchive(host, "sub/alpha.zip", {componentWith("alpha", "first")});
    const ostrel::platform::Utf16Path path{host.directory().u16string() + u"\\sub", true};
    MicroServicesContainer flagged{host.context(), path};

    flagged.startBundles(nothingAsked);

    EXPECT_THAT(flagged.listManuallyLoadedBundles(), ElementsAre(host.locationOf("sub/alpha.zip")));
}

TEST_F(StartBundlesFiltered, GivenBundlesStarted_WhenTheContainerGoes_ThenTheyAreStopped)
{
    const std::string file = addComponent("alpha", "first");
    {
        MicroServicesContainer shortLived{host.context(), host.bundleDirectory()};
        shortLived.startBundles(nothingAsked);
        ASSERT_TRUE(isActive(file));
    }

    EXPECT_FALSE(isActive(file));
}

} // namespace
} // namespace ostrel::test
