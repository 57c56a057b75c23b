// Memory that fails once, at each allocation of each operation of the container in turn.

#include "support/FailingMemory.h"

#include "container/MicroServicesContainer.h"
#include "support/Host.h"
#include "support/RecordCapture.h"
#include "support/Threads.h"

#include <cppmicroservices/Bundle.h>
#include <cppmicroservices/BundleContext.h>
#include <cppmicroservices/ServiceReference.h>

#include <gtest/gtest.h>

#include <exception>
#include <functional>
#include <initializer_list>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace ostrel::test {
namespace {

using us_container::FilterMap;
using us_container::MicroServicesContainer;

using Lines = std::multiset<std::string>;

const std::string lamps = "libthree_services.so";
const std::string alpha = "libalpha.so";
const std::vector<std::string> both{alpha, lamps};
const std::string lampClass = "three_services::Lamp";

/// A container with two bundles in its directory, of which one registers three lamps when it starts.
struct World {
    World()
    {
        host.add("alpha");
        host.add("three_services");
    }

    /// What a host can see of the container and its bundles, a line for each thing.
    Lines state() const
    {
        Lines lines;
        for (const std::string& location : container.listManuallyLoadedBundles()) {
            // Folders differ from world to world.
            lines.insert("recorded " + location.substr(location.rfind('/') + 1));
        }
        for (const std::string& classes : container.listManuallyLoadedServices()) {
            lines.insert("held " + classes);
        }
        for (const cppmicroservices::Bundle& bundle : host.context().GetBundles()) {
            std::ostringstream line;
            line << bundle.GetSymbolicName() << ' ' << bundle.GetState();
            lines.insert(line.str());
        }
        for (const auto& reference : host.context().GetServiceReferences(lampClass)) {
            lines.insert("users " + std::to_string(reference.GetUsingBundles().size()));
        }
        return lines;
    }

    Host host;
    MicroServicesContainer container{host.context(), host.bundleDirectory()};
};

class FailingContainerMemory : public ::testing::Test {
protected:
    using Step = std::function<void(MicroServicesContainer&)>;

    /// Lets each allocation of the operation fail once, each time in another world, and runs it once more.
    ///
    /// In between there is nothing that is not there before, after success or in `alsoPossible`; in the end all is as
    /// after two runs without failure, or as in `orElse`.
    static void expectSound(const Step& prepare, const Step& operate, const Lines& alsoPossible = {},
                            const Lines& orElse = {})
    {
        Lines possible = alsoPossible;
        Lines twice;
        {
            World world;
            prepare(world.container);
            const Lines before = world.state();
            possible.insert(before.begin(), before.end());
            operate(world.container);
            const Lines after = world.state();
            possible.insert(after.begin(), after.end());
            operate(world.container);
            twice = world.state();
        }
        for (std::size_t number = 1;; ++number) {
            SCOPED_TRACE("allocation " + std::to_string(number));
            World world;
            prepare(world.container);
            bool hasThrown = false;
            {
                const FailingMemory failing{number};
                try {
                    operate(world.container);
                } catch (const std::exception&) {
                    hasThrown = true;
                }
            }
            const bool hasFailed = FailingMemory::hasFailed();
            ASSERT_TRUE(hasFailed || !hasThrown);
            ASSERT_TRUE(lockIsFree(world.container));
            for (const std::string& line : world.state()) {
                ASSERT_EQ(possible.count(line) != 0, true) << line;
            }
            ASSERT_NO_THROW(operate(world.container));
            const Lines state = world.state();
            ASSERT_TRUE(state == twice || (!orElse.empty() && state == orElse)) << testing::PrintToString(state);
            if (!hasFailed) {
                ASSERT_GT(number, 1U) << "the operation needs no memory";
                return;
            }
        }
    }

    static void nothing(MicroServicesContainer& /*container*/) {}
    static void started(MicroServicesContainer& container) { container.startBundles(both); }
    static void loaded(MicroServicesContainer& container)
    {
        container.startBundles(both);
        container.loadAllServices();
        container.loadService(lampClass);
    }

    RecordCapture log; // so that records are made

    static inline const std::string unknownPlace = "recorded "; // a name whose bundle is not started
    static inline const std::string heldLamp = "held [three_services::Lamp]";
};

// A bundle that was installed and one whose start failed; both are as they are after any failure there.
const Lines onTheWay{"alpha INSTALLED",          "alpha RESOLVED",          "alpha ACTIVE",
                     "three_services INSTALLED", "three_services RESOLVED", "three_services ACTIVE"};

Lines onTheWayAnd(std::initializer_list<std::string> more)
{
    Lines lines = onTheWay;
    lines.insert(more.begin(), more.end());
    return lines;
}

TEST_F(FailingContainerMemory, WhenABundleIsStarted_ThenAnotherAttemptSucceeds)
{
    expectSound(
        nothing, [](auto& container) { container.startBundle(lamps); }, onTheWayAnd({unknownPlace, "users 0"}));
}

TEST_F(FailingContainerMemory, WhenBundlesAreStartedByNames_ThenAnotherAttemptSucceeds)
{
    expectSound(nothing, started, onTheWayAnd({unknownPlace, "users 0"}));
}

TEST_F(FailingContainerMemory, WhenBundlesAreStartedByConditions_ThenAnotherAttemptSucceeds)
{
    expectSound(
        nothing,
        [](auto& container) {
            container.startBundles(FilterMap{{"mode", {"day", false}}});
        },
        onTheWayAnd({"users 0"}));
}

TEST_F(FailingContainerMemory, WhenAllBundlesAreStarted_ThenAnotherAttemptSucceeds)
{
    expectSound(
        nothing, [](auto& container) { container.startAllBundles(); }, onTheWayAnd({"users 0"}));
}

TEST_F(FailingContainerMemory, WhenABundleIsStopped_ThenAnotherAttemptSucceeds)
{
    expectSound(
        started,
        [](auto& container) {
            const auto locations = container.listManuallyLoadedBundles();
            if (locations.size() == 2) { // a name that is stopped twice is recorded again
                container.stopBundle(lamps);
            }
        },
        onTheWay);
}

TEST_F(FailingContainerMemory, WhenAllBundlesAreStopped_ThenAnotherAttemptSucceeds)
{
    expectSound(
        started, [](auto& container) { container.stopAllBundles(); }, onTheWayAnd({unknownPlace}));
}

TEST_F(FailingContainerMemory, WhenAServiceIsLoaded_ThenAnotherAttemptSucceeds)
{
    expectSound(started, [](auto& container) { container.loadService(lampClass); });
    expectSound(started, [](auto& container) { container.loadService("(objectclass=*Lamp)"); });
}

TEST_F(FailingContainerMemory, WhenAServiceIsLoadedAndUnloadedByName_ThenNoneIsHeld)
{
    expectSound(started,
                [](auto& container) {
                    container.loadService(lampClass);
                    container.unloadAllServices();
                },
                {heldLamp, "users 1"});
}

TEST_F(FailingContainerMemory, WhenAllServicesAreLoaded_ThenAnotherAttemptSucceeds)
{
    expectSound(started, [](auto& container) { container.loadAllServices(); });
}

TEST_F(FailingContainerMemory, WhenServicesAreLoadedByConditions_ThenOneThatCannotBeExaminedIsAdmitted)
{
    const Step load = [](auto& container) { container.loadServices(FilterMap{{"mode", {"day", true}}}); };
    World world;
    started(world.container);
    world.container.loadServices(FilterMap{});
    expectSound(started, load, {heldLamp, "users 1"}, world.state());
}

TEST_F(FailingContainerMemory, WhenServicesAreUnloaded_ThenAnotherAttemptSucceeds)
{
    expectSound(loaded, [](auto& container) { container.unloadService(lampClass); }, {"users 1"});
    expectSound(loaded, [](auto& container) { container.unloadAllServices(); }, {"users 1"});
    expectSound(
        loaded, [](auto& container) { container.unload(); }, onTheWayAnd({"users 0", "users 1"}));
}

TEST_F(FailingContainerMemory, WhenABundleIsRestarted_ThenAnotherAttemptSucceeds)
{
    expectSound(
        loaded,
        [](auto& container) {
            for (const std::string& location : container.listManuallyLoadedBundles()) {
                container.restartBundle(location);
            }
        },
        onTheWayAnd({unknownPlace, "users 0", "users 1"}));
}

TEST_F(FailingContainerMemory, WhenReloaded_ThenAnotherAttemptStartsWhatIsStillRecorded)
{
    expectSound([](auto& container) { container.startBundles(both); },
                [](auto& container) {
                    container.reload();
                    container.startBundles(both); // what a failed reload() has lost
                },
                onTheWayAnd({unknownPlace, "users 0"}));
}

TEST_F(FailingContainerMemory, WhenReported_ThenNothingChanges)
{
    expectSound(loaded, [](auto& container) { (void)container.getMicroServicesString(); });
}

} // namespace
} // namespace ostrel::test
