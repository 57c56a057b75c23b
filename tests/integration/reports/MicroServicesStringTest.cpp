#include "integration/reports/ReportsFixture.h"
#include "integration/support/Scheduling.h"

#include <filesystem>
#include <functional>

namespace ostrel::test {
namespace {

using cppmicroservices::Bundle;
using ostrel::us_container::MicroServicesContainer;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using GetMicroServicesString = ReportsFixture;

TEST_F(GetMicroServicesString, GivenNothing_WhenReported_ThenThereAreThreeHeads)
{
    EXPECT_EQ(container.getMicroServicesString(), "Bundles:\nManually loaded service types:\nBundle services:\n");
}

TEST_F(GetMicroServicesString, GivenBundleWithLoadedService_WhenReported_ThenTheTextIsExact)
{
    const Bundle bundle = started("alpha");
    const auto service = registerGreeter(bundle.GetBundleContext(), {{"colour", std::string{"red"}}});
    container.loadService(greeterName);

    EXPECT_EQ(container.getMicroServicesString(), "Bundles:\n" + bundleLines(bundle, "1", "ACTIVE") +
                                                      "Manually loaded service types:\n"
                                                      "    [ostrel::test::Greeter]\n"
                                                      "Bundle services:\n"
                                                      "    alpha:\n" +
                                                      serviceBlock(service, {greeterName}, {"system_bundle"}));
}

TEST_F(GetMicroServicesString, GivenBundleLibraryWithThreeServices_WhenReported_ThenEachHasItsBlockInOrder)
{
    container.startBundle(host.add("three_services"));
    const Bundle bundle = host.bundleIn("libthree_services.so");
    const auto services = bundle.GetRegisteredServices();
    ASSERT_THAT(services, SizeIs(3));

    std::string expected = "Bundles:\n" + bundleLines(bundle, "1", "ACTIVE") +
                           "Manually loaded service types:\n"
                           "Bundle services:\n"
                           "    three_services:\n";
    for (const auto& service : services) {
        expected += serviceBlock(service, {"three_services::Lamp"}, {"system_bundle"});
    }
    EXPECT_EQ(container.getMicroServicesString(), expected);
}

TEST_F(GetMicroServicesString, GivenBundleWithoutServices_WhenReported_ThenItsNameStandsAlone)
{
    const Bundle bundle = started("alpha");

    EXPECT_EQ(container.getMicroServicesString(), "Bundles:\n" + bundleLines(bundle, "1", "ACTIVE") +
                                                      "Manually loaded service types:\n"
                                                      "Bundle services:\n"
                                                      "    alpha:\n");
}

TEST_F(GetMicroServicesString, GivenServiceOfAnotherBundleLoaded_WhenReported_ThenItIsListedButHasNoBlock)
{
    registerGreeter(host.context());
    container.loadService(greeterName);

    EXPECT_EQ(container.getMicroServicesString(), "Bundles:\n"
                                                  "Manually loaded service types:\n"
                                                  "    [ostrel::test::Greeter]\n"
                                                  "Bundle services:\n");
}

TEST_F(GetMicroServicesString, GivenOneFileUnderTwoNames_WhenReported_ThenItsBundleIsReportedTwice)
{
    const Bundle bundle = started("alpha");
    std::filesystem::create_symlink("alpha.zip", host.directory() / "again.zip");
    container.startBundle("again.zip");
    const auto service = registerGreeter(bundle.GetBundleContext());

    const std::string lines = bundleLines(bundle, "1", "ACTIVE");
    const std::string services = "    alpha:\n" + serviceBlock(service, {greeterName}, {"system_bundle"});
    EXPECT_EQ(container.getMicroServicesString(), "Bundles:\n" + lines + lines +
                                                      "Manually loaded service types:\n"
                                                      "Bundle services:\n" +
                                                      services + services);
}

TEST_F(GetMicroServicesString, GivenBundleUninstalledMeanwhile_WhenReported_ThenItHasNoLines)
{
    Bundle bundle = started("alpha");
    bundle.Uninstall();

    EXPECT_EQ(container.getMicroServicesString(), "Bundles:\nManually loaded service types:\nBundle services:\n");
}

TEST_F(GetMicroServicesString, GivenNameThatWasStoppedWithoutAStart_WhenReported_ThenItHasNoLines)
{
    container.stopBundle("never started");

    EXPECT_EQ(container.getMicroServicesString(), "Bundles:\nManually loaded service types:\nBundle services:\n");
}

TEST_F(GetMicroServicesString, GivenReport_WhenItReturned_ThenTheServicesAreReleasedAgain)
{
    const auto service = registerGreeter(started("alpha").GetBundleContext());

    container.getMicroServicesString();

    EXPECT_THAT(usersOf(service), IsEmpty());
    EXPECT_THAT(container.listManuallyLoadedServices(), IsEmpty());
}

TEST_F(GetMicroServicesString, GivenPropertyWithoutText_WhenItThrew_ThenTheLockIsFree)
{
    registerGreeter(started("alpha").GetBundleContext(), {{"odd", Textless{}}});

    EXPECT_THROW(container.getMicroServicesString(), std::runtime_error);

    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(GetMicroServicesString, GivenFrameworkStopped_WhenABundleIsRecorded_ThenItsErrorComesThrough)
{
    started("alpha");
    host.stop();

    EXPECT_THROW(container.getMicroServicesString(), std::runtime_error);

    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(GetMicroServicesString, GivenFrameworkStopped_WhenNothingIsRecorded_ThenThereAreThreeHeads)
{
    host.stop();

    EXPECT_EQ(container.getMicroServicesString(), "Bundles:\nManually loaded service types:\nBundle services:\n");
}

/// A header that runs a function when its text is asked for, which happens in the first half of a report.
struct Signal {
    std::function<void()>* run;

    friend std::ostream& operator<<(std::ostream& stream, const Signal& signal)
    {
        if (*signal.run) {
            (*signal.run)();
        }
        return stream << "signal";
    }
};

// Each half holds the lock, the whole does not: a load that waits for the first half to end comes before the second.
TEST_F(GetMicroServicesString, GivenLoadThatBeganInTheFirstHalf_WhenReported_ThenTheSecondHalfMayKnowOfIt)
{
    registerGreeter(host.context());
    std::function<void()> inFirstHalf;
    const Bundle bundle = startedWithHeader("signal", Signal{&inFirstHalf});

    std::string report;
    bool secondHalfKnows = false;
    for (int round = 0; round < 200 && !secondHalfKnows; ++round) {
        container.unloadAllServices();
        Latch begun;
        inFirstHalf = [&begun] { begun.open(); };
        const OtherThread loading{[&] {
            meetOnFirstProcessor(Urgency::urgent);
            begun.waitFor();
            container.loadService(greeterName);
        }};
        const OtherThread reporting{[&] {
            meetOnFirstProcessor(Urgency::patient);
            report = container.getMicroServicesString();
        }};
        ASSERT_TRUE(reporting.finishesWithin());
        inFirstHalf = nullptr;
        secondHalfKnows = report.find("    [ostrel::test::Greeter]\n") != std::string::npos;
    }

    EXPECT_TRUE(secondHalfKnows);
}

TEST_F(GetMicroServicesString, GivenTwoContainers_WhenReported_ThenEachTellsOfItsOwn)
{
    started("alpha");
    MicroServicesContainer other{host.context(), host.bundleDirectory()};

    EXPECT_EQ(other.getMicroServicesString(), "Bundles:\nManually loaded service types:\nBundle services:\n");
}

} // namespace
} // namespace ostrel::test
