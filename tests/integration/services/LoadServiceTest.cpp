#include "container/DiagnosticLog.h"
#include "integration/services/ServicesFixture.h"

#include <stdexcept>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using LoadService = ServicesFixture;

TEST_F(LoadService, GivenServicesOfClass_WhenLoadedByClassName_ThenEachIsHeld)
{
    const auto first = registerGreeter(host.context());
    const auto second = registerGreeter(host.context());

    container.loadService(greeterName);

    EXPECT_THAT(usersOf(first), ElementsAre("system_bundle"));
    EXPECT_THAT(usersOf(second), ElementsAre("system_bundle"));
    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(2));
}

TEST_F(LoadService, GivenServicesOfClass_WhenLoadedByClassName_ThenOneRecordIsWritten)
{
    registerGreeter(host.context());
    registerGreeter(host.context());

    container.loadService(greeterName);

    EXPECT_THAT(log.records(), ElementsAre(loaded(greeterName)));
}

TEST_F(LoadService, GivenServicesOfOtherClass_WhenLoadedByClassName_ThenTheyAreNotHeld)
{
    registerGreeter(host.context());
    const auto other = registerFactory<Singer>(host.context(), newMap<Singer>);

    container.loadService(greeterName);

    EXPECT_THAT(usersOf(other), IsEmpty());
}

TEST_F(LoadService, GivenServicesOfTwoClasses_WhenLoadedByFilter_ThenThoseThatMatchAreHeld)
{
    const auto red = registerGreeter(host.context(), {{"colour", std::string{"red"}}});
    const auto blue = registerGreeter(host.context(), {{"colour", std::string{"blue"}}});
    const auto redToo = registerFactory<Singer>(host.context(), newMap<Singer>, {}, {{"colour", std::string{"red"}}});

    container.loadService("(colour=red)");

    EXPECT_THAT(usersOf(red), ElementsAre("system_bundle"));
    EXPECT_THAT(usersOf(blue), IsEmpty());
    EXPECT_THAT(usersOf(redToo), ElementsAre("system_bundle"));
}

TEST_F(LoadService, GivenMatchingFilter_WhenLoaded_ThenTheRecordQuotesTheFilter)
{
    registerGreeter(host.context(), {{"colour", std::string{"red"}}});

    container.loadService("(colour=red)");

    EXPECT_THAT(log.records(), ElementsAre(loaded("(colour=red)")));
}

TEST_F(LoadService, GivenFilterWithLeadingBlank_WhenLoaded_ThenItIsAClassNameThatMatchesNothing)
{
    const auto service = registerGreeter(host.context(), {{"colour", std::string{"red"}}});

    container.loadService(" (colour=red)");

    EXPECT_THAT(usersOf(service), IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LoadService, GivenMalformedFilterWithLeadingBlank_WhenLoaded_ThenNothingIsThrown)
{
    EXPECT_NO_THROW(container.loadService(" (colour"));
}

TEST_F(LoadService, GivenClassNamedLikeAFilterInside_WhenLoaded_ThenOnlyTheFirstCharacterDecides)
{
    cppmicroservices::InterfaceMap map;
    map["odd(name=1)"] = std::make_shared<PlainGreeter>();
    const auto registration =
        host.context().RegisterService(std::make_shared<const cppmicroservices::InterfaceMap>(map));

    container.loadService("odd(name=1)");

    EXPECT_THAT(usersOf(registration.GetReference()), ElementsAre("system_bundle"));
}

TEST_F(LoadService, GivenServicesOfManyClasses_WhenEmptyNameIsLoaded_ThenEveryServiceIsHeld)
{
    const auto greeter = registerGreeter(host.context());
    const auto singer = registerFactory<Singer>(host.context(), newMap<Singer>);
    const auto all = host.context().GetServiceReferences("", "").size();

    container.loadService("");

    EXPECT_THAT(usersOf(greeter), ElementsAre("system_bundle"));
    EXPECT_THAT(usersOf(singer), ElementsAre("system_bundle"));
    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(all));
}

TEST_F(LoadService, GivenServices_WhenEmptyNameIsLoaded_ThenOneRecordWithAnEmptyNameIsWritten)
{
    registerGreeter(host.context());
    registerGreeter(host.context());

    container.loadService("");

    EXPECT_THAT(log.records(), ElementsAre(loaded("")));
}

TEST_F(LoadService, GivenEmptyNameLoaded_WhenAllAreUnloaded_ThenTheEmptyNameWasRecorded)
{
    const auto service = registerGreeter(host.context());
    container.loadService("");

    container.unloadAllServices();

    EXPECT_THAT(usersOf(service), IsEmpty());
}

TEST_F(LoadService, GivenNameLoaded_WhenLoadedAgain_ThenNothingIsAdded)
{
    registerGreeter(host.context());
    registerGreeter(host.context());
    container.loadService(greeterName);

    container.loadService(greeterName);

    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(2));
}

TEST_F(LoadService, GivenNameLoaded_WhenLoadedAgain_ThenNoRecordIsWritten)
{
    registerGreeter(host.context());
    container.loadService(greeterName);
    log.clear();

    container.loadService(greeterName);

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LoadService, GivenNameLoadedTwice_WhenUnloadedOnce_ThenTheServiceIsReleased)
{
    const auto service = registerGreeter(host.context());
    container.loadService(greeterName);
    container.loadService(greeterName);

    container.unloadService(greeterName);

    EXPECT_THAT(usersOf(service), IsEmpty());
}

TEST_F(LoadService, GivenNameLoaded_WhenLoadedAfterAnotherServiceCame_ThenOnlyThatIsAdded)
{
    registerGreeter(host.context());
    container.loadService(greeterName);
    const auto newcomer = registerGreeter(host.context());

    container.loadService(greeterName);

    EXPECT_THAT(usersOf(newcomer), ElementsAre("system_bundle"));
    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(2));
}

TEST_F(LoadService, GivenNameLoaded_WhenLoadedAfterAnotherServiceCame_ThenOneMoreRecordIsWritten)
{
    registerGreeter(host.context());
    container.loadService(greeterName);
    registerGreeter(host.context());

    container.loadService(greeterName);

    EXPECT_THAT(log.records(), ElementsAre(loaded(greeterName), loaded(greeterName)));
}

TEST_F(LoadService, GivenServiceHeldUnderItsClass_WhenLoadedByItsId_ThenItIsHeldTwice)
{
    const auto service = registerGreeter(host.context());
    container.loadService(greeterName);

    container.loadService(loadNameOf(service));

    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(2));
    EXPECT_THAT(log.records(), ElementsAre(loaded(greeterName), loaded(loadNameOf(service))));
}

TEST_F(LoadService, GivenNameThatMatchesNothing_WhenLoaded_ThenNothingHappens)
{
    registerGreeter(host.context());

    container.loadService("no.such.Class");

    EXPECT_THAT(container.listManuallyLoadedServices(), IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LoadService, GivenMalformedFilter_WhenLoaded_ThenTheFrameworksErrorComesThrough)
{
    registerGreeter(host.context());

    EXPECT_THROW(container.loadService("(colour"), std::invalid_argument);
}

TEST_F(LoadService, GivenMalformedFilter_WhenItThrew_ThenTheLockIsFree)
{
    EXPECT_THROW(container.loadService("("), std::invalid_argument);

    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(LoadService, GivenMalformedFilter_WhenItThrew_ThenNothingIsHeldAndNoRecordIsWritten)
{
    registerGreeter(host.context());

    EXPECT_THROW(container.loadService("(&)"), std::invalid_argument);

    EXPECT_THAT(container.listManuallyLoadedServices(), IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LoadService, GivenServicesOfUnequalRanking_WhenLoaded_ThenTheyAreObtainedInTheFrameworksOrder)
{
    std::vector<int> order;
    for (const int ranking : {1, 3, 2}) {
        const auto get = [&order, ranking] {
            order.push_back(ranking);
            return newMap<Greeter>();
        };
        registerFactory(host.context(), get, {}, {{"service.ranking", ranking}});
    }

    container.loadService(greeterName);

    EXPECT_THAT(order, ElementsAre(3, 2, 1));
}

TEST_F(LoadService, GivenFactoryThatReturnsNull_WhenLoaded_ThenTheServiceIsHeldLikeAnyOther)
{
    registerFactory(host.context(), [] { return nullptr; });

    container.loadService(greeterName);

    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(1));
    EXPECT_THAT(log.records(), ElementsAre(loaded(greeterName)));
}

TEST_F(LoadService, GivenNullServiceHeld_WhenLoadedAgain_ThenTheFactoryIsNotAskedAgain)
{
    int asked = 0;
    const auto get = [&asked]() -> cppmicroservices::InterfaceMapConstPtr {
        ++asked;
        return nullptr;
    };
    registerFactory(host.context(), get);
    container.loadService(greeterName);

    container.loadService(greeterName);

    EXPECT_EQ(asked, 1);
    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(1));
}

TEST_F(LoadService, GivenFactoryThatThrowsAnException_WhenLoaded_ThenTheServiceIsHeldAsNull)
{
    const auto get = []() -> cppmicroservices::InterfaceMapConstPtr {
        throw std::runtime_error{"planned fault: no service"};
    };
    registerFactory(host.context(), get);

    EXPECT_NO_THROW(container.loadService(greeterName));

    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(1));
    EXPECT_THAT(log.records(), ElementsAre(loaded(greeterName)));
}

/// Three services of one class, of which the second cannot be had while `fails`.
class LoadServiceHalfWay : public ServicesFixture {
protected:
    LoadServiceHalfWay()
    {
        registerFactory(host.context(), [this] {
            if (fails) {
                throw 42;
            }
            return newMap<Greeter>();
        });
        third = registerGreeter(host.context());
    }

    bool fails = true;
    ServiceReferenceU first = registerGreeter(host.context());
    ServiceReferenceU third;
};

TEST_F(LoadServiceHalfWay, GivenSecondFactoryThrowsAnInt_WhenLoaded_ThenTheIntComesThrough)
{
    EXPECT_THROW(container.loadService(greeterName), int);
}

TEST_F(LoadServiceHalfWay, GivenSecondFactoryThrowsAnInt_WhenItThrew_ThenTheFirstAloneStaysHeld)
{
    EXPECT_THROW(container.loadService(greeterName), int);

    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(1));
    EXPECT_THAT(usersOf(first), ElementsAre("system_bundle"));
    EXPECT_THAT(usersOf(third), IsEmpty());
}

TEST_F(LoadServiceHalfWay, GivenSecondFactoryThrowsAnInt_WhenItThrew_ThenNoRecordIsWritten)
{
    EXPECT_THROW(container.loadService(greeterName), int);

    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LoadServiceHalfWay, GivenSecondFactoryThrowsAnInt_WhenItThrew_ThenTheLockIsFree)
{
    EXPECT_THROW(container.loadService(greeterName), int);

    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(LoadServiceHalfWay, GivenLoadThatFailedHalfWay_WhenAllAreUnloaded_ThenItsEntriesStay)
{
    EXPECT_THROW(container.loadService(greeterName), int);

    container.unloadAllServices();

    EXPECT_THAT(usersOf(first), ElementsAre("system_bundle"));
}

TEST_F(LoadServiceHalfWay, GivenLoadThatFailedHalfWay_WhenTheNameIsUnloaded_ThenItsEntriesAreReleased)
{
    EXPECT_THROW(container.loadService(greeterName), int);

    container.unloadService(greeterName);

    EXPECT_THAT(usersOf(first), IsEmpty());
    EXPECT_THAT(container.listManuallyLoadedServices(), IsEmpty());
}

TEST_F(LoadServiceHalfWay, GivenLoadThatFailedHalfWay_WhenLoadedAgainWithoutTheFault_ThenTheRestIsAdded)
{
    EXPECT_THROW(container.loadService(greeterName), int);
    fails = false;

    container.loadService(greeterName);

    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(3));
    EXPECT_THAT(log.records(), ElementsAre(loaded(greeterName)));
}

TEST_F(LoadService, GivenFactoryRunning_WhenAnotherThreadAsks_ThenTheLockIsHeld)
{
    LockProbe probe{container};
    const auto get = [&probe] {
        probe.look();
        return newMap<Greeter>();
    };
    registerFactory(host.context(), get);

    container.loadService(greeterName);

    EXPECT_THAT(probe.found(), ElementsAre(LockProbe::held));
}

TEST_F(LoadService, GivenRecordBeingWritten_WhenAnotherThreadAsks_ThenTheLockIsHeld)
{
    LockProbe probe{container};
    registerGreeter(host.context());
    log.onRecord([&probe](const LogRecord&) { probe.look(); });

    container.loadService(greeterName);
    log.onRecord({});

    EXPECT_THAT(probe.found(), ElementsAre(LockProbe::held));
}

TEST_F(LoadService, GivenFactoryThatLoadsAnotherName_WhenLoaded_ThenBothAreHeld)
{
    const auto singer = registerFactory<Singer>(host.context(), newMap<Singer>);
    const auto get = [this] {
        container.loadService(singerName);
        return newMap<Greeter>();
    };
    registerFactory(host.context(), get);

    container.loadService(greeterName);

    EXPECT_THAT(usersOf(singer), ElementsAre("system_bundle"));
    EXPECT_THAT(log.records(), ElementsAre(loaded(singerName), loaded(greeterName)));
}

TEST_F(LoadService, GivenSeverityMasked_WhenLoaded_ThenTheServiceIsHeldWithoutARecord)
{
    const auto service = registerGreeter(host.context());
    ostrel::us_container::diagnosticLog().setEnabledSeverities(~std::uint32_t{0x10});

    container.loadService(greeterName);

    EXPECT_THAT(usersOf(service), ElementsAre("system_bundle"));
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LoadService, GivenSinkThatThrows_WhenItThrew_ThenTheNameIsRecordedAlready)
{
    const auto service = registerGreeter(host.context());
    log.onRecord([](const LogRecord&) { throw std::runtime_error{"planned fault: sink"}; });

    EXPECT_THROW(container.loadService(greeterName), std::runtime_error);
    log.onRecord({});
    container.unloadAllServices();

    EXPECT_THAT(usersOf(service), IsEmpty());
}

TEST_F(LoadService, GivenSinkThatThrows_WhenItThrew_ThenTheLockIsFree)
{
    registerGreeter(host.context());
    log.onRecord([](const LogRecord&) { throw std::runtime_error{"planned fault: sink"}; });

    EXPECT_THROW(container.loadService(greeterName), std::runtime_error);
    log.onRecord({});

    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(LoadService, GivenTwoContainers_WhenOneLoads_ThenTheOtherHoldsNothing)
{
    registerGreeter(host.context());
    ostrel::us_container::MicroServicesContainer other{host.context(), host.bundleDirectory()};

    container.loadService(greeterName);

    EXPECT_THAT(other.listManuallyLoadedServices(), IsEmpty());
}

} // namespace
} // namespace ostrel::test
