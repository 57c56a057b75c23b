#include "integration/services/ServicesFixture.h"

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// Notes which services are given back, in order.
class UnloadServices : public ServicesFixture {
protected:
    /// What is still held is given back while the notes are still there to be written.
    ~UnloadServices() override { container.unloadAllServices(); }

    template <typename Interface>
    ServiceReferenceU registerNoted(const std::string& note)
    {
        return registerFactory<Interface>(host.context(), newMap<Interface>,
                                          [this, note] { released.push_back(note); });
    }

    std::vector<std::string> released;
};

TEST_F(UnloadServices, GivenNames_WhenUnloaded_ThenTheyAreReleasedFromFirstToLast)
{
    registerNoted<Greeter>("greeter");
    registerNoted<Singer>("singer");
    registerNoted<Dancer>("dancer");
    container.loadServices(Names{greeterName, singerName, dancerName});

    container.unloadServices(Names{singerName, dancerName, greeterName});

    EXPECT_THAT(released, ElementsAre("singer", "dancer", "greeter"));
}

TEST_F(UnloadServices, GivenNoNames_WhenUnloaded_ThenNothingHappens)
{
    registerNoted<Greeter>("greeter");
    container.loadService(greeterName);
    log.clear();

    container.unloadServices(Names{});

    EXPECT_THAT(released, IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(UnloadServices, GivenNameTwice_WhenUnloaded_ThenTheSecondFindsNothing)
{
    registerNoted<Greeter>("greeter");
    container.loadService(greeterName);
    log.clear();

    container.unloadServices(Names{greeterName, greeterName});

    EXPECT_THAT(released, ElementsAre("greeter"));
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(UnloadServices, GivenUnknownNameInTheMiddle_WhenUnloaded_ThenTheOthersAreReleased)
{
    registerNoted<Greeter>("greeter");
    registerNoted<Singer>("singer");
    container.loadServices(Names{greeterName, singerName});

    container.unloadServices(Names{greeterName, "no.such.Class", singerName});

    EXPECT_THAT(released, ElementsAre("greeter", "singer"));
}

TEST_F(UnloadServices, GivenListThatAReleaseExtends_WhenUnloaded_ThenTheNewNameIsVisitedToo)
{
    Names names{greeterName};
    names.reserve(2); // so that whoever walked the list by iterators would still end, and miss the name
    registerFactory(host.context(), newMap<Greeter>, [&names] { names.push_back(singerName); });
    registerNoted<Singer>("singer");
    container.loadServices(Names{greeterName, singerName});

    container.unloadServices(names);

    EXPECT_THAT(released, ElementsAre("singer"));
}

TEST_F(UnloadServices, GivenServicesBeingReleased_WhenAnotherThreadAsks_ThenTheLockIsFree)
{
    LockProbe probe{container, patience};
    registerFactory(host.context(), newMap<Greeter>, [&probe] { probe.look(); });
    container.loadService(greeterName);

    container.unloadServices(Names{greeterName});

    EXPECT_THAT(probe.found(), ElementsAre(LockProbe::free));
}

using UnloadAllServices = UnloadServices;

TEST_F(UnloadAllServices, GivenNamesLoaded_WhenUnloaded_ThenTheyGoInAscendingOrder)
{
    registerNoted<Singer>("singer");
    registerNoted<Greeter>("greeter");
    const auto filtered = registerNoted<Dancer>("dancer by filter");
    container.loadServices(Names{singerName, greeterName, loadNameOf(filtered)});

    container.unloadAllServices();

    EXPECT_THAT(released, ElementsAre("dancer by filter", "greeter", "singer"));
}

TEST_F(UnloadAllServices, GivenNamesLoaded_WhenUnloaded_ThenNothingIsHeldAndNoRecordIsWritten)
{
    registerNoted<Greeter>("greeter");
    container.loadService(greeterName);
    log.clear();

    container.unloadAllServices();

    EXPECT_THAT(container.listManuallyLoadedServices(), IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(UnloadAllServices, GivenNamesUnloaded_WhenReloaded_ThenTheNamesAreForgotten)
{
    registerNoted<Greeter>("greeter");
    container.loadService(greeterName);
    container.unloadAllServices();
    log.clear();

    container.reload();

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(UnloadAllServices, GivenNothingLoaded_WhenUnloaded_ThenNothingHappens)
{
    EXPECT_NO_THROW(container.unloadAllServices());

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(UnloadAllServices, GivenServicesBeingReleased_WhenAnotherThreadAsks_ThenTheLockIsFree)
{
    LockProbe probe{container, patience};
    registerFactory(host.context(), newMap<Greeter>, [&probe] { probe.look(); });
    container.loadService(greeterName);

    container.unloadAllServices();

    EXPECT_THAT(probe.found(), ElementsAre(LockProbe::free));
}

TEST_F(UnloadAllServices, GivenNameLoadedAfterTheNamesWereCopied_WhenUnloaded_ThenItStaysLoaded)
{
    const auto dancer = registerNoted<Dancer>("dancer");
    registerFactory(host.context(), newMap<Greeter>, [this] { container.loadService(dancerName); });
    container.loadService(greeterName);

    container.unloadAllServices();

    EXPECT_THAT(usersOf(dancer), ElementsAre("system_bundle"));
}

} // namespace
} // namespace ostrel::test
