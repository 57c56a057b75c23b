#include "contract/ThrownText.h"
#include "contract/tracker/TrackerFixture.h"

#include <cppmicroservices/ServiceFactory.h>

#include <gmock/gmock.h>

#include <stdexcept>
#include <type_traits>

namespace {

using namespace cppmicroservices;
using contract::Label;
using contract::Numbered;
using contract::NumberedAndOther;
using contract::Other;
using contract::ranking;
using ostrel::test::thrownText;
using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

static_assert(std::is_same_v<ServiceTracker<Numbered>::TrackedParamType, Numbered>);
static_assert(std::is_same_v<ServiceTracker<Numbered, Label>::TrackedParamType, Label>);
static_assert(std::is_same_v<ServiceTracker<void, Label>::TrackedParamType, Label>);
static_assert(std::is_same_v<ServiceTracker<void>::TrackedParamType, InterfaceMap const>);
static_assert(std::is_same_v<ServiceTrackerCustomizer<Numbered, Label>::TypeTraits::ServiceType, Numbered>);
static_assert(std::is_same_v<ServiceTrackerCustomizer<Numbered, Label>::TypeTraits::TrackedType, Label>);
static_assert(std::is_same_v<ServiceTracker<Numbered>::TrackingMap,
                             std::unordered_map<ServiceReference<Numbered>, std::shared_ptr<Numbered>>>);
static_assert(!std::is_copy_constructible_v<ServiceTracker<Numbered>>);
static_assert(!std::is_move_constructible_v<ServiceTracker<Numbered>>);
static_assert(!std::is_convertible_v<ServiceTracker<Numbered>*, ServiceTrackerCustomizer<Numbered>*>);

class ServiceTracking : public contract::TrackerFixture {
protected:
    static std::vector<int> numbers(Tracker const& tracker)
    {
        std::vector<int> result;
        for (auto const& service : tracker.GetServices()) {
            result.push_back(service->number);
        }
        return result;
    }
};

TEST_F(ServiceTracking, knowsNothingBeforeItIsOpened)
{
    auto const one = add(1);
    Tracker tracker(context);
    EXPECT_EQ(-1, tracker.GetTrackingCount());
    EXPECT_EQ(0, tracker.Size());
    EXPECT_TRUE(tracker.IsEmpty());
    EXPECT_FALSE(tracker.GetService());
    EXPECT_FALSE(tracker.GetService(one.GetReference()));
    EXPECT_TRUE(tracker.GetServices().empty());
    EXPECT_TRUE(tracker.GetServiceReferences().empty());
    EXPECT_EQ("No service is being tracked",
              thrownText<ServiceException>([&tracker] { tracker.GetServiceReference(); }));
    Tracker::TrackingMap tracked;
    tracker.GetTracked(tracked);
    EXPECT_TRUE(tracked.empty());
    EXPECT_NO_THROW(tracker.Close());
    EXPECT_NO_THROW(tracker.Remove(one.GetReference()));
}

TEST_F(ServiceTracking, countsWhatHappens)
{
    auto one = add(1);
    Tracker tracker(context);
    tracker.Open();
    EXPECT_EQ(1, tracker.GetTrackingCount());
    tracker.Open();
    EXPECT_EQ(1, tracker.GetTrackingCount());
    auto two = add(2);
    EXPECT_EQ(2, tracker.GetTrackingCount());
    one.SetProperties(ranking(7));
    EXPECT_EQ(3, tracker.GetTrackingCount());
    two.Unregister();
    EXPECT_EQ(4, tracker.GetTrackingCount());
    tracker.Remove(one.GetReference());
    EXPECT_EQ(5, tracker.GetTrackingCount());
    tracker.Remove(one.GetReference());
    EXPECT_EQ(5, tracker.GetTrackingCount());
    EXPECT_EQ(0, tracker.Size());
    one.SetProperties(ranking(8)); // a change of a service that was taken out brings it back
    EXPECT_EQ(6, tracker.GetTrackingCount());
    EXPECT_EQ(1, tracker.Size());
    tracker.Close();
    EXPECT_EQ(-1, tracker.GetTrackingCount());
    tracker.Open();
    EXPECT_EQ(1, tracker.GetTrackingCount());
}

TEST_F(ServiceTracking, prefersTheBestServiceAtTheTime)
{
    auto one = add(1);
    Tracker tracker(context);
    tracker.Open();
    EXPECT_EQ(1, tracker.GetService()->number);
    auto two = add(2, ranking(5));
    EXPECT_EQ(2, tracker.GetService()->number);
    EXPECT_EQ(two.GetReference(), tracker.GetServiceReference());
    one.SetProperties(ranking(7));
    EXPECT_EQ(1, tracker.GetService()->number);
    EXPECT_EQ(one.GetReference(), tracker.GetServiceReference());
    two.SetProperties(ranking(7));
    EXPECT_EQ(1, tracker.GetService()->number); // the elder one
    one.Unregister();
    EXPECT_EQ(2, tracker.GetService()->number);
    two.Unregister();
    EXPECT_FALSE(tracker.GetService());
    EXPECT_THROW(tracker.GetServiceReference(), ServiceException);
}

TEST_F(ServiceTracking, listsTheLastAddedFirst)
{
    Tracker tracker(context);
    tracker.Open();
    auto const one = add(1, ranking(7));
    auto const two = add(2);
    EXPECT_THAT(numbers(tracker), ElementsAre(2, 1));
    EXPECT_THAT(tracker.GetServiceReferences(), ElementsAre(two.GetReference(), one.GetReference()));
}

TEST_F(ServiceTracking, listsWhatItTracks)
{
    auto const one = add(1);
    Tracker tracker(context);
    tracker.Open();
    auto two = add(2);
    auto const other = context.RegisterService<Other>(std::make_shared<NumberedAndOther>());
    EXPECT_THAT(numbers(tracker), UnorderedElementsAre(1, 2));
    EXPECT_THAT(tracker.GetServiceReferences(), UnorderedElementsAre(one.GetReference(), two.GetReference()));
    EXPECT_EQ(2, tracker.GetService(two.GetReference())->number);
    EXPECT_FALSE(tracker.IsEmpty());
    tracker.Close();
    EXPECT_EQ(0, tracker.Size());
    EXPECT_TRUE(tracker.IsEmpty());
    EXPECT_FALSE(tracker.GetService());
    EXPECT_TRUE(tracker.GetServices().empty());
    EXPECT_FALSE(tracker.GetService(two.GetReference()));
}

TEST_F(ServiceTracking, addsToTheMapItIsGiven)
{
    auto const one = add(1);
    auto two = add(2);
    Tracker tracker(context);
    tracker.Open();
    Tracker::TrackingMap tracked;
    tracked[one.GetReference()] = nullptr;
    tracker.GetTracked(tracked);
    EXPECT_EQ(2U, tracked.size());
    EXPECT_FALSE(tracked[one.GetReference()]);
    EXPECT_EQ(2, tracked[two.GetReference()]->number);
    two.Unregister();
    tracker.GetTracked(tracked);
    EXPECT_EQ(2U, tracked.size());
}

TEST_F(ServiceTracking, usesAServiceWhileItIsTracked)
{
    auto const one = add(1);
    Tracker tracker(context);
    tracker.Open();
    EXPECT_EQ(1U, one.GetReference().GetUsingBundles().size());
    tracker.GetService();
    tracker.Close();
    EXPECT_TRUE(one.GetReference().GetUsingBundles().empty());
}

TEST_F(ServiceTracking, ofAReferenceSeesThatServiceAlone)
{
    auto one = add(1);
    auto const two = add(2);
    Tracker tracker(context, one.GetReference());
    tracker.Open();
    EXPECT_THAT(numbers(tracker), ElementsAre(1));
    one.SetProperties(ranking(3));
    EXPECT_EQ(2, tracker.GetTrackingCount());
    one.Unregister();
    EXPECT_EQ(0, tracker.Size());
    EXPECT_EQ(3, tracker.GetTrackingCount());
    tracker.Close();
    tracker.Open();
    EXPECT_EQ(0, tracker.Size());
}

TEST_F(ServiceTracking, ofAStaleReferenceSeesNothing)
{
    auto one = add(1);
    auto const reference = one.GetReference();
    one.Unregister();
    Tracker tracker(context, reference);
    tracker.Open();
    EXPECT_EQ(0, tracker.Size());
    EXPECT_EQ(0, tracker.GetTrackingCount());
}

TEST_F(ServiceTracking, ofAClassNameTakesTheServicesWithTheInterface)
{
    auto const both = context.RegisterService<Numbered, Other>(std::make_shared<NumberedAndOther>(1));
    auto const other = context.RegisterService<Other>(std::make_shared<NumberedAndOther>(2));
    std::string const name = us_service_interface_iid<Other>();
    ServiceTracker<void> all(context, name);
    all.Open();
    EXPECT_EQ(2, all.Size());
    EXPECT_EQ(both.GetReference<Other>(), all.GetServiceReference());
    EXPECT_EQ(2U, all.GetService()->size());
    Tracker numbered(context, name);
    numbered.Open();
    EXPECT_THAT(numbers(numbered), ElementsAre(1));
    auto const late = context.RegisterService<Other>(std::make_shared<NumberedAndOther>(3));
    EXPECT_EQ(1, numbered.Size());
    EXPECT_EQ(3, all.Size());
}

TEST_F(ServiceTracking, takesAClassNameLiterally)
{
    auto const one = add(1);
    for (std::string const name : {"a(b*)c", "", "*"}) {
        ServiceTracker<void> tracker(context, name);
        tracker.Open();
        EXPECT_EQ(0, tracker.Size()) << name;
    }
    EXPECT_THROW(ServiceTracker<void> tracker(context), ServiceException);
}

TEST_F(ServiceTracking, ofAFilterFollowsTheProperties)
{
    auto one = add(1, contract::colour("red"));
    auto const other = context.RegisterService<Other>(std::make_shared<NumberedAndOther>(2), contract::colour("red"));
    ServiceTracker<void> all(context, LDAPFilter("(colour=red)"));
    Tracker tracker(context, LDAPFilter("(colour=red)"));
    all.Open();
    tracker.Open();
    EXPECT_EQ(2, all.Size());
    EXPECT_EQ(1, tracker.Size());
    one.SetProperties(contract::colour("blue"));
    EXPECT_EQ(0, tracker.Size());
    EXPECT_EQ(2, tracker.GetTrackingCount());
    one.SetProperties(contract::colour("green"));
    EXPECT_EQ(2, tracker.GetTrackingCount());
    one.SetProperties(contract::colour("red"));
    EXPECT_EQ(1, tracker.Size());
    EXPECT_EQ(3, tracker.GetTrackingCount());
    EXPECT_EQ(2, all.Size());
}

TEST_F(ServiceTracking, ofAnEmptyFilterTakesAllServicesWithTheInterface)
{
    auto const one = add(1);
    auto const other = context.RegisterService<Other>(std::make_shared<NumberedAndOther>());
    Tracker tracker(context, LDAPFilter());
    tracker.Open();
    EXPECT_THAT(numbers(tracker), ElementsAre(1));
}

TEST_F(ServiceTracking, leavesOutWhatAFactoryDoesNotDeliver)
{
    struct Empty : ServiceFactory {
        InterfaceMapConstPtr GetService(Bundle const&, ServiceRegistrationBase const&) override { return nullptr; }
        void UngetService(Bundle const&, ServiceRegistrationBase const&, InterfaceMapConstPtr const&) override {}
    };
    auto const factory = context.RegisterService<Numbered>(ToFactory(std::make_shared<Empty>()));
    Tracker tracker(context);
    tracker.Open();
    EXPECT_EQ(0, tracker.Size());
}

TEST_F(ServiceTracking, needsACustomizerForAnotherType)
{
    auto const text = "A custom ServiceTrackerCustomizer instance is required for custom tracked objects.";
    auto const one = add(1);
    ServiceTracker<Numbered, Label> tracker(context);
    EXPECT_EQ(text, thrownText<std::runtime_error>([&tracker] { tracker.Open(); }));
    EXPECT_EQ(0, tracker.Size());
    EXPECT_EQ(0, tracker.GetTrackingCount());
    ServiceTracker<void, Label> untyped(context, us_service_interface_iid<Numbered>());
    EXPECT_EQ(text, thrownText<std::runtime_error>([&untyped] { untyped.Open(); }));
}

TEST(ServiceTrackerWithoutContext, saysSo)
{
    BundleContext const none;
    auto const invalid = "The bundle context is no longer valid";
    ServiceTracker<Numbered> tracker(none);
    EXPECT_EQ(invalid, thrownText<std::runtime_error>([&tracker] { tracker.Open(); }));
    EXPECT_EQ(-1, tracker.GetTrackingCount());
    EXPECT_NO_THROW(tracker.Close());
    EXPECT_EQ("The bundle context cannot be null.", thrownText<std::invalid_argument>([&none] {
                  ServiceTracker<Numbered> filtered(none, LDAPFilter("(a=1)"));
              }));
}

TEST_F(ServiceTracking, keepsItsStateWhenTheBundleStops)
{
    auto const one = add(1);
    Tracker open(context);
    Tracker closed(context);
    open.Open();
    ostrel::test::stopAndWait(framework);
    EXPECT_EQ(1, open.Size());
    EXPECT_EQ(1, open.GetTrackingCount());
    EXPECT_EQ(1, open.GetService()->number);
    EXPECT_NO_THROW(open.Close());
    EXPECT_EQ(0, open.Size());
    EXPECT_EQ(-1, open.GetTrackingCount());
    for (auto* tracker : {&open, &closed}) {
        EXPECT_EQ("The bundle context is no longer valid",
                  thrownText<std::runtime_error>([tracker] { tracker->Open(); }));
        EXPECT_EQ(-1, tracker->GetTrackingCount());
        EXPECT_NO_THROW(tracker->Close());
    }
}

} // namespace
