#include "integration/reports/ReportsFixture.h"

#include <cppmicroservices/ServiceRegistration.h>

#include <algorithm>

namespace ostrel::test {
namespace {

using cppmicroservices::Any;
using cppmicroservices::Bundle;
using cppmicroservices::InterfaceMap;
using cppmicroservices::InterfaceMapConstPtr;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

using PrintService = ReportsFixture;
using PrintBundleServices = ReportsFixture;
using PrintAllServices = ReportsFixture;

/// What a factory gives of a service with three interfaces, one of them without an object.
InterfaceMapConstPtr mapWithAGap()
{
    auto map = std::make_shared<InterfaceMap>();
    (*map)[greeterName] = std::make_shared<PlainGreeter>();
    (*map)[singerName] = nullptr;
    (*map)[dancerName] = std::make_shared<PlainGreeter>();
    return map;
}

TEST_F(PrintService, GivenServiceWithProperties_WhenPrinted_ThenItsBlockIsExact)
{
    const Properties properties{{"colour", std::string{"red"}},
                                {"number", Any{5}},
                                {"list", Any{std::vector<std::string>{"a", "b"}}},
                                {"nothing", std::string{}}};
    auto service = registerGreeter(host.context(), properties);

    container.printService(stream, service);

    EXPECT_EQ(stream.str(), serviceBlock(service, {greeterName}, {"system_bundle"}));
    for (const char* line : {"                colour = red\n", "                number = 5\n",
                             "                list = [a,b]\n", "                nothing = \n"}) {
        EXPECT_THAT(stream.str(), HasSubstr(line));
    }
}

TEST_F(PrintService, GivenServiceOfTwoInterfaces_WhenPrinted_ThenTheyStandInTheOrderOfTheMap)
{
    struct Both final : Greeter, Singer {};
    const auto registration = host.context().RegisterService<Greeter, Singer>(std::make_shared<Both>());
    ServiceReferenceU service{registration.GetReference()};
    std::vector<std::string> interfaces;
    for (const auto& [name, object] : *host.context().GetService(service)) {
        interfaces.push_back(name);
    }
    ASSERT_EQ(interfaces.size(), 2U);

    container.printService(stream, service);

    EXPECT_EQ(stream.str(), serviceBlock(service, interfaces, {"system_bundle"}));
}

TEST_F(PrintService, GivenMapWithANullObject_WhenPrinted_ThenThatInterfaceHasNoLine)
{
    const std::shared_ptr<cppmicroservices::ServiceFactory> factory =
        std::make_shared<FunctionFactory>(mapWithAGap, FunctionFactory::Unget{});
    const auto registration = host.context().RegisterService<Greeter, Singer, Dancer>(factory);
    ServiceReferenceU service{registration.GetReference()};
    const InterfaceMapConstPtr map = host.context().GetService(service);
    ASSERT_TRUE(map);
    std::vector<std::string> interfaces;
    for (const auto& [name, object] : *map) {
        if (name != singerName) {
            interfaces.push_back(name);
        }
    }
    ASSERT_EQ(interfaces.size(), 2U);

    container.printService(stream, service);

    EXPECT_EQ(stream.str(), serviceBlock(service, interfaces, {"system_bundle"}));
}

TEST_F(PrintService, GivenMapOfNullObjectsOnly_WhenPrinted_ThenTheClassesHeadStandsAlone)
{
    auto service = registerFactory(host.context(), [] {
        auto map = std::make_shared<InterfaceMap>();
        (*map)[greeterName] = nullptr;
        return InterfaceMapConstPtr{map};
    });

    container.printService(stream, service);

    EXPECT_THAT(stream.str(), HasSubstr("            Classes:\n            Properties:\n"));
}

TEST_F(PrintService, GivenFactoryThatReturnsNull_WhenPrinted_ThenTheClassesHeadStandsAlone)
{
    auto service = registerFactory(host.context(), [] { return nullptr; });

    container.printService(stream, service);

    EXPECT_EQ(stream.str(), serviceBlock(service, {}, usersOf(service)));
}

TEST_F(PrintService, GivenFactoryThatThrows_WhenPrinted_ThenTheClassesHeadStandsAlone)
{
    const auto get = []() -> InterfaceMapConstPtr { throw std::runtime_error{"planned fault: no service"}; };
    auto service = registerFactory(host.context(), get);

    container.printService(stream, service);

    EXPECT_EQ(stream.str(), serviceBlock(service, {}, usersOf(service)));
}

TEST_F(PrintService, GivenFactoryThatThrowsAnInt_WhenItThrew_ThenTheTwoHeadLinesStay)
{
    auto service = registerFactory(host.context(), []() -> InterfaceMapConstPtr { throw 42; });

    EXPECT_THROW(container.printService(stream, service), int);

    EXPECT_EQ(stream.str(), "        Service id: " + std::to_string(idOf(service)) + "\n            Classes:\n");
}

TEST_F(PrintService, GivenFactoryThatThrowsAnInt_WhenItThrew_ThenTheLockIsFree)
{
    auto service = registerFactory(host.context(), []() -> InterfaceMapConstPtr { throw 42; });

    EXPECT_THROW(container.printService(stream, service), int);

    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(PrintService, GivenUnregisteredService_WhenItThrew_ThenTheTwoHeadLinesStay)
{
    auto registration = host.context().RegisterService<Greeter>(std::make_shared<PlainGreeter>());
    ServiceReferenceU service{registration.GetReference()};
    const std::string id = std::to_string(idOf(service));
    registration.Unregister();

    EXPECT_THROW(container.printService(stream, service), std::invalid_argument);

    EXPECT_EQ(stream.str(), "        Service id: " + id + "\n            Classes:\n");
}

TEST_F(PrintService, GivenPropertyWithoutText_WhenItThrew_ThenTheLinesBeforeStay)
{
    auto service = registerGreeter(host.context(), {{"odd", Textless{}}});
    std::string before = "        Service id: " + std::to_string(idOf(service)) +
                         "\n            Classes:\n               " + greeterName + "\n            Properties:\n";
    for (const std::string& key : service.GetPropertyKeys()) {
        if (key == "odd") {
            break;
        }
        before += "                " + key + " = " + service.GetProperty(key).ToString() + "\n";
    }

    EXPECT_THROW(container.printService(stream, service), std::runtime_error);

    EXPECT_EQ(stream.str(), before + "                odd = ");
}

TEST_F(PrintService, GivenPropertyWithoutText_WhenItThrew_ThenTheServiceIsReleasedAndTheLockIsFree)
{
    auto service = registerGreeter(host.context(), {{"odd", Textless{}}});

    EXPECT_THROW(container.printService(stream, service), std::runtime_error);

    EXPECT_THAT(usersOf(service), IsEmpty());
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(PrintService, GivenEmptyProperty_WhenPrinted_ThenTheFrameworksErrorComesThrough)
{
    auto service = registerGreeter(host.context(), {{"odd", Any{}}});

    EXPECT_THROW(container.printService(stream, service), std::logic_error);
}

TEST_F(PrintService, GivenSeveralUsers_WhenPrinted_ThenTheyStandInTheFrameworksOrder)
{
    auto service = registerGreeter(host.context());
    const InterfaceMapConstPtr heldByAlpha = started("alpha").GetBundleContext().GetService(service);
    const InterfaceMapConstPtr heldByBeta = started("beta").GetBundleContext().GetService(service);
    const InterfaceMapConstPtr heldByHost = host.context().GetService(service);
    const std::vector<std::string> users = usersOf(service);
    ASSERT_EQ(users.size(), 3U);

    container.printService(stream, service);

    EXPECT_EQ(stream.str(), serviceBlock(service, {greeterName}, users));
}

TEST_F(PrintService, GivenContextOfABundle_WhenPrinted_ThenThatBundleIsTheUser)
{
    const auto alpha = started("alpha");
    ostrel::us_container::MicroServicesContainer ofAlpha{alpha.GetBundleContext(), host.bundleDirectory()};
    auto service = registerGreeter(host.context());

    ofAlpha.printService(stream, service);

    EXPECT_THAT(stream.str(), EndsWith("            Used by:\n                alpha\n"));
}

TEST_F(PrintService, GivenServiceObtainedForTheBlock_WhenTheUsersAreWritten_ThenItIsStillHeld)
{
    std::vector<std::string> events;
    auto service = registerFactory(
        host.context(),
        [&events] {
            events.emplace_back("get");
            return newMap<Greeter>();
        },
        [&events] { events.emplace_back("release"); });
    PieceStream out;
    out.buffer.onPiece = [&events](const std::string& piece) {
        if (piece.find("Classes:") != std::string::npos || piece == "system_bundle") {
            events.push_back(piece);
        }
    };

    container.printService(out.stream(), service);

    EXPECT_THAT(events, ElementsAre("            Classes:\n", "get", "system_bundle", "release"));
}

TEST_F(PrintService, GivenServiceReleasedAfterItsBlock_WhenAnotherThreadAsks_ThenTheLockIsHeld)
{
    LockProbe probe{container};
    auto service = registerFactory(host.context(), newMap<Greeter>, [&probe] { probe.look(); });

    container.printService(stream, service);

    EXPECT_THAT(probe.found(), ElementsAre(LockProbe::held));
}

TEST_F(PrintService, GivenServiceHeldByTheContainer_WhenPrinted_ThenItStaysHeld)
{
    auto service = registerGreeter(host.context());
    container.loadService(greeterName);

    container.printService(stream, service);

    EXPECT_THAT(usersOf(service), ElementsAre("system_bundle"));
}

TEST_F(PrintService, GivenStream_WhenPrinted_ThenTheIdAndItsLineEndAreOnePiece)
{
    auto service = registerGreeter(host.context());
    PieceStream out;

    container.printService(out.stream(), service);

    ASSERT_GE(out.buffer.pieces.size(), 4U);
    EXPECT_EQ(out.buffer.pieces[0], "        Service id: ");
    EXPECT_EQ(out.buffer.pieces[1], std::to_string(idOf(service)) + "\n");
    EXPECT_EQ(out.buffer.pieces[2], "            Classes:\n");
    EXPECT_EQ(out.buffer.flushes, 0);
}

TEST_F(PrintService, GivenWidthAndFill_WhenPrinted_ThenTheyTakeEffectAtTheFirstPieceAlone)
{
    auto service = registerGreeter(host.context());
    stream.width(24);
    stream.fill('*');

    container.printService(stream, service);

    EXPECT_EQ(stream.str(), "****" + serviceBlock(service, {greeterName}, {"system_bundle"}));
}

TEST_F(PrintService, GivenFlagsOfTheCaller_WhenPrinted_ThenTheyDoNotReachTheFrameworksTexts)
{
    auto service = registerGreeter(host.context(), {{"flag", Any{true}}, {"number", Any{255}}});
    stream.setf(std::ios::hex, std::ios::basefield);
    stream.setf(std::ios::showbase | std::ios::boolalpha | std::ios::uppercase);

    container.printService(stream, service);

    EXPECT_EQ(stream.str(), serviceBlock(service, {greeterName}, {"system_bundle"}));
}

TEST_F(PrintBundleServices, GivenBundleWithServices_WhenPrinted_ThenTheirBlocksStandInOrderOfRegistration)
{
    const Bundle bundle = started("alpha");
    const auto first = registerGreeter(bundle.GetBundleContext(), {{"service.ranking", 1}});
    const auto second = registerFactory<Singer>(bundle.GetBundleContext(), newMap<Singer>);
    const auto third = registerGreeter(bundle.GetBundleContext(), {{"service.ranking", 9}});

    container.printBundleServices(stream, bundle);

    EXPECT_EQ(stream.str(), serviceBlock(first, {greeterName}, {"system_bundle"}) +
                                serviceBlock(second, {singerName}, {"system_bundle"}) +
                                serviceBlock(third, {greeterName}, {"system_bundle"}));
}

TEST_F(PrintBundleServices, GivenBundleThatTheContainerDidNotStart_WhenPrinted_ThenItsServicesAreWrittenToo)
{
    const std::string file = addArchive(host, "beta.zip", {bundleWith("beta")});
    auto bundle = host.context().InstallBundles(host.locationOf(file)).at(0);
    bundle.Start();
    const auto service = registerGreeter(bundle.GetBundleContext());

    container.printBundleServices(stream, bundle);

    EXPECT_EQ(stream.str(), serviceBlock(service, {greeterName}, {"system_bundle"}));
}

TEST_F(PrintBundleServices, GivenBundleWithoutServices_WhenPrinted_ThenNothingIsWritten)
{
    container.printBundleServices(stream, started("alpha"));

    EXPECT_EQ(stream.str(), "");
}

TEST_F(PrintBundleServices, GivenServiceReported_WhenTheNextOneIs_ThenTheFirstIsReleasedAlready)
{
    std::vector<std::string> events;
    const auto noting = [&events](const std::string& event) { return [&events, event] { events.push_back(event); }; };
    const auto getting = [&events](const std::string& event) {
        return [&events, event] {
            events.push_back(event);
            return newMap<Greeter>();
        };
    };
    const Bundle bundle = started("alpha");
    registerFactory(bundle.GetBundleContext(), getting("get first"), noting("release first"));
    registerFactory(bundle.GetBundleContext(), getting("get second"), noting("release second"));

    container.printBundleServices(stream, bundle);

    EXPECT_THAT(events, ElementsAre("get first", "release first", "get second", "release second"));
}

TEST_F(PrintBundleServices, GivenInvalidBundle_WhenPrinted_ThenTheFrameworksErrorComesThroughAndTheLockIsFree)
{
    EXPECT_THROW(container.printBundleServices(stream, Bundle{}), std::invalid_argument);

    EXPECT_EQ(stream.str(), "");
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(PrintBundleServices, GivenSecondServiceFails_WhenItThrew_ThenTheFirstBlockStays)
{
    const Bundle bundle = started("alpha");
    const auto first = registerGreeter(bundle.GetBundleContext());
    const auto second = registerFactory(bundle.GetBundleContext(), []() -> InterfaceMapConstPtr { throw 42; });

    EXPECT_THROW(container.printBundleServices(stream, bundle), int);

    EXPECT_EQ(stream.str(), serviceBlock(first, {greeterName}, {"system_bundle"}) +
                                "        Service id: " + std::to_string(idOf(second)) + "\n            Classes:\n");
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(PrintAllServices, GivenNothing_WhenPrinted_ThenThereAreTwoHeads)
{
    container.printAllServices(stream);

    EXPECT_EQ(stream.str(), "Manually loaded service types:\nBundle services:\n");
}

TEST_F(PrintAllServices, GivenServicesHeld_WhenPrinted_ThenEachHoldHasALine)
{
    const auto service = registerGreeter(host.context());
    container.loadService(greeterName);
    container.loadService(loadNameOf(service));

    container.printAllServices(stream);

    EXPECT_EQ(stream.str(), "Manually loaded service types:\n"
                            "    [ostrel::test::Greeter]\n"
                            "    [ostrel::test::Greeter]\n"
                            "Bundle services:\n");
}

TEST_F(PrintAllServices, GivenServicesOfManyClassesHeld_WhenPrinted_ThenTheyStandInTheOrderOfTheInventory)
{
    registerGreeter(host.context());
    registerFactory<Singer>(host.context(), newMap<Singer>);
    registerFactory<Dancer>(host.context(), newMap<Dancer>);
    container.loadServices(std::vector<std::string>{greeterName, singerName, dancerName});
    std::string expected = "Manually loaded service types:\n";
    for (const std::string& classes : container.listManuallyLoadedServices()) {
        expected += "    " + classes + "\n";
    }

    container.printAllServices(stream);

    EXPECT_EQ(stream.str(), expected + "Bundle services:\n");
}

TEST_F(PrintAllServices, GivenBundlesStarted_WhenPrinted_ThenTheyStandInTheOrderOfTheInventory)
{
    for (const char* name : {"alpha", "beta", "gamma"}) {
        registerGreeter(started(name).GetBundleContext());
    }
    std::string expected = "Manually loaded service types:\nBundle services:\n";
    for (const std::string& location : container.listManuallyLoadedBundles()) {
        const Bundle bundle = host.context().GetBundles(location).at(0);
        expected += "    " + bundle.GetSymbolicName() + ":\n" +
                    serviceBlock(bundle.GetRegisteredServices().at(0), {greeterName}, {"system_bundle"});
    }

    container.printAllServices(stream);

    EXPECT_EQ(stream.str(), expected);
}

TEST_F(PrintAllServices, GivenFactoryThatThrowsAnInt_WhenItThrew_ThenWhatWasWrittenStays)
{
    const auto service =
        registerFactory(started("alpha").GetBundleContext(), []() -> InterfaceMapConstPtr { throw 42; });

    EXPECT_THROW(container.printAllServices(stream), int);

    EXPECT_EQ(stream.str(), "Manually loaded service types:\nBundle services:\n    alpha:\n        Service id: " +
                                std::to_string(idOf(service)) + "\n            Classes:\n");
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(PrintAllServices, GivenFrameworkStopped_WhenABundleIsRecorded_ThenTheHeadsAloneAreWritten)
{
    started("alpha");
    host.stop();

    EXPECT_THROW(container.printAllServices(stream), std::runtime_error);

    EXPECT_EQ(stream.str(), "Manually loaded service types:\nBundle services:\n");
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(PrintAllServices, GivenPiecesBeingWritten_WhenAnotherThreadAsks_ThenTheLockIsHeldFromFirstToLast)
{
    started("alpha");
    LockProbe probe{container};
    PieceStream out;
    out.buffer.onPiece = [&probe](const std::string& piece) {
        if (piece == "Manually loaded service types:\n" || piece == "Bundle services:\n" || piece == ":\n") {
            probe.look();
        }
    };

    container.printAllServices(out.stream());

    EXPECT_THAT(probe.found(), ElementsAre(LockProbe::held, LockProbe::held, LockProbe::held));
    EXPECT_EQ(out.buffer.flushes, 0);
}

TEST_F(PrintAllServices, GivenWidthAndFill_WhenPrinted_ThenTheyTakeEffectAtTheFirstPieceAlone)
{
    started("alpha");
    stream.width(34);
    stream.fill('*');

    container.printAllServices(stream);

    EXPECT_EQ(stream.str(), "***Manually loaded service types:\nBundle services:\n    alpha:\n");
}

} // namespace
} // namespace ostrel::test
