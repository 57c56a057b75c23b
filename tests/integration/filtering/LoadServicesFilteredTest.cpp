#include "container/DiagnosticLog.h"
#include "integration/filtering/FilteringFixture.h"
#include "integration/support/BundleArchive.h"
#include "integration/support/LockProbe.h"
#include "integration/support/Services.h"
#include "support/Host.h"

#include <atomic>

namespace ostrel::test {
namespace {

using cppmicroservices::BundleContext;
using ostrel::us_container::MicroServicesContainer;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::SizeIs;

const FilterMap nothingAsked;
const FilterMap day{{"mode", optional("day")}};
const FilterMap dayRequired{{"mode", required("day")}};

std::string idText(const ServiceReferenceU& service)
{
    return std::to_string(idOf(service));
}
LogRecord decision(const std::string& text)
{
    return {0x8, text};
}
LogRecord loaded(const ServiceReferenceU& service)
{
    return {0x10, "Loaded services with name: '(service.id=" + idText(service) + ")'"};
}
LogRecord skippingService(const ServiceReferenceU& service)
{
    return decision("Skipping service: " + idText(service));
}

/// Properties with a "zq" map that holds this declaration.
Properties declaring(const Any& filters)
{
    return {{"zq", alternative({{"ostrelStartupLoadFilters", filters}})}};
}
Properties inMode(const std::string& mode)
{
    return declaring(listOf(alternative({{"mode", text(mode)}})));
}

class LoadServicesFiltered : public HostFixture {
protected:
    /// Starts a bundle without code through the container; the test registers services in its name.
    BundleContext started(const std::string& name)
    {
        const std::string file = addArchive(host, name + ".zip", {bundleWith(name)});
        container.startBundle(file);
        return host.bundleIn(file).GetBundleContext();
    }

    RecordCapture log;
    MicroServicesContainer container{host.context(), host.bundleDirectory()};
};

TEST_F(LoadServicesFiltered, GivenNoStartedBundle_WhenLoaded_ThenServicesOfOthersAreLeftAlone)
{
    const auto service = registerGreeter(host.context(), inMode("day"));

    container.loadServices(dayRequired);

    EXPECT_THAT(usersOf(service), IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LoadServicesFiltered, GivenBundleStartedByTheHostItself_WhenLoaded_ThenItsServicesAreLeftAlone)
{
    started("alpha");
    const std::string file = addArchive(host, "beta.zip", {bundleWith("beta")});
    auto bundle = host.context().InstallBundles(host.locationOf(file)).at(0);
    bundle.Start();
    const auto service = registerGreeter(bundle.GetBundleContext());

    container.loadServices(nothingAsked);

    EXPECT_THAT(usersOf(service), IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LoadServicesFiltered, GivenUndeclaredRefusedAndAdmittedServices_WhenLoaded_ThenFirstAndThirdAreHeld)
{
    const auto bundle = started("alpha");
    const auto undeclared = registerGreeter(bundle);
    const auto refused = registerGreeter(bundle, inMode("night"));
    const auto admitted = registerGreeter(bundle, inMode("day"));

    container.loadServices(dayRequired);

    EXPECT_THAT(usersOf(undeclared), ElementsAre("system_bundle"));
    EXPECT_THAT(usersOf(refused), IsEmpty());
    EXPECT_THAT(usersOf(admitted), ElementsAre("system_bundle"));
}

TEST_F(LoadServicesFiltered,
       GivenUndeclaredRefusedAndAdmittedServices_WhenLoaded_ThenAllIsDecidedBeforeAnythingIsLoaded)
{
    const auto bundle = started("alpha");
    const auto undeclared = registerGreeter(bundle);
    const auto refused = registerGreeter(bundle, inMode("night"));
    const auto admitted = registerGreeter(bundle, inMode("day"));

    container.loadServices(dayRequired);

    EXPECT_THAT(log.records(),
                ElementsAre(decision(idText(refused) + R"(: filters: [{"mode" : "night"}])"),
                            decision(idText(refused) + ": filter does not match"), skippingService(refused),
                            decision(idText(admitted) + R"(: filters: [{"mode" : "day"}])"),
                            decision(idText(admitted) + ": filter does match"), loaded(undeclared), loaded(admitted)));
}

TEST_F(LoadServicesFiltered, GivenBundleLibraryWithThreeServices_WhenLoaded_ThenTheAdmittedOnesAreHeld)
{
    container.startBundle(host.add("three_services"));

    container.loadServices(dayRequired);

    const auto services = host.bundleIn("libthree_services.so").GetRegisteredServices();
    ASSERT_THAT(services, SizeIs(3));
    EXPECT_THAT(usersOf(services[0]), ElementsAre("system_bundle"));
    EXPECT_THAT(usersOf(services[1]), IsEmpty());
    EXPECT_THAT(usersOf(services[2]), ElementsAre("system_bundle"));
}

TEST_F(LoadServicesFiltered, GivenAdmittedService_WhenUnloadedByItsLoadName_ThenItIsReleased)
{
    const auto service = registerGreeter(started("alpha"), inMode("day"));
    container.loadServices(dayRequired);

    container.unloadService("(service.id=" + idText(service) + ")");

    EXPECT_THAT(usersOf(service), IsEmpty());
}

TEST_F(LoadServicesFiltered, GivenServiceWithoutDeclarationMap_WhenAnAttributeIsRequired_ThenItIsLoadedUnasked)
{
    const auto service = registerGreeter(started("alpha"));

    container.loadServices(dayRequired);

    EXPECT_THAT(log.records(), ElementsAre(loaded(service)));
}

TEST_F(LoadServicesFiltered, GivenTextInPlaceOfTheMap_WhenAnAttributeIsRequired_ThenItIsLoadedUnasked)
{
    const auto service = registerGreeter(started("alpha"), {{"zq", text("no map")}});

    container.loadServices(dayRequired);

    EXPECT_THAT(log.records(), ElementsAre(loaded(service)));
}

TEST_F(LoadServicesFiltered, GivenStandardMapInPlaceOfTheMap_WhenAnAttributeIsRequired_ThenItIsLoadedUnasked)
{
    const std::map<std::string, Any> map{{"ostrelStartupLoadFilters", listOf()}};
    const auto service = registerGreeter(started("alpha"), {{"zq", Any{map}}});

    container.loadServices(dayRequired);

    EXPECT_THAT(log.records(), ElementsAre(loaded(service)));
}

TEST_F(LoadServicesFiltered, GivenEmptyValueInPlaceOfTheMap_WhenAnAttributeIsRequired_ThenItIsLoadedUnasked)
{
    const auto service = registerGreeter(started("alpha"), {{"zq", Any{}}});

    container.loadServices(dayRequired);

    EXPECT_THAT(log.records(), ElementsAre(loaded(service)));
}

TEST_F(LoadServicesFiltered, GivenMapWithoutDeclaration_WhenAnAttributeIsRequired_ThenItIsSkipped)
{
    const auto service = registerGreeter(started("alpha"), {{"zq", alternative({{"other", text("x")}})}});

    container.loadServices(dayRequired);

    EXPECT_THAT(usersOf(service), IsEmpty());
    EXPECT_THAT(log.records(), ElementsAre(decision(idText(service) + ": empty filter is missing required attribute"),
                                           skippingService(service)));
}

TEST_F(LoadServicesFiltered, GivenMapWithoutDeclaration_WhenNothingIsRequired_ThenItIsLoaded)
{
    const auto service = registerGreeter(started("alpha"), {{"zq", alternative({})}});

    container.loadServices(day);

    EXPECT_THAT(log.records(), ElementsAre(decision(idText(service) + ": empty filter does match"), loaded(service)));
}

TEST_F(LoadServicesFiltered, GivenUnexpectedDeclaration_WhenNothingIsRequired_ThenItIsReportedAndLoaded)
{
    const auto service = registerGreeter(started("alpha"), declaring(text("x")));

    container.loadServices(day);

    EXPECT_THAT(log.records(), ElementsAre(LogRecord{0x100, idText(service) + R"(: unexpected type for filters: "x")"},
                                           decision(idText(service) + ": empty filter does match"), loaded(service)));
}

TEST_F(LoadServicesFiltered, GivenDeclarationThatCannotBeEvaluated_WhenLoaded_ThenItsErrorSpeaksOfABundle)
{
    const Any declaration = listOf(alternative({{"mode", Any{}}}));
    const auto service = registerGreeter(started("alpha"), declaring(declaration));

    container.loadServices(dayRequired);

    EXPECT_THAT(log.records(),
                ElementsAre(decision(idText(service) + ": filters: " + declaration.ToJSON()),
                            LogRecord{0x100, idText(service) + ": error checking ostrelFilters from bundle"},
                            loaded(service)));
}

TEST_F(LoadServicesFiltered, GivenServicesLoaded_WhenCalledAgain_ThenTheyAreDecidedAnewButNotLoadedAgain)
{
    const auto service = registerGreeter(started("alpha"), inMode("day"));
    container.loadServices(dayRequired);
    log.clear();

    container.loadServices(dayRequired);

    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(1));
    EXPECT_THAT(log.records(), ElementsAre(decision(idText(service) + R"(: filters: [{"mode" : "day"}])"),
                                           decision(idText(service) + ": filter does match")));
}

TEST_F(LoadServicesFiltered, GivenSeveralBundles_WhenLoaded_ThenTheyAreWalkedInTheOrderOfTheInventory)
{
    for (const char* name : {"alpha", "beta", "gamma", "delta"}) {
        const auto bundle = started(name);
        registerGreeter(bundle, {{"service.ranking", 1}});
        registerGreeter(bundle, {{"service.ranking", 2}});
    }
    std::vector<LogRecord> expected;
    for (const std::string& location : container.listManuallyLoadedBundles()) {
        for (const auto& bundle : host.context().GetBundles(location)) {
            for (const auto& reference : bundle.GetRegisteredServices()) {
                expected.push_back(loaded(reference));
            }
        }
    }
    ASSERT_THAT(expected, SizeIs(8));

    container.loadServices(nothingAsked);

    EXPECT_THAT(log.records(), ElementsAreArray(expected));
}

TEST_F(LoadServicesFiltered, GivenFactoryThatRegistersAnotherService_WhenLoaded_ThenTheNewcomerIsNotLoaded)
{
    const auto bundle = started("alpha");
    ServiceReferenceU newcomer;
    const auto get = [&] {
        newcomer = registerGreeter(bundle);
        return newMap<Greeter>();
    };
    const auto registering = registerFactory(bundle, get);

    container.loadServices(nothingAsked);

    EXPECT_THAT(usersOf(newcomer), IsEmpty());
    EXPECT_THAT(log.records(), ElementsAre(loaded(registering)));
}

TEST_F(LoadServicesFiltered, GivenFrameworkStopped_WhenLoaded_ThenNothingHappens)
{
    registerGreeter(started("alpha"), inMode("day"));
    host.stop();

    EXPECT_NO_THROW(container.loadServices(dayRequired));

    EXPECT_THAT(container.listManuallyLoadedServices(), IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LoadServicesFiltered, GivenSecondFactoryThrowsAnInt_WhenLoaded_ThenTheServicesBeforeStayAndTheRestIsNotVisited)
{
    const auto bundle = started("alpha");
    const auto first = registerGreeter(bundle);
    registerFactory(bundle, []() -> cppmicroservices::InterfaceMapConstPtr { throw 42; });
    const auto third = registerGreeter(bundle);

    EXPECT_THROW(container.loadServices(nothingAsked), int);

    EXPECT_THAT(usersOf(first), ElementsAre("system_bundle"));
    EXPECT_THAT(usersOf(third), IsEmpty());
    EXPECT_THAT(log.records(), ElementsAre(loaded(first)));
}

TEST_F(LoadServicesFiltered, GivenFactoryThrowsAnInt_WhenItThrew_ThenTheLockIsFree)
{
    registerFactory(started("alpha"), []() -> cppmicroservices::InterfaceMapConstPtr { throw 42; });

    EXPECT_THROW(container.loadServices(nothingAsked), int);

    EXPECT_TRUE(lockIsFree(container));
}

/// A value that cannot be copied while `isPlanned`.
struct CopyFault {
    static inline std::atomic<bool> isPlanned{false};

    CopyFault() = default;
    CopyFault(const CopyFault&)
    {
        if (isPlanned) {
            throw std::runtime_error{"planned fault: no copy"};
        }
    }
    CopyFault& operator=(const CopyFault&) = delete;
    ~CopyFault() = default;

    friend std::ostream& operator<<(std::ostream& stream, const CopyFault&) { return stream << "value"; }
};

/// The second of two services has a "zq" map that cannot be read.
class LoadServicesFilteredWithFault : public LoadServicesFiltered {
protected:
    LoadServicesFilteredWithFault()
    {
        const auto bundle = started("alpha");
        first = registerGreeter(bundle);
        registerGreeter(bundle, declaring(Any{CopyFault{}}));
        CopyFault::isPlanned = true;
    }
    ~LoadServicesFilteredWithFault() override { CopyFault::isPlanned = false; }

    ServiceReferenceU first;
};

TEST_F(LoadServicesFilteredWithFault, GivenMapThatCannotBeRead_WhenItThrew_ThenNothingWasLoaded)
{
    EXPECT_THROW(container.loadServices(nothingAsked), std::runtime_error);

    EXPECT_THAT(usersOf(first), IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LoadServicesFilteredWithFault, GivenMapThatCannotBeRead_WhenItThrew_ThenTheLockIsFree)
{
    EXPECT_THROW(container.loadServices(nothingAsked), std::runtime_error);

    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(LoadServicesFiltered, GivenFilterRecordBeingWritten_WhenAnotherThreadAsks_ThenTheLockIsHeld)
{
    LockProbe probe{container};
    const auto service = registerGreeter(started("alpha"), inMode("night"));
    log.onRecord([&](const LogRecord& record) {
        if (record == skippingService(service)) {
            probe.look();
        }
    });

    container.loadServices(dayRequired);

    EXPECT_THAT(probe.found(), ElementsAre(LockProbe::held));
}

TEST_F(LoadServicesFiltered, GivenDecisionsMasked_WhenLoaded_ThenOnlyTheLoadsAreRecorded)
{
    const auto bundle = started("alpha");
    const auto admitted = registerGreeter(bundle, inMode("day"));
    const auto refused = registerGreeter(bundle, inMode("night"));
    ostrel::us_container::diagnosticLog().setEnabledSeverities(~std::uint32_t{0x8});

    container.loadServices(dayRequired);

    EXPECT_THAT(usersOf(refused), IsEmpty());
    EXPECT_THAT(log.records(), ElementsAre(loaded(admitted)));
}

TEST_F(LoadServicesFiltered, GivenDirectoryStartedByFilter_WhenServicesAreLoaded_ThenThoseOfRefusedBundlesAreNot)
{
    addArchive(host, "a.zip", {componentWith("a", "first", R"([{"mode": "day"}])")});
    addArchive(host, "b.zip", {componentWith("b", "second", R"([{"mode": "night"}])")});
    container.startBundles(dayRequired);
    host.bundleIn("b.zip").Start();
    const auto ofStarted = registerGreeter(host.bundleIn("a.zip").GetBundleContext());
    const auto ofRefused = registerGreeter(host.bundleIn("b.zip").GetBundleContext());

    container.loadServices(dayRequired);

    EXPECT_THAT(usersOf(ofStarted), ElementsAre("system_bundle"));
    EXPECT_THAT(usersOf(ofRefused), IsEmpty());
}

} // namespace
} // namespace ostrel::test
