// The bundles at a location, and single services.
#include "integration/console/ConsoleFixture.h"

#include <cppmicroservices/Any.h>

#include <iomanip>

namespace ostrel::test {
namespace {

using cppmicroservices::Any;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using BundleProperties = ConsoleFixture;
using ConsoleService = ConsoleFixture;
using ServiceProperties = ConsoleFixture;

TEST_F(BundleProperties, GivenBundleThatUsesNothing_WhenPrinted_ThenItsLinesAreExact)
{
    const Bundle alpha = started("alpha");

    container.printBundleProperties(alpha.GetLocation());

    EXPECT_THAT(console.flushed(), ElementsAre("  1 | alpha | ACTIVE\n", "No services in use.\n", "Properties:\n",
                                               "  bundle.symbolic_name: alpha\n"));
    EXPECT_EQ(console.rest(), "");
}

TEST_F(BundleProperties, GivenBundleThatUsesServices_WhenPrinted_ThenEachIsPrintedInTheOrderOfTheFramework)
{
    const Bundle alpha = started("alpha");
    const auto first = registerGreeter(host.context());
    const auto second = registerFactory<Singer>(host.context(), newMap<Singer>);
    use(alpha, second);
    use(alpha, first);
    const std::vector<ServiceReferenceU> used = alpha.GetServicesInUse();
    ASSERT_THAT(used, SizeIs(2));

    container.printBundleProperties(alpha.GetLocation());

    EXPECT_THAT(console.flushed(),
                ElementsAreArray(inOrder({"  1 | alpha | ACTIVE\n", "Services in use:\n"},
                                         serviceLines(used.at(0), " (used by: alpha)"),
                                         serviceLines(used.at(1), " (used by: alpha)"),
                                         Lines{"Properties:\n", "  bundle.symbolic_name: alpha\n"})));
}

TEST_F(BundleProperties, GivenManyHeaders_WhenPrinted_ThenTheyStandInTheOrderOfTheFramework)
{
    const std::string file = addArchive(
        host, "alpha.zip", {{"alpha", R"({"bundle.symbolic_name": "alpha", "number": 5, "list": ["a", 1], "yes": true,
                                          "empty": "", "zq": {"component": {"name": "the alpha"}}})"}});
    const Bundle alpha = host.context().InstallBundles(host.locationOf(file)).at(0);

    container.printBundleProperties(alpha.GetLocation());

    EXPECT_THAT(console.flushed(),
                ElementsAreArray(inOrder({"  1 | alpha | INSTALLED\n", "No services in use.\n", "Properties:\n"},
                                         headerLines(alpha))));
    for (const char* line : {"  number: 5\n", "  list: [a,1]\n", "  yes: 1\n", "  empty: \n",
                             "  zq: {component : {name : the alpha}}\n"}) {
        EXPECT_THAT(console.flushed(), Contains(line));
    }
}

TEST_F(BundleProperties, GivenTwoBundlesAtTheLocation_WhenPrinted_ThenBothStandInOrder)
{
    const std::string file = addArchive(host, "both.zip", {bundleWith("alpha"), bundleWith("beta")});
    host.context().InstallBundles(host.locationOf(file));

    container.printBundleProperties(host.locationOf(file));

    EXPECT_EQ(console.text(), "  1 | alpha | INSTALLED\nNo services in use.\nProperties:\n"
                              "  bundle.symbolic_name: alpha\n"
                              "  2 | beta | INSTALLED\nNo services in use.\nProperties:\n"
                              "  bundle.symbolic_name: beta\n");
}

TEST_F(BundleProperties, GivenUnknownLocation_WhenPrinted_ThenNothingIsWritten)
{
    started("alpha");

    container.printBundleProperties("");
    container.printBundleProperties("alpha");

    EXPECT_EQ(console.text(), "");
    EXPECT_THAT(console.flushed(), IsEmpty());
}

TEST_F(BundleProperties, GivenAlignmentAndFill_WhenPrinted_ThenTheIdFollowsThemAndTheyStay)
{
    const Bundle alpha = started("alpha");
    std::cout << std::left << std::setfill('*');

    container.printBundleProperties(alpha.GetLocation());

    EXPECT_EQ(console.flushed().at(0), "1** | alpha | ACTIVE\n");
    EXPECT_EQ(std::cout.flags() & std::ios::adjustfield, std::ios::left);
    EXPECT_EQ(std::cout.fill(), '*');
    EXPECT_EQ(std::cout.width(), 0);
}

TEST_F(BundleProperties, GivenHeaderWithoutAText_WhenPrinted_ThenTheLinesBeforeItStayAndTheLockIsFree)
{
    const std::string file = addArchive(host, "alpha.zip", {bundleWith("alpha")});
    cppmicroservices::AnyMap manifest{cppmicroservices::AnyMap::ORDERED_MAP};
    manifest["bundle.symbolic_name"] = std::string{"alpha"};
    manifest["bundle.wordless"] = Wordless{};
    cppmicroservices::AnyMap manifests{cppmicroservices::AnyMap::UNORDERED_MAP_CASEINSENSITIVE_KEYS};
    manifests["alpha"] = manifest;
    host.context().InstallBundles(host.locationOf(file), manifests);

    EXPECT_THROW(container.printBundleProperties(host.locationOf(file)), std::runtime_error);

    const Lines lines = console.flushed();
    ASSERT_GE(lines.size(), 3U);
    EXPECT_EQ(lines.at(0), "  1 | alpha | INSTALLED\n");
    EXPECT_EQ(lines.at(1), "No services in use.\n");
    EXPECT_EQ(lines.at(2), "Properties:\n");
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(ConsoleService, GivenServiceWithoutUsers_WhenPrinted_ThenItIsCalledUnused)
{
    auto service = registerGreeter(host.context(), {{"colour", std::string{"red"}},
                                                    {"number", Any{5}},
                                                    {"list", Any{std::vector<std::string>{"a", "b"}}},
                                                    {"nothing", std::string{}}});

    container.printService(service);

    EXPECT_THAT(console.flushed(), ElementsAreArray(serviceLines(service, " (unused)")));
    EXPECT_EQ(console.rest(), "");
    for (const char* line : {"  colour: red\n", "  number: 5\n", "  list: [a,b]\n", "  nothing: \n",
                             "  objectclass: [ostrel::test::Greeter]\n"}) {
        EXPECT_THAT(console.flushed(), Contains(line));
    }
}

TEST_F(ConsoleService, GivenOneUser_WhenPrinted_ThenItIsNamed)
{
    auto service = registerGreeter(host.context());
    use(started("alpha"), service);

    container.printService(service);

    EXPECT_THAT(console.flushed(), ElementsAreArray(serviceLines(service, " (used by: alpha)")));
}

TEST_F(ConsoleService, GivenThreeUsers_WhenPrinted_ThenTheyStandInTheOrderOfTheFramework)
{
    auto service = registerGreeter(host.context());
    for (const char* name : {"alpha", "beta", "gamma"}) {
        use(started(name), service);
    }

    container.printService(service);

    ASSERT_THAT(usersOf(service), SizeIs(3));
    EXPECT_THAT(console.flushed(),
                ElementsAreArray(serviceLines(service, " (used by: " + joined(usersOf(service)) + ")")));
}

TEST_F(ConsoleService, GivenFactory_WhenPrinted_ThenItIsNotAskedAndTheUsersAreAsBefore)
{
    int asked = 0;
    auto service = registerFactory(host.context(), [&asked] {
        ++asked;
        return newMap<Greeter>();
    });

    container.printService(service);

    EXPECT_EQ(asked, 0);
    EXPECT_THAT(usersOf(service), IsEmpty());
    EXPECT_EQ(console.flushed().at(0), "Service: " + std::to_string(idOf(service)) + " (unused)\n");
}

TEST_F(ConsoleService, GivenServiceUnregistered_WhenPrinted_ThenItsLastPropertiesAreWritten)
{
    auto registration = host.context().RegisterService<Greeter>(std::make_shared<PlainGreeter>());
    ServiceReferenceU service{registration.GetReference()};
    registration.Unregister();

    container.printService(service);

    EXPECT_THAT(console.flushed(), ElementsAreArray(serviceLines(service, " (unused)")));
}

TEST_F(ConsoleService, GivenPropertyWithoutAText_WhenPrinted_ThenTheLinesBeforeItStayAndTheLockIsFree)
{
    auto service = registerGreeter(host.context(), {{"wordless", Any{Wordless{}}}});
    Lines expected{"Service: " + std::to_string(idOf(service)) + " (unused)\n"};
    for (const std::string& key : service.GetPropertyKeys()) {
        if (key == "wordless") {
            break;
        }
        expected.push_back("  " + key + ": " + service.GetProperty(key).ToString() + "\n");
    }

    EXPECT_THROW(container.printService(service), std::runtime_error);

    EXPECT_THAT(console.flushed(), ElementsAreArray(expected));
    EXPECT_EQ(console.rest(), "  wordless: ");
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(ConsoleService, GivenDefaultReference_WhenPrinted_ThenItsExceptionComesBeforeAnyLine)
{
    ServiceReferenceU none;

    EXPECT_THROW(container.printService(none), std::exception);

    EXPECT_EQ(console.text(), "");
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(ServiceProperties, GivenServicesOfAnInterface_WhenPrinted_ThenEachStandsInTheOrderOfTheFramework)
{
    const auto first = registerGreeter(host.context());
    const auto second = registerGreeter(host.context(), {{"service.ranking", Any{7}}});
    registerFactory<Singer>(host.context(), newMap<Singer>);
    use(started("alpha"), first);

    container.printServiceProperties(greeterName);

    EXPECT_THAT(console.flushed(),
                ElementsAreArray(inOrder(serviceLines(second, " (unused)"), serviceLines(first, " (used by: alpha)"))));
}

TEST_F(ServiceProperties, GivenEmptyName_WhenPrinted_ThenEveryServiceStandsThere)
{
    const auto greeter = registerGreeter(host.context());
    const auto singer = registerFactory<Singer>(host.context(), newMap<Singer>);

    container.printServiceProperties("");

    EXPECT_THAT(console.flushed(),
                ElementsAreArray(inOrder(serviceLines(greeter, " (unused)"), serviceLines(singer, " (unused)"))));
}

TEST_F(ServiceProperties, GivenInterfaceThatNobodyHas_WhenPrinted_ThenNothingIsWritten)
{
    registerGreeter(host.context());

    container.printServiceProperties(singerName);
    container.printServiceProperties("(objectclass=*)");

    EXPECT_EQ(console.text(), "");
    EXPECT_THAT(console.flushed(), IsEmpty());
}

} // namespace
} // namespace ostrel::test
