// What all console reports have in common: each holds the container's lock from its first look at the framework to its
// last line.
#include "integration/console/ConsoleFixture.h"
#include "integration/support/LockHolder.h"

namespace ostrel::test {
namespace {

using us_container::MicroServicesContainer;

struct Report {
    std::string name;
    std::function<void(MicroServicesContainer&, const cppmicroservices::Bundle&, ServiceReferenceU)> print;
};

class EachReport : public ConsoleFixture, public ::testing::WithParamInterface<Report> {
protected:
    EachReport() : alpha(started("alpha")), greeter(registerGreeter(alpha.GetBundleContext()))
    {
        registerGreeter(alpha.GetBundleContext());
        use(alpha, greeter);
    }

    void print() { GetParam().print(container, alpha, greeter); }

    Bundle alpha;
    ServiceReferenceU greeter;
};

TEST_P(EachReport, GivenIt_WhenPrinted_ThenNothingIsLogged)
{
    print();

    EXPECT_THAT(log.records(), ::testing::IsEmpty());
}

class EachReportOfUsers : public EachReport {};

TEST_P(EachReport, GivenIt_WhenItsFirstAndItsLastLineAreFlushed_ThenTheLockIsHeld)
{
    print();
    const std::size_t lines = console.flushed().size();
    ASSERT_GE(lines, 2U);
    LockProbe probe{container};
    std::size_t line = 0;
    console.onFlush([&](const std::string&) {
        ++line;
        if (line == 1 || line == lines) {
            probe.look();
        }
    });

    print();
    console.onFlush(nullptr);

    EXPECT_THAT(probe.found(), ::testing::ElementsAre(LockProbe::held, LockProbe::held));
    EXPECT_TRUE(lockIsFree(container));
}

TEST_P(EachReport, GivenLockHeldElsewhere_WhenItIsWanted_ThenItWaitsAndWritesNothing)
{
    LockHolder holder{container, host.context()};
    const OtherThread printing{[this] { print(); }};

    EXPECT_FALSE(printing.finishesWithin(glance));
    EXPECT_EQ(console.text(), "");
    holder.letGo();

    ASSERT_TRUE(printing.finishesWithin());
    EXPECT_NE(console.text(), "");
}

/// What came while a report waited for the lock is in it.
TEST_P(EachReportOfUsers, GivenReportThatWaits_WhenAUserComesMeanwhile_ThenItIsSeen)
{
    const Bundle beta = started("beta");
    LockHolder holder{container, host.context()};
    const OtherThread printing{[this] { print(); }};
    EXPECT_FALSE(printing.finishesWithin(glance));
    use(beta, greeter);
    const std::string users = " (used by: " + joined(usersOf(greeter)) + ")\n";
    holder.letGo();
    ASSERT_TRUE(printing.finishesWithin());

    EXPECT_THAT(console.text(), ::testing::HasSubstr(users));
}

std::string nameOf(const ::testing::TestParamInfo<Report>& info)
{
    return info.param.name;
}

const Report table{"AllBundles", [](auto& container, const auto&, auto) { container.printAllBundles(); }};

const std::vector<Report> reportsOfUsers{
    {"BundleProperties",
     [](auto& container, const auto& bundle, auto) { container.printBundleProperties(bundle.GetLocation()); }},
    {"Service", [](auto& container, const auto&, auto service) { container.printService(service); }},
    {"ServicesOfBundle", [](auto& container, const auto& bundle, auto) { container.printBundleServices(bundle, 1); }},
    {"ServicesOfLocation",
     [](auto& container, const auto& bundle, auto) { container.printBundleServices(bundle.GetLocation(), 1); }},
    {"AllServices", [](auto& container, const auto&, auto) { container.printAllServices(); }},
    {"ServiceProperties", [](auto& container, const auto&, auto) { container.printServiceProperties(greeterName); }}};

INSTANTIATE_TEST_SUITE_P(Table, EachReport, ::testing::Values(table), nameOf);
INSTANTIATE_TEST_SUITE_P(Users, EachReport, ::testing::ValuesIn(reportsOfUsers), nameOf);
INSTANTIATE_TEST_SUITE_P(Users, EachReportOfUsers, ::testing::ValuesIn(reportsOfUsers), nameOf);

} // namespace
} // namespace ostrel::test
