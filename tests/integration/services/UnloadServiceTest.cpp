#include "integration/services/ServicesFixture.h"

#include <cppmicroservices/ServiceRegistration.h>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class UnloadService : public ServicesFixture {
protected:
    /// Loads a Greeter and unregisters it, so that only the container keeps it alive.
    void holdTheLastShareOf(std::shared_ptr<Greeter> greeter)
    {
        auto registration = host.context().RegisterService<Greeter>(std::move(greeter));
        container.loadService(greeterName);
        registration.Unregister();
    }
};

TEST_F(UnloadService, GivenLoadedName_WhenUnloaded_ThenAllItsServicesAreReleased)
{
    const auto first = registerGreeter(host.context());
    const auto second = registerGreeter(host.context());
    container.loadService(greeterName);

    container.unloadService(greeterName);

    EXPECT_THAT(usersOf(first), IsEmpty());
    EXPECT_THAT(usersOf(second), IsEmpty());
    EXPECT_THAT(container.listManuallyLoadedServices(), IsEmpty());
}

TEST_F(UnloadService, GivenLoadedName_WhenUnloaded_ThenNoRecordIsWritten)
{
    registerGreeter(host.context());
    container.loadService(greeterName);
    log.clear();

    container.unloadService(greeterName);

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(UnloadService, GivenNameNeverLoaded_WhenUnloaded_ThenNothingHappens)
{
    const auto service = registerGreeter(host.context());
    container.loadService(greeterName);
    log.clear();

    container.unloadService(singerName);

    EXPECT_THAT(usersOf(service), ElementsAre("system_bundle"));
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(UnloadService, GivenNameLoadedByFilter_WhenAnEqualFilterInOtherSpellingIsUnloaded_ThenItStaysHeld)
{
    const auto service = registerGreeter(host.context(), {{"colour", std::string{"red"}}});
    container.loadService("(colour=red)");

    container.unloadService("( colour=red)");

    EXPECT_THAT(usersOf(service), ElementsAre("system_bundle"));
}

TEST_F(UnloadService, GivenServiceHeldUnderTwoNames_WhenOneIsUnloaded_ThenTheOtherKeepsIt)
{
    const auto service = registerGreeter(host.context());
    container.loadServices(Names{greeterName, loadNameOf(service)});

    container.unloadService(greeterName);

    EXPECT_THAT(usersOf(service), ElementsAre("system_bundle"));
    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(1));
}

TEST_F(UnloadService, GivenServiceHeldUnderTwoNames_WhenBothAreUnloaded_ThenItIsReleased)
{
    const auto service = registerGreeter(host.context());
    container.loadServices(Names{greeterName, loadNameOf(service)});

    container.unloadService(greeterName);
    container.unloadService(loadNameOf(service));

    EXPECT_THAT(usersOf(service), IsEmpty());
}

TEST_F(UnloadService, GivenNameUnloaded_WhenLoadedAgain_ThenItIsHeldAgain)
{
    const auto service = registerGreeter(host.context());
    container.loadService(greeterName);
    container.unloadService(greeterName);

    container.loadService(greeterName);

    EXPECT_THAT(usersOf(service), ElementsAre("system_bundle"));
    EXPECT_THAT(log.records(), ElementsAre(loaded(greeterName), loaded(greeterName)));
}

TEST_F(UnloadService, GivenNameUnloaded_WhenReloaded_ThenTheNameIsForgotten)
{
    registerGreeter(host.context());
    container.loadService(greeterName);
    container.unloadService(greeterName);
    log.clear();

    container.reload();

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(UnloadService, GivenServiceWithoutOtherOwner_WhenUnloaded_ThenItIsDestroyed)
{
    bool destroyed = false;
    holdTheLastShareOf(std::make_shared<DyingGreeter>([&destroyed] { destroyed = true; }));
    EXPECT_FALSE(destroyed);

    container.unloadService(greeterName);

    EXPECT_TRUE(destroyed);
}

TEST_F(UnloadService, GivenDestructorThatWaitsForAnotherThreadsCall_WhenUnloaded_ThenTheLockIsFreeMeanwhile)
{
    LockProbe probe{container, patience};
    holdTheLastShareOf(std::make_shared<DyingGreeter>([&probe] { probe.look(); }));

    container.unloadService(greeterName);

    EXPECT_THAT(probe.found(), ElementsAre(LockProbe::free));
}

TEST_F(UnloadService, GivenDestructorThatCallsBack_WhenUnloaded_ThenTheRecordsAreEditedAlready)
{
    registerGreeter(host.context());
    std::vector<std::string> heldMeanwhile{"not looked"};
    holdTheLastShareOf(std::make_shared<DyingGreeter>([&] { heldMeanwhile = container.listManuallyLoadedServices(); }));

    container.unloadService(greeterName);

    EXPECT_THAT(heldMeanwhile, IsEmpty());
}

TEST_F(UnloadService, GivenDestructorThatLoadsTheNameAgain_WhenUnloaded_ThenTheNewLoadStays)
{
    holdTheLastShareOf(std::make_shared<DyingGreeter>([this] { container.loadService(greeterName); }));
    const auto successor = registerGreeter(host.context());

    container.unloadService(greeterName);

    EXPECT_THAT(usersOf(successor), ElementsAre("system_bundle"));
}

TEST_F(UnloadService, GivenDestructorThatLoadsTheNameAgain_WhenUnloaded_ThenTheNameIsRecordedAgain)
{
    holdTheLastShareOf(std::make_shared<DyingGreeter>([this] { container.loadService(greeterName); }));
    const auto successor = registerGreeter(host.context());
    container.unloadService(greeterName);

    container.unloadAllServices();

    EXPECT_THAT(usersOf(successor), IsEmpty());
}

TEST_F(UnloadService, GivenServicesOfTwoClassesUnderOneName_WhenUnloaded_ThenTheyGoInTheOrderInWhichTheyAreListed)
{
    std::vector<std::string> released;
    const auto noting = [&released](const std::string& name) {
        return [&released, name] { released.push_back(name); };
    };
    const Properties red{{"colour", std::string{"red"}}};
    const auto textOf = [](const ServiceReferenceU& reference) {
        return reference.GetProperty("objectclass").ToString();
    };
    const auto greeter = registerFactory<Greeter>(host.context(), newMap<Greeter>, noting("greeter"), red);
    const auto singer = registerFactory<Singer>(host.context(), newMap<Singer>, noting("singer"), red);
    const auto dancer = registerFactory<Dancer>(host.context(), newMap<Dancer>, noting("dancer"), red);
    container.loadService("(colour=red)");
    std::vector<std::string> expected;
    for (const std::string& text : container.listManuallyLoadedServices()) {
        expected.push_back(text == textOf(greeter)  ? "greeter"
                           : text == textOf(singer) ? "singer"
                           : text == textOf(dancer) ? "dancer"
                                                    : "unknown");
    }
    ASSERT_THAT(expected, SizeIs(3));

    container.unloadService("(colour=red)");

    EXPECT_THAT(released, ElementsAreArray(expected));
}

TEST_F(UnloadService, GivenFactoryThatThrowsWhenGivenBackTheFirst_WhenUnloaded_ThenTheOthersAreReleasedToo)
{
    const auto failing = registerFactory(host.context(), newMap<Greeter>,
                                         [] { throw std::runtime_error{"planned fault: service not taken back"}; });
    const auto other = registerGreeter(host.context());
    container.loadService(greeterName);

    EXPECT_NO_THROW(container.unloadService(greeterName));

    EXPECT_THAT(usersOf(failing), IsEmpty());
    EXPECT_THAT(usersOf(other), IsEmpty());
}

TEST_F(UnloadService, GivenNullServiceHeld_WhenUnloaded_ThenNothingIsWritten)
{
    registerFactory(host.context(), [] { return nullptr; });
    container.loadService(greeterName);
    log.clear();

    container.unloadService(greeterName);

    EXPECT_THAT(container.listManuallyLoadedServices(), IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(UnloadService, GivenNameGivenByReferenceIntoTheService_WhenItIsDestroyed_ThenNothingBreaks)
{
    auto name = std::make_unique<std::string>(greeterName);
    holdTheLastShareOf(std::make_shared<DyingGreeter>([&name] { *name = "changed meanwhile"; }));

    container.unloadService(*name);

    EXPECT_THAT(container.listManuallyLoadedServices(), IsEmpty());
}

} // namespace
} // namespace ostrel::test
