// What is defined here and open, a deadlock or the end of the process in 3.8.4.
#include "contract/ThrownText.h"
#include "contract/tracker/TrackerFixture.h"

#include <cppmicroservices/BundleEvent.h>
#include <cppmicroservices/BundleTracker.h>

#include <gmock/gmock.h>

#include <memory>
#include <optional>
#include <stdexcept>

namespace {

using namespace cppmicroservices;
using contract::Numbered;
using contract::ranking;
using ostrel::test::thrownText;
using ::testing::ElementsAre;
using ::testing::StartsWith;

class DefinedTracking : public contract::TrackerFixture {
protected:
    DefinedTracking()
    {
        context.AddFrameworkListener([this](FrameworkEvent const& event) {
            if (event.GetType() == FrameworkEvent::FRAMEWORK_ERROR) {
                errors.push_back(event.GetMessage());
            }
        });
    }

    std::vector<std::string> errors;
    Customizer customizer{getting()};
};

TEST_F(DefinedTracking, closesItselfInACallByAnEvent)
{
    Tracker tracker(context, &customizer);
    tracker.Open();
    auto one = add(1);
    customizer.onModified = [&tracker](auto const&) { tracker.Close(); };
    one.SetProperties(named(1, ranking(1)));
    EXPECT_EQ(-1, tracker.GetTrackingCount());
    EXPECT_EQ(0, tracker.Size());
    tracker.Open();
    customizer.onRemoved = [&tracker](auto const&) { tracker.Close(); };
    one.Unregister();
    EXPECT_EQ(-1, tracker.GetTrackingCount());
    tracker.Open();
    customizer.make = [this, &tracker](auto const& reference) {
        tracker.Close();
        return context.GetService(reference);
    };
    auto const two = add(2);
    EXPECT_THAT(customizer.log.take(),
                ElementsAre("adding 1", "modified 1", "removed 1", "adding 1", "removed 1", "adding 2", "removed 2"));
}

TEST_F(DefinedTracking, mayBeDestroyedInACallByAnEvent)
{
    auto tracker = std::make_unique<Tracker>(context, &customizer);
    tracker->Open();
    auto const one = add(1);
    customizer.make = [this, &tracker](auto const& reference) {
        tracker.reset();
        return context.GetService(reference);
    };
    auto const two = add(2);
    EXPECT_THAT(customizer.log.take(), ElementsAre("adding 1", "adding 2", "removed 1", "removed 2"));
}

TEST_F(DefinedTracking, removesAllServicesThoughTheCustomizerThrows)
{
    Tracker tracker(context, &customizer);
    auto const one = add(1);
    auto const two = add(2);
    tracker.Open();
    customizer.onRemoved = [](auto const& reference) {
        throw std::runtime_error("removing " + reference.GetProperty("name").ToString());
    };
    EXPECT_EQ("removing 2", thrownText<std::runtime_error>([&tracker] { tracker.Close(); }));
    EXPECT_EQ(0, tracker.Size());
    EXPECT_THAT(customizer.log.take(), ElementsAre("adding 1", "adding 2", "removed 2", "removed 1"));
}

TEST_F(DefinedTracking, removesWhatIsAddedAfterAnOpeningThatFailed)
{
    Tracker tracker(context, &customizer);
    auto one = add(1);
    auto two = add(2);
    customizer.make = [](auto const&) -> std::shared_ptr<Numbered> { throw std::runtime_error("adding"); };
    EXPECT_THROW(tracker.Open(), std::runtime_error);
    customizer.make = getting();
    two.SetProperties(named(2, ranking(1)));
    EXPECT_EQ(1, tracker.Size());
    tracker.Close();
    EXPECT_THAT(customizer.log.take(), ElementsAre("adding 1", "adding 2", "removed 2"));
}

TEST_F(DefinedTracking, reportsWhatTheCustomizerThrowsAtTheDestruction)
{
    auto const one = add(1);
    customizer.onRemoved = [](auto const&) { throw 42; };
    {
        Tracker tracker(context, &customizer);
        tracker.Open();
    }
    EXPECT_THAT(errors, ElementsAre("Service tracker customizer threw an exception"));
}

TEST_F(DefinedTracking, refusesADefaultConstructedReference)
{
    EXPECT_THAT(thrownText<std::invalid_argument>([this] { Tracker tracker(context, ServiceReference<Numbered>()); }),
                StartsWith("ServiceTracker: the service reference is default constructed"));
}

TEST_F(DefinedTracking, takesAnyClassNameLiterally)
{
    for (std::string const name : {"a\\", "a)(b=*"}) {
        auto const interfaces = std::make_shared<InterfaceMap>();
        interfaces->emplace(name, std::make_shared<Numbered>());
        ServiceTracker<void> tracker(context, name);
        tracker.Open();
        auto one = context.RegisterService(InterfaceMapConstPtr(interfaces));
        EXPECT_EQ(1, tracker.Size()) << name;
        one.Unregister();
    }
}

TEST_F(DefinedTracking, beginsWithWhatWasAddedLast)
{
    auto const one = add(1);
    auto const two = add(2, ranking(5));
    Tracker tracker(context, &customizer);
    tracker.Open();
    auto const three = add(3, ranking(7));
    EXPECT_THAT(tracker.GetServiceReferences(),
                ElementsAre(three.GetReference(), one.GetReference(), two.GetReference()));
    tracker.Close();
    EXPECT_THAT(customizer.log.take(),
                ElementsAre("adding 2", "adding 1", "adding 3", "removed 3", "removed 1", "removed 2"));
}

struct ThrowingAtRemoval : BundleTrackerCustomizer<> {
    std::optional<Bundle> AddingBundle(Bundle const& bundle, BundleEvent const&) override { return bundle; }
    void ModifiedBundle(Bundle const&, BundleEvent const&, Bundle const&) override {}
    void RemovedBundle(Bundle const&, BundleEvent const&, Bundle const&) override
    {
        throw std::runtime_error("removing");
    }
};

TEST_F(DefinedTracking, ofBundlesReportsWhatTheCustomizerThrows)
{
    auto const threw = "Bundle tracker customizer threw an exception";
    std::optional<BundleTracker<>> tracker;
    tracker.emplace(context, Bundle::STATE_ACTIVE, std::make_shared<ThrowingAtRemoval>());
    tracker->Open();
    tracker->Remove(context.GetBundle());
    EXPECT_THAT(errors, ElementsAre(threw));
    EXPECT_EQ(0U, tracker->Size());
    tracker->Close();
    tracker->Open();
    tracker->Close();
    EXPECT_THAT(errors, ElementsAre(threw, threw));
    tracker->Open();
    tracker.reset();
    EXPECT_THAT(errors, ElementsAre(threw, threw, threw));
}

TEST_F(DefinedTracking, ofBundlesKnowsThatAHandleOnNoneIsNotTracked)
{
    BundleTracker<> tracker(context, Bundle::STATE_ACTIVE);
    tracker.Open();
    tracker.Remove(Bundle());
    EXPECT_EQ(1U, tracker.Size());
    EXPECT_FALSE(tracker.GetObject(Bundle()));
}

} // namespace
