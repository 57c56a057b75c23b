#include "integration/services/ServicesFixture.h"

#include <atomic>
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

// An onlooker that never rests either never sees the middle of a batch or, if each name took the lock for itself, sees
// it in one round or another.
TEST_F(LoadServices, GivenManyNames_WhenLoadedInOneBatch_ThenNoOtherThreadSeesItsMiddle)
{
    constexpr std::size_t services = 50;
    Names names;
    for (std::size_t i = 0; i < services; ++i) {
        names.push_back(loadNameOf(registerGreeter(host.context())));
    }

    std::atomic<bool> sawTheMiddle{false};
    for (int round = 0; round < 20; ++round) {
        ostrel::us_container::MicroServicesContainer other{host.context(), host.bundleDirectory()};
        const OtherThread onlooker{[&other, &sawTheMiddle] {
            std::size_t held = 0;
            while (held != services) {
                held = other.listManuallyLoadedServices().size();
                if (held != 0 && held != services) {
                    sawTheMiddle = true;
                }
            }
        }};
        other.loadServices(names);
    }

    EXPECT_FALSE(sawTheMiddle);
}

} // namespace
} // namespace ostrel::test
