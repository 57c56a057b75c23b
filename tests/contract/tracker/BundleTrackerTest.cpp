#include "contract/ThrownText.h"
#include "contract/tracker/LoggingBundleCustomizer.h"
#include "support/Host.h"

#include <gmock/gmock.h>

#include <chrono>
#include <future>
#include <memory>
#include <optional>
#include <stdexcept>
#include <thread>
#include <type_traits>

namespace {

using namespace cppmicroservices;
using namespace std::chrono_literals;
using contract::LoggingBundleCustomizer;
using ostrel::test::thrownText;

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

using Mask = BundleTracker<>::BundleStateMaskType;
constexpr Mask allStates =
    BundleTracker<>::CreateStateMask(Bundle::STATE_UNINSTALLED, Bundle::STATE_INSTALLED, Bundle::STATE_RESOLVED,
                                     Bundle::STATE_STARTING, Bundle::STATE_STOPPING, Bundle::STATE_ACTIVE);
static_assert(allStates == 0x3f);
static_assert(BundleTracker<int>::CreateStateMask(Bundle::STATE_ACTIVE) == Bundle::STATE_ACTIVE);
static_assert(std::is_same_v<Mask, std::uint32_t>);
static_assert(std::is_same_v<BundleTracker<int>::TrackingMap, std::unordered_map<Bundle, int>>);
static_assert(noexcept(std::declval<BundleTracker<>&>().Close()));
static_assert(noexcept(std::declval<BundleTracker<>&>().Remove(std::declval<Bundle const&>())));
static_assert(!std::is_copy_constructible_v<BundleTracker<>>);

class TrackingBundles : public ostrel::test::HostFixture {
protected:
    using Customizer = LoggingBundleCustomizer<>;

    Bundle install(std::string const& target = "alpha")
    {
        return host.context().InstallBundles(host.locationOf(host.add(target))).at(0);
    }

    std::vector<std::string> errors() { return std::exchange(m_errors, {}); }

    void keepErrors()
    {
        host.context().AddFrameworkListener([this](FrameworkEvent const& event) {
            if (event.GetType() == FrameworkEvent::FRAMEWORK_ERROR) {
                m_errors.push_back(event.GetMessage());
            }
        });
    }

    std::shared_ptr<Customizer> customizer =
        std::make_shared<Customizer>("alpha", [](Bundle const& bundle) { return bundle; });

private:
    std::vector<std::string> m_errors;
};

TEST_F(TrackingBundles, knowsNothingBeforeItIsOpened)
{
    auto const alpha = install();
    BundleTracker<> tracker(host.context(), allStates, customizer);
    EXPECT_EQ(-1, tracker.GetTrackingCount());
    EXPECT_EQ(0U, tracker.Size());
    EXPECT_TRUE(tracker.IsEmpty());
    EXPECT_TRUE(tracker.GetBundles().empty());
    EXPECT_TRUE(tracker.GetTracked().empty());
    EXPECT_FALSE(tracker.GetObject(alpha));
    tracker.Remove(alpha);
    tracker.Close();
    EXPECT_THAT(customizer->log.take(), IsEmpty());
}

TEST_F(TrackingBundles, seesAllStates)
{
    BundleTracker<> tracker(host.context(), allStates, customizer);
    tracker.Open();
    int const before = tracker.GetTrackingCount();
    auto alpha = install();
    alpha.Start();
    EXPECT_EQ(before + 4, tracker.GetTrackingCount());
    alpha.Stop();
    alpha.Uninstall();
    EXPECT_EQ(before + 7, tracker.GetTrackingCount());
    EXPECT_TRUE(tracker.GetObject(alpha));
    EXPECT_THAT(customizer->log.take(),
                ElementsAre("adding INSTALLED INSTALLED", "modified RESOLVED RESOLVED", "modified STARTING STARTING",
                            "modified ACTIVE STARTED", "modified STOPPING STOPPING", "modified RESOLVED STOPPED",
                            "modified UNINSTALLED UNINSTALLED"));
    tracker.Remove(alpha);
    EXPECT_FALSE(tracker.GetObject(alpha));
    tracker.Remove(alpha);
    EXPECT_EQ(before + 8, tracker.GetTrackingCount());
    EXPECT_THAT(customizer->log.take(), ElementsAre("removed UNINSTALLED NONE"));
}

TEST_F(TrackingBundles, seesActiveOnesComeAndGo)
{
    BundleTracker<> tracker(host.context(), Bundle::STATE_ACTIVE, customizer);
    tracker.Open();
    auto alpha = install();
    alpha.Start();
    alpha.Start();
    EXPECT_TRUE(tracker.GetObject(alpha));
    alpha.Stop();
    EXPECT_FALSE(tracker.GetObject(alpha));
    alpha.Start();
    alpha.Uninstall();
    EXPECT_THAT(customizer->log.take(), ElementsAre("adding ACTIVE STARTED", "removed STOPPING STOPPING",
                                                    "adding ACTIVE STARTED", "removed STOPPING STOPPING"));
}

TEST_F(TrackingBundles, seesThoseAtRest)
{
    BundleTracker<> tracker(host.context(), Bundle::STATE_INSTALLED | Bundle::STATE_RESOLVED, customizer);
    tracker.Open();
    auto alpha = install();
    alpha.Start();
    alpha.Stop();
    alpha.Uninstall();
    EXPECT_EQ(5, tracker.GetTrackingCount());
    EXPECT_THAT(customizer->log.take(),
                ElementsAre("adding INSTALLED INSTALLED", "modified RESOLVED RESOLVED", "removed STARTING STARTING",
                            "adding RESOLVED STOPPED", "removed UNINSTALLED UNINSTALLED"));
}

TEST_F(TrackingBundles, seesThoseThatAreGone)
{
    BundleTracker<> nothing(host.context(), 0);
    BundleTracker<> tracker(host.context(), Bundle::STATE_UNINSTALLED, customizer);
    nothing.Open();
    tracker.Open();
    auto alpha = install();
    alpha.Start();
    alpha.Uninstall();
    EXPECT_THAT(customizer->log.take(), ElementsAre("adding UNINSTALLED UNINSTALLED"));
    EXPECT_EQ(1U, tracker.Size());
    EXPECT_EQ(0, nothing.GetTrackingCount());
}

TEST_F(TrackingBundles, beginsWithThoseThatAreThere)
{
    auto alpha = install();
    alpha.Start();
    auto const resting = install("beta");
    BundleTracker<> tracker(host.context(), Bundle::STATE_ACTIVE, customizer);
    tracker.Open();
    tracker.Open();
    EXPECT_THAT(customizer->log.take(), ElementsAre("adding ACTIVE NONE"));
    auto const own = host.context().GetBundle();
    EXPECT_THAT(tracker.GetBundles(), UnorderedElementsAre(alpha, own));
    EXPECT_EQ(2, tracker.GetTrackingCount());
    auto const tracked = tracker.GetTracked();
    EXPECT_EQ(2U, tracked.size());
    EXPECT_EQ(alpha, tracked.at(alpha));
    EXPECT_EQ(alpha, tracker.GetObject(alpha));
    EXPECT_FALSE(tracker.GetObject(resting));
    EXPECT_FALSE(tracker.GetObject(Bundle()));
    EXPECT_FALSE(tracker.IsEmpty());
    tracker.Close();
    tracker.Close();
    EXPECT_THAT(customizer->log.take(), ElementsAre("removed ACTIVE NONE"));
    EXPECT_EQ(-1, tracker.GetTrackingCount());
    EXPECT_EQ(0U, tracker.Size());
    EXPECT_TRUE(tracker.GetTracked().empty());
    tracker.Open();
    EXPECT_EQ(2, tracker.GetTrackingCount());
}

TEST_F(TrackingBundles, tracksTheBundleByDefault)
{
    BundleTracker<> tracker(host.context(), allStates);
    tracker.Open();
    auto const alpha = install();
    EXPECT_EQ(alpha, tracker.GetObject(alpha));
    EXPECT_EQ(2U, tracker.Size());
}

TEST_F(TrackingBundles, needsACustomizerForAnotherType)
{
    keepErrors();
    BundleTracker<int> tracker(host.context(), allStates);
    EXPECT_EQ("A custom BundleTrackerCustomizer instance is required for custom tracked objects.",
              thrownText<std::runtime_error>([&tracker] { tracker.Open(); }));
    EXPECT_EQ(0, tracker.GetTrackingCount());
    auto const alpha = install();
    EXPECT_EQ(0U, tracker.Size());
    EXPECT_THAT(errors(), ElementsAre("Bundle listener threw an exception"));
}

TEST_F(TrackingBundles, keepsWhatTheCustomizerMakes)
{
    auto const ids = std::make_shared<LoggingBundleCustomizer<long>>(
        "alpha", [](Bundle const& bundle) { return std::optional<long>(100 + bundle.GetBundleId()); });
    BundleTracker<long> tracker(host.context(), allStates, ids);
    tracker.Open();
    auto const alpha = install();
    EXPECT_EQ(100, tracker.GetObject(host.context().GetBundle()));
    EXPECT_EQ(100 + alpha.GetBundleId(), tracker.GetTracked().at(alpha));
}

TEST_F(TrackingBundles, asksAgainForADeclinedBundle)
{
    customizer->make = [](Bundle const&) { return std::nullopt; };
    BundleTracker<> tracker(host.context(), allStates, customizer);
    tracker.Open();
    auto alpha = install();
    alpha.Start();
    EXPECT_EQ(0, tracker.GetTrackingCount());
    EXPECT_THAT(customizer->log.take(), ElementsAre("adding INSTALLED INSTALLED", "adding RESOLVED RESOLVED",
                                                    "adding STARTING STARTING", "adding ACTIVE STARTED"));
}

TEST_F(TrackingBundles, canBeASubclass)
{
    struct Own : BundleTracker<> {
        using BundleTracker<>::BundleTracker;
        std::optional<Bundle> AddingBundle(Bundle const& bundle, BundleEvent const& event) override
        {
            ++added;
            return BundleTracker<>::AddingBundle(bundle, event);
        }
        void RemovedBundle(Bundle const& bundle, BundleEvent const& event, Bundle const& object) override
        {
            ++removed;
            BundleTracker<>::RemovedBundle(bundle, event, object);
        }
        int added = 0;
        int removed = 0;
    };
    Own own(host.context(), Bundle::STATE_ACTIVE);
    own.Open();
    auto alpha = install();
    alpha.Start();
    EXPECT_EQ(2, own.added);
    alpha.Stop();
    EXPECT_EQ(1, own.removed);
    own.Close();
    EXPECT_EQ(2, own.removed);
}

TEST_F(TrackingBundles, needsAContext)
{
    auto const invalid = "The bundle context is no longer valid";
    BundleTracker<> none(BundleContext(), allStates);
    EXPECT_EQ(-1, none.GetTrackingCount());
    EXPECT_EQ(invalid, thrownText<std::runtime_error>([&none] { none.Open(); }));
    none.Close();
    BundleTracker<> tracker(host.context(), allStates, customizer);
    tracker.Open();
    auto alpha = install();
    alpha.Start();
    customizer->log.take();
    host.stop();
    EXPECT_THAT(customizer->log.take(), ElementsAre("modified STOPPING STOPPING", "modified RESOLVED STOPPED"));
    EXPECT_EQ(2U, tracker.Size());
    tracker.Close();
    EXPECT_EQ(-1, tracker.GetTrackingCount());
    EXPECT_EQ(invalid, thrownText<std::runtime_error>([&tracker] { tracker.Open(); }));
    EXPECT_EQ(-1, tracker.GetTrackingCount());
}

TEST_F(TrackingBundles, outlivesTheRunOfItsBundle)
{
    auto alpha = install();
    alpha.Start();
    auto beta = install("beta");
    BundleTracker<> tracker(alpha.GetBundleContext(), allStates, customizer);
    tracker.Open();
    int const before = tracker.GetTrackingCount();
    alpha.Stop();
    EXPECT_EQ(before + 1, tracker.GetTrackingCount()); // STOPPING is the last that it hears
    beta.Start();
    EXPECT_EQ(before + 1, tracker.GetTrackingCount());
    tracker.Close();
    EXPECT_THAT(customizer->log.take(),
                ElementsAre("adding ACTIVE NONE", "modified STOPPING STOPPING", "removed RESOLVED NONE"));
}

TEST_F(TrackingBundles, isNotDisturbedByACustomizerThatThrowsAtAnEvent)
{
    keepErrors();
    auto const threw = "Bundle listener threw an exception";
    BundleTracker<> tracker(host.context(), Bundle::STATE_INSTALLED | Bundle::STATE_RESOLVED, customizer);
    tracker.Open();
    customizer->make = [](Bundle const&) -> std::optional<Bundle> { throw 42; };
    auto alpha = install();
    EXPECT_EQ(0, tracker.GetTrackingCount());
    EXPECT_THAT(errors(), ElementsAre(threw));
    customizer->make = [](Bundle const& bundle) { return bundle; };
    alpha.Start();
    alpha.Stop();
    customizer->onRemoved = [](auto const&, auto const&) { throw std::runtime_error("removed"); };
    alpha.Start();
    EXPECT_EQ(Bundle::STATE_ACTIVE, alpha.GetState());
    EXPECT_EQ(0U, tracker.Size());
    EXPECT_THAT(errors(), ElementsAre(threw));
    customizer->onRemoved = nullptr;
}

TEST_F(TrackingBundles, stopsAtACustomizerThatThrowsAtTheOpening)
{
    auto alpha = install();
    customizer->make = [](Bundle const&) -> std::optional<Bundle> { throw std::runtime_error("adding"); };
    BundleTracker<> tracker(host.context(), allStates, customizer);
    EXPECT_EQ("adding", thrownText<std::runtime_error>([&tracker] { tracker.Open(); }));
    EXPECT_EQ(0, tracker.GetTrackingCount()); // it is open
    customizer->make = [](Bundle const& bundle) { return bundle; };
    tracker.Open();
    EXPECT_EQ(0U, tracker.Size());
    alpha.Start();
    EXPECT_EQ(1U, tracker.Size());
}

TEST_F(TrackingBundles, letsTheCustomizerActOnTheBundle)
{
    BundleTracker<> tracker(host.context(), Bundle::STATE_INSTALLED, customizer);
    tracker.Open();
    customizer->make = [](Bundle const& bundle) {
        Bundle(bundle).Uninstall();
        return bundle;
    };
    auto const alpha = install();
    EXPECT_EQ(Bundle::STATE_UNINSTALLED, alpha.GetState());
    EXPECT_EQ(0, tracker.GetTrackingCount());
    EXPECT_THAT(customizer->log.take(), ElementsAre("adding INSTALLED INSTALLED", "removed UNINSTALLED INSTALLED"));
}

TEST_F(TrackingBundles, closesItselfAtTheOpeningAndTheClosing)
{
    auto const alpha = install();
    BundleTracker<> tracker(host.context(), Bundle::STATE_INSTALLED, customizer);
    customizer->make = [&tracker](Bundle const& bundle) {
        tracker.Close();
        return bundle;
    };
    tracker.Open();
    EXPECT_EQ(-1, tracker.GetTrackingCount());
    EXPECT_EQ(0U, tracker.Size());
    EXPECT_THAT(customizer->log.take(), ElementsAre("adding INSTALLED NONE", "removed INSTALLED NONE"));
    customizer->make = [](Bundle const& bundle) { return bundle; };
    customizer->onRemoved = [&tracker](auto const&, auto const&) { tracker.Close(); };
    tracker.Open();
    tracker.Close();
    EXPECT_THAT(customizer->log.take(), ElementsAre("adding INSTALLED NONE", "removed INSTALLED NONE"));
}

TEST_F(TrackingBundles, waitsForEventsAtTheClosing)
{
    BundleTracker<> tracker(host.context(), Bundle::STATE_INSTALLED, customizer);
    tracker.Open();
    std::promise<void> inside;
    customizer->make = [&inside](Bundle const& bundle) {
        inside.set_value();
        std::this_thread::sleep_for(100ms);
        return bundle;
    };
    auto installing = std::async(std::launch::async, [this] { return install(); });
    inside.get_future().wait();
    tracker.Close();
    EXPECT_THAT(customizer->log.take(), ElementsAre("adding INSTALLED INSTALLED", "removed INSTALLED INSTALLED"));
    installing.get();
    EXPECT_EQ(0U, tracker.Size());
}

} // namespace
