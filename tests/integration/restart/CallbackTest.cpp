// Held services that call back into the container while the restart lets go of them.
#include "integration/restart/RestartFixture.h"

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::Gt;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using us_container::MicroServicesContainer;

struct Callback {
    std::string name;
    std::function<void(MicroServicesContainer&, const std::string& location)> run;
};

/// A bundle p with services that run a callback when they are destroyed, which is when the container lets go of them.
class RestartCallback : public RestartFixture {
protected:
    static constexpr int services = 5;

    RestartCallback()
    {
        atStart("alpha", [destruction = m_destruction](BundleContext context) {
            for (int i = 0; i < services; ++i) {
                const auto get = [destruction] {
                    return cppmicroservices::InterfaceMapConstPtr{cppmicroservices::MakeInterfaceMap<Greeter>(
                        std::make_shared<DyingGreeter>([destruction] { destruction->happened(); }))};
                };
                registerFactory(context, get, {}, {{"number", std::to_string(i)}});
            }
        });
        started("alpha");
        provide<Singer>(host.context(), "singer");
        registerGreeter(host.context());
        for (int i = 0; i < services; ++i) {
            container.loadService("(number=" + std::to_string(i) + ")");
        }
        container.loadServices(Names{greeterName, singerName});
        clear();
    }

    void restartWith(const std::function<void()>& callback)
    {
        m_destruction->callback = callback;
        container.restartBundle(locationOf("alpha"));
        m_destruction->callback = nullptr;
    }

    int calls() const { return m_destruction->calls; }

private:
    /// Shared with the services, some of which live longer than the test.
    struct Destruction {
        void happened()
        {
            if (callback && !running) {
                running = true;
                ++calls;
                callback();
                running = false;
            }
        }

        std::function<void()> callback;
        bool running = false;
        int calls = 0;
    };

    std::shared_ptr<Destruction> m_destruction = std::make_shared<Destruction>();
};

class EachCallback : public RestartCallback, public ::testing::WithParamInterface<Callback> {};

TEST_P(EachCallback, GivenIt_WhenServicesAreDestroyedByTheRestart_ThenTheRestartIsCompleted)
{
    restartWith([this] { GetParam().run(container, locationOf("alpha")); });

    EXPECT_THAT(calls(), Gt(0));
    EXPECT_EQ(bundle("alpha").GetState(), active);
    EXPECT_TRUE(lockIsFree(container));
    container.unloadAllServices();
    for (const ServiceReferenceU& service : bundle("alpha").GetRegisteredServices()) {
        EXPECT_THAT(usersOf(service), IsEmpty());
    }
}

INSTANTIATE_TEST_SUITE_P(
    Restart, EachCallback,
    ::testing::Values(
        Callback{"Lists",
                 [](auto& container, const auto&) {
                     container.listManuallyLoadedServices();
                     container.listManuallyLoadedBundles();
                 }},
        Callback{"LoadsItsName", [](auto& container, const auto&) { container.loadService(greeterName); }},
        Callback{"LoadsManyNewNames",
                 [](auto& container, const auto&) {
                     for (int i = 0; i < 100; ++i) {
                         container.loadService("(|(number=*)(never=" + std::to_string(i) + "))");
                     }
                 }},
        Callback{"LoadsAll", [](auto& container, const auto&) { container.loadAllServices(); }},
        Callback{"UnloadsItsName", [](auto& container, const auto&) { container.unloadService(greeterName); }},
        Callback{"UnloadsAnother", [](auto& container, const auto&) { container.unloadService(singerName); }},
        Callback{"UnloadsAll", [](auto& container, const auto&) { container.unloadAllServices(); }},
        Callback{"UnloadsEverything", [](auto& container, const auto&) { container.unload(); }},
        Callback{"Reports", [](auto& container, const auto&) { container.getMicroServicesString(); }},
        Callback{"RestartsAgain",
                 [](auto& container, const std::string& location) { container.restartBundle(location); }}),
    [](const auto& info) { return info.param.name; });

TEST_F(RestartCallback, GivenNameUnloadedByADestructor_WhenRestarted_ThenItIsNotLoadedAgain)
{
    restartWith([this] { container.unloadService(singerName); });

    EXPECT_EQ(trail.front(), "release singer");
    EXPECT_THAT(trail, ::testing::Not(::testing::Contains("get singer")));
}

TEST_F(RestartCallback, GivenDestructorThatLists_WhenRestarted_ThenTheEntryOfItsServiceIsGoneAlready)
{
    const std::size_t before = container.listManuallyLoadedServices().size();
    std::vector<std::size_t> sizes;

    restartWith([&] { sizes.push_back(container.listManuallyLoadedServices().size()); });

    ASSERT_THAT(sizes, SizeIs(services));
    for (const std::size_t size : sizes) {
        EXPECT_LT(size, before);
    }
    // Two names each for the services of p, and those of the context's bundle joined.
    EXPECT_EQ(container.listManuallyLoadedServices().size(), before);
}

} // namespace
} // namespace ostrel::test
