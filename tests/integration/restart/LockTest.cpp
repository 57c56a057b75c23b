// Under the lock or outside it, and what other threads can do meanwhile.
#include "integration/restart/RestartFixture.h"
#include "integration/support/LockHolder.h"

namespace ostrel::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/// A property that runs a function when the last copy of it goes, with the last reference to its service.
class LastReference {
public:
    explicit LastReference(std::function<void()> atEnd)
        : m_atEnd(new std::function<void()>{std::move(atEnd)}, [](const std::function<void()>* function) {
              (*function)();
              delete function;
          })
    {
    }

    friend std::ostream& operator<<(std::ostream& stream, const LastReference&) { return stream << "last"; }

private:
    std::shared_ptr<const std::function<void()>> m_atEnd;
};

class RestartLock : public RestartFixture {
protected:
    /// Starts p, which registers services "first", "second", ... of which the container holds the first alone; when
    /// that one is released, the others are unregistered, so that nobody but the restart refers to them any more. The
    /// function is called when their last references go.
    void startWithReferencesThatGo(const Names& names, const std::function<void(const std::string&)>& onLast)
    {
        const auto alpha = started("alpha");
        provide<Singer>(alpha, "first");
        container.loadService(singerName);
        for (const std::string& name : names) {
            m_registrations.push_back(BundleContext{alpha}.RegisterService<Greeter>(
                std::make_shared<PlainGreeter>(), {{"last", LastReference{[onLast, name] { onLast(name); }}}}));
        }
    }

    void unregisterAll()
    {
        for (auto& registration : m_registrations) {
            registration.Unregister();
        }
        m_registrations.clear();
    }

private:
    std::vector<cppmicroservices::ServiceRegistration<Greeter>> m_registrations;
};

TEST_F(RestartLock, GivenServiceReleasedStoppedStartedAndLoaded_WhenRestarted_ThenTheLockIsHeldEachTime)
{
    startedProviding("alpha");
    container.loadService(greeterName);
    clear();
    LockProbe probe{container};

    restartWatched(locationOf("alpha"), [&probe](const std::string&) { probe.look(); });

    EXPECT_THAT(trail, ElementsAre("release alpha", "stop alpha", "start alpha", "get alpha"));
    EXPECT_THAT(probe.found(), ElementsAre(LockProbe::held, LockProbe::held, LockProbe::held, LockProbe::held));
}

TEST_F(RestartLock, GivenLastReferences_WhenTheyAreDropped_ThenItIsInOrderBetweenReleaseAndStop)
{
    startWithReferencesThatGo({"a", "b", "c"}, [this](const std::string& name) { note("drop " + name); });
    clear();

    restartWatched(locationOf("alpha"), [this](const std::string& step) {
        if (step == "release first") {
            unregisterAll();
        }
    });

    EXPECT_THAT(trail, ElementsAre("release first", "drop a", "drop b", "drop c", "stop alpha", "start alpha"));
}

TEST_F(RestartLock, GivenLastReferences_WhenTheyAreDropped_ThenTheLockIsFree)
{
    LockProbe probe{container, patience};
    startWithReferencesThatGo({"a", "b"}, [&probe](const std::string&) { probe.look(); });

    restartWatched(locationOf("alpha"), [this](const std::string& step) {
        if (step == "release first") {
            unregisterAll();
        }
    });

    EXPECT_THAT(probe.found(), ElementsAre(LockProbe::free, LockProbe::free));
}

TEST_F(RestartLock, GivenLastReferences_WhenTheyAreDropped_ThenAnotherThreadMayLoadAndFindsTheEntriesErased)
{
    provide<Dancer>(host.context(), "other");
    std::vector<std::string> heldMeanwhile{"not looked"};
    startWithReferencesThatGo({"a"}, [&](const std::string&) {
        OtherThread{[&] {
            heldMeanwhile = container.listManuallyLoadedServices();
            container.loadService(dancerName);
        }};
    });
    clear();

    restartWatched(locationOf("alpha"), [this](const std::string& step) {
        if (step == "release first") {
            unregisterAll();
        }
    });

    EXPECT_THAT(heldMeanwhile, IsEmpty());
    EXPECT_THAT(trail, ElementsAre("release first", "get other", "stop alpha", "start alpha"));
    EXPECT_THAT(log.records(), ElementsAre(loaded(dancerName)));
}

TEST_F(RestartLock, GivenNameLoadedWhileReferencesAreDropped_WhenRestarted_ThenItIsAmongThoseLoadedAgain)
{
    atStart("alpha", [this](BundleContext context) {
        if (!trail.empty()) {
            provide<Dancer>(std::move(context), "late");
        }
    });
    const auto loading = [this](const std::string&) { OtherThread{[this] { container.loadService(dancerName); }}; };
    startWithReferencesThatGo({"a"}, loading);
    provide<Dancer>(host.context(), "other");

    restartWatched(locationOf("alpha"), [this](const std::string& step) {
        if (step == "release first") {
            unregisterAll();
        }
    });

    EXPECT_THAT(trail, Contains("get late"));
}

TEST_F(RestartLock, GivenTwoBundlesAtTheLocation_WhenRestarted_ThenEachPassBeginsAndEndsUnderTheLock)
{
    atStart("two_bundles_first", [this](BundleContext context) { provide(std::move(context), "first"); });
    atStart("two_bundles_second", [this](BundleContext context) { provide(std::move(context), "second"); });
    const std::string location = host.locationOf(host.add("two_bundles"));
    container.startBundle(location);
    container.loadService(greeterName);
    LockProbe probe{container};

    restartWatched(location, [&probe](const std::string& step) {
        if (step == "release second" || step == "get second") {
            probe.look();
        }
    });

    EXPECT_THAT(probe.found(), ElementsAre(LockProbe::held, LockProbe::held, LockProbe::held, LockProbe::held));
    EXPECT_TRUE(lockIsFree(container));
}

TEST_F(RestartLock, GivenLockHeldElsewhere_WhenRestarted_ThenItWaits)
{
    startedProviding("alpha");
    container.loadService(greeterName);
    clear();
    LockHolder holder{container, host.context()};
    const OtherThread restarting{[this] { container.restartBundle(locationOf("alpha")); }};

    EXPECT_FALSE(restarting.finishesWithin(glance));
    EXPECT_THAT(trail, IsEmpty());
    holder.letGo();

    ASSERT_TRUE(restarting.finishesWithin());
    EXPECT_THAT(trail, SizeIs(4));
}

} // namespace
} // namespace ostrel::test
