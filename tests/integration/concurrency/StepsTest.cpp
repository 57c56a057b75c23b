// Operations that hold the lock step by step let other threads in between the steps.
#include "integration/services/ServicesFixture.h"
#include "integration/support/Scheduling.h"
#include "support/ContainerFixture.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <new>
#include <thread>

namespace ostrel::test {
namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;

using Container = us_container::MicroServicesContainer;
using Names = std::vector<std::string>;

/// Room for a container whose address is known before it is made, so that other threads can look while it is.
class ContainerRoom {
public:
    ContainerRoom() : m_room(std::allocator<Container>{}.allocate(1)) {}
    ContainerRoom(const ContainerRoom&) = delete;
    ContainerRoom& operator=(const ContainerRoom&) = delete;
    ~ContainerRoom() { std::allocator<Container>{}.deallocate(m_room, 1); }

    Container& container() const { return *m_room; }

private:
    Container* m_room;
};

class LongConstructorSteps : public ContainerFixture {
protected:
    void make(const ContainerRoom& room)
    {
        new (&room.container()) Container{host.context(), host.bundleDirectory(), bundles, services};
    }

    const Names bundles{host.add("alpha"), host.add("beta")};
    const Names services{"(test.word=alpha)", "(test.word=beta)"};
};

TEST_F(LongConstructorSteps, GivenBundlesAndServices_WhenEachIsStartedOrLoaded_ThenTheLockIsHeld)
{
    const ContainerRoom room;
    {
        LockProbe probe{room.container()};
        for (const char* event : {"start alpha", "start beta", "get alpha", "get beta"}) {
            script.on(event, [&probe](const auto&) { probe.look(); });
        }
        make(room);
        EXPECT_THAT(probe.found(), ElementsAre(LockProbe::held, LockProbe::held, LockProbe::held, LockProbe::held));
    }
    room.container().~MicroServicesContainer();
}

TEST_F(LongConstructorSteps, GivenAllBundlesStarted_WhenTheServicesAreStillToCome_ThenAnotherThreadMayComeBetween)
{
    bool cameBetween = false;
    for (int round = 0; round < 20 && !cameBetween; ++round) {
        const ContainerRoom room;
        Latch lastStarts;
        script.on("start beta", [&lastStarts](const auto&) { lastStarts.open(); });
        {
            const OtherThread onlooker{[&] {
                meetOnFirstProcessor(Urgency::urgent);
                lastStarts.waitFor();
                cameBetween = room.container().listManuallyLoadedServices().empty();
            }};
            const OtherThread maker{[&] {
                meetOnFirstProcessor(Urgency::patient);
                make(room);
            }};
        }
        EXPECT_THAT(room.container().listManuallyLoadedServices(), SizeIs(2));
        room.container().~MicroServicesContainer();
    }

    EXPECT_TRUE(cameBetween);
}

using UnloadAllSteps = ServicesFixture;

TEST_F(UnloadAllSteps, GivenNameLoadedByAnotherThreadMeanwhile_WhenAllAreUnloaded_ThenItStaysLoaded)
{
    const auto newcomer = registerFactory<Singer>(host.context(), newMap<Singer>);
    registerFactory(host.context(), newMap<Greeter>, [this] {
        const OtherThread loading{[this] { container.loadService(singerName); }};
        EXPECT_TRUE(loading.finishesWithin());
    });
    container.loadService(greeterName);

    container.unloadAllServices();

    EXPECT_THAT(usersOf(newcomer), ElementsAre("system_bundle"));
    EXPECT_THAT(container.listManuallyLoadedServices(), SizeIs(1));
}

using ReportSteps = ServicesFixture;

TEST_F(ReportSteps, GivenBundleStartedAndStoppedMeanwhile_WhenReportedOftenEnough_ThenTheHalvesDisagreeOnce)
{
    startedBundle("alpha");
    std::atomic<bool> disagreed{false};
    std::atomic<bool> over{false};
    {
        const OtherThread changing{[&] {
            meetOnFirstProcessor(Urgency::urgent);
            while (!over) {
                container.stopBundle("alpha.zip");
                std::this_thread::sleep_for(std::chrono::milliseconds{1});
                container.startBundle("alpha.zip");
                std::this_thread::sleep_for(std::chrono::milliseconds{1});
            }
        }};
        const OtherThread reporting{[&] {
            meetOnFirstProcessor(Urgency::patient);
            const auto end = std::chrono::steady_clock::now() + patience;
            while (!disagreed && std::chrono::steady_clock::now() < end) {
                const std::string report = container.getMicroServicesString();
                const bool first = report.find("    alpha, ") != std::string::npos;
                const bool second = report.find("    alpha:\n") != std::string::npos;
                disagreed = first != second;
            }
            over = true;
        }};
    }

    EXPECT_TRUE(disagreed);
}

} // namespace
} // namespace ostrel::test
