#include "integration/services/ServicesFixture.h"
#include "integration/support/Scheduling.h"

#include <stdexcept>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

using LoadServices = ServicesFixture;

TEST_F(LoadServices, GivenNames_WhenLoaded_ThenTheyAreLoadedFromFirstToLast)
{
    registerGreeter(host.context(), {{"colour", std::string{"red"}}});

    container.loadServices(Names{"(colour=red)", greeterName, "(colour=r*)"});

    EXPECT_THAT(log.records(), ElementsAre(loaded("(colour=red)"), loaded(greeterName), loaded("(colour=r*)")));
}

TEST_F(LoadServices, GivenNoNames_WhenLoaded_ThenNothingHappens)
{
    registerGreeter(host.context());

    container.loadServices(Names{});

    EXPECT_THAT(container.listManuallyLoadedServices(), IsEmpty());
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(LoadServices, GivenNameTwice_WhenLoaded_ThenTheSecondAddsNothing)
{
    registerGreeter(host.context());

    container.loadServices(Names{greeterName, greeterName});

    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(1));
    EXPECT_THAT(log.records(), ElementsAre(loaded(greeterName)));
}

TEST_F(LoadServices, GivenMalformedFilterInTheMiddle_WhenLoaded_ThenTheNamesBeforeStayAndTheRestIsNotVisited)
{
    const auto greeter = registerGreeter(host.context());
    const auto singer = registerFactory<Singer>(host.context(), newMap<Singer>);

    EXPECT_THROW(container.loadServices(Names{greeterName, "(", singerName}), std::invalid_argument);

    EXPECT_THAT(usersOf(greeter), ElementsAre("system_bundle"));
    EXPECT_THAT(usersOf(singer), IsEmpty());
    EXPECT_THAT(log.records(), ElementsAre(loaded(greeterName)));
}

TEST_F(LoadServices, GivenMalformedFilter_WhenItThrew_ThenTheLockIsFree)
{
    EXPECT_THROW(container.loadServices(Names{"("}), std::invalid_argument);

    EXPECT_TRUE(lockIsFree(container));
}

// Another thread asks from the first load on. It must not be let in before the last.
TEST_F(LoadServices, GivenManyNames_WhenLoadedInOneBatch_ThenNoOtherThreadComesBetween)
{
    constexpr std::size_t services = 20;
    Names names;
    for (std::size_t i = 0; i < services; ++i) {
        names.push_back(loadNameOf(registerGreeter(host.context())));
    }

    for (int round = 0; round < 20; ++round) {
        ostrel::us_container::MicroServicesContainer other{host.context(), host.bundleDirectory()};
        Latch begun;
        log.onRecord([&begun](const LogRecord&) { begun.open(); });
        std::size_t seen = 0;
        {
            const OtherThread onlooker{[&] {
                meetOnFirstProcessor(Urgency::urgent);
                begun.waitFor();
                seen = other.listManuallyLoadedServices().size();
            }};
            const OtherThread loader{[&] {
                meetOnFirstProcessor(Urgency::patient);
                other.loadServices(names);
            }};
        }
        log.onRecord({});
        ASSERT_EQ(seen, services);
    }
}

} // namespace
} // namespace ostrel::test
