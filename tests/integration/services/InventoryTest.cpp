#include "integration/services/ServicesFixture.h"

#include <cppmicroservices/ServiceRegistration.h>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

using ListManuallyLoadedBundles = ServicesFixture;
using ListManuallyLoadedServices = ServicesFixture;

TEST_F(ListManuallyLoadedBundles, GivenNothingStarted_WhenListed_ThenTheListIsEmpty)
{
    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
}

TEST_F(ListManuallyLoadedBundles, GivenStartedBundles_WhenListed_ThenTheirLocationsAreGiven)
{
    startedBundle("alpha");
    startedBundle("beta");

    EXPECT_THAT(container.listManuallyLoadedBundles(),
                UnorderedElementsAre(host.locationOf("alpha.zip"), host.locationOf("beta.zip")));
}

TEST_F(ListManuallyLoadedBundles, GivenOneFileUnderTwoNames_WhenListed_ThenItsLocationIsGivenTwice)
{
    startedBundle("alpha");
    std::filesystem::create_symlink("alpha.zip", host.directory() / "again.zip");
    container.startBundle("again.zip");

    EXPECT_THAT(container.listManuallyLoadedBundles(),
                ElementsAre(host.locationOf("alpha.zip"), host.locationOf("alpha.zip")));
}

TEST_F(ListManuallyLoadedBundles, GivenNameThatWasStoppedWithoutAStart_WhenListed_ThenAnEmptyLocationIsGiven)
{
    container.stopBundle("never started");

    EXPECT_THAT(container.listManuallyLoadedBundles(), ElementsAre(""));
}

TEST_F(ListManuallyLoadedBundles, GivenBundleStartedByTheHostItself_WhenListed_ThenItIsNotAmongThem)
{
    const std::string file = addArchive(host, "beta.zip", {bundleWith("beta")});
    host.context().InstallBundles(host.locationOf(file)).at(0).Start();

    EXPECT_THAT(container.listManuallyLoadedBundles(), IsEmpty());
}

TEST_F(ListManuallyLoadedServices, GivenNothingLoaded_WhenListed_ThenTheListIsEmpty)
{
    registerGreeter(host.context());

    EXPECT_THAT(container.listManuallyLoadedServices(), IsEmpty());
}

TEST_F(ListManuallyLoadedServices, GivenServiceWithOneInterface_WhenListed_ThenTheFrameworksTextOfItsClassesIsGiven)
{
    registerGreeter(host.context());
    container.loadService(greeterName);

    EXPECT_THAT(container.listManuallyLoadedServices(), ElementsAre("[ostrel::test::Greeter]"));
}

TEST_F(ListManuallyLoadedServices, GivenServiceWithTwoInterfaces_WhenListed_ThenTheFrameworksTextOfItsClassesIsGiven)
{
    struct Both final : Greeter, Singer {};
    const auto registration = host.context().RegisterService<Greeter, Singer>(std::make_shared<Both>());
    container.loadService(singerName);

    const std::string classes = registration.GetReference().GetProperty("objectclass").ToString();
    EXPECT_THAT(container.listManuallyLoadedServices(), ElementsAre(classes));
}

TEST_F(ListManuallyLoadedServices, GivenNameThatMatchedTwoServices_WhenListed_ThenBothAreGiven)
{
    registerGreeter(host.context());
    registerGreeter(host.context());
    container.loadService(greeterName);

    EXPECT_THAT(container.listManuallyLoadedServices(),
                ElementsAre("[ostrel::test::Greeter]", "[ostrel::test::Greeter]"));
}

TEST_F(ListManuallyLoadedServices, GivenServiceHeldUnderTwoNames_WhenListed_ThenItIsGivenTwice)
{
    const auto service = registerGreeter(host.context());
    container.loadServices(Names{greeterName, loadNameOf(service)});

    EXPECT_THAT(container.listManuallyLoadedServices(),
                ElementsAre("[ostrel::test::Greeter]", "[ostrel::test::Greeter]"));
}

TEST_F(ListManuallyLoadedServices, GivenHeldServiceUnregistered_WhenListed_ThenItIsStillGiven)
{
    auto registration = host.context().RegisterService<Greeter>(std::make_shared<PlainGreeter>());
    container.loadService(greeterName);
    registration.Unregister();

    EXPECT_THAT(container.listManuallyLoadedServices(), ElementsAre("[ostrel::test::Greeter]"));
}

} // namespace
} // namespace ostrel::test
