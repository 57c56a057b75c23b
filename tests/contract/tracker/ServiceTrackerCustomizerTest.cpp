#include "contract/ThrownText.h"
#include "contract/tracker/TrackerFixture.h"

#include <gmock/gmock.h>

#include <chrono>
#include <future>
#include <optional>
#include <stdexcept>
#include <thread>

namespace {

using namespace cppmicroservices;
using namespace std::chrono_literals;
using contract::Label;
using contract::Numbered;
using ostrel::test::thrownText;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

class CustomizingServices : public contract::TrackerFixture {
protected:
    CustomizingServices()
    {
        context.AddFrameworkListener([this](FrameworkEvent const& event) {
            if (event.GetType() == FrameworkEvent::FRAMEWORK_ERROR) {
                errors.push_back(event.GetMessage());
            }
        });
    }

    std::vector<std::string> errors;
    Customizer customizer{getting()};
    Tracker tracker{context, &customizer};
};

auto const listenerThrew = "Service listener in system_bundle threw an exception!";

TEST_F(CustomizingServices, tellsWhatHappens)
{
    auto one = add(1);
    tracker.Open();
    EXPECT_THAT(customizer.log.take(), ElementsAre("adding 1"));
    auto two = add(2);
    one.SetProperties(named(1, contract::ranking(2)));
    two.Unregister();
    EXPECT_THAT(customizer.log.take(), ElementsAre("adding 2", "modified 1", "removed 2"));
    tracker.Close();
    EXPECT_THAT(customizer.log.take(), ElementsAre("removed 1"));
    one.SetProperties(named(1));
    EXPECT_THAT(customizer.log.take(), IsEmpty());
}

TEST_F(CustomizingServices, beginsWithTheBest)
{
    auto const one = add(1);
    auto const two = add(2, contract::ranking(3));
    auto const three = add(3, contract::ranking(-2));
    auto const four = add(4, contract::ranking(3));
    tracker.Open();
    EXPECT_THAT(customizer.log.take(), ElementsAre("adding 2", "adding 4", "adding 1", "adding 3"));
    tracker.Close();
    EXPECT_THAT(customizer.log.take(), UnorderedElementsAre("removed 1", "removed 2", "removed 3", "removed 4"));
}

TEST_F(CustomizingServices, seesTheCountAfterTheChange)
{
    auto one = add(1);
    std::vector<int> counts;
    auto const note = [this, &counts](auto const& reference) {
        counts.push_back(tracker.GetTrackingCount());
        counts.push_back(tracker.Size());
        counts.push_back(tracker.GetService(reference) ? 1 : 0);
    };
    customizer.make = [&](auto const& reference) {
        note(reference);
        return context.GetService(reference);
    };
    customizer.onModified = note;
    customizer.onRemoved = note;
    tracker.Open();
    one.SetProperties(named(1, contract::ranking(1)));
    one.Unregister();
    auto const two = add(2);
    tracker.Close();
    EXPECT_THAT(counts, ElementsAre(0, 0, 0, 2, 1, 1, 3, 0, 0, 3, 0, 0, -1, 0, 0));
}

TEST_F(CustomizingServices, runsInTheThreadThatCausesTheChange)
{
    std::thread::id seen;
    customizer.make = [&seen](auto const&) {
        seen = std::this_thread::get_id();
        return std::make_shared<Numbered>();
    };
    tracker.Open();
    Registration one;
    std::thread::id caused;
    std::thread([&] {
        caused = std::this_thread::get_id();
        one = add(1);
    }).join();
    EXPECT_EQ(caused, seen);
}

TEST_F(CustomizingServices, mayDeclineAService)
{
    customizer.make = [](auto const&) { return nullptr; };
    auto one = add(1);
    tracker.Open();
    EXPECT_EQ(0, tracker.Size());
    one.SetProperties(named(1, contract::ranking(1)));
    auto two = add(2);
    two.Unregister();
    EXPECT_EQ(0, tracker.GetTrackingCount());
    EXPECT_THAT(customizer.log.take(), ElementsAre("adding 1", "adding 1", "adding 2"));
    customizer.make = getting();
    one.SetProperties(named(1));
    EXPECT_EQ(1, tracker.Size());
}

TEST_F(CustomizingServices, isToldWhenAServiceCeasesToMatch)
{
    Tracker filtered(context, LDAPFilter("(colour=red)"), &customizer);
    auto one = add(1, contract::colour("red"));
    filtered.Open();
    one.SetProperties(named(1, contract::colour("blue")));
    one.SetProperties(named(1, contract::colour("green")));
    one.SetProperties(named(1, contract::colour("red")));
    auto more = contract::colour("red");
    more["more"] = 1;
    one.SetProperties(named(1, more));
    one.Unregister();
    EXPECT_THAT(customizer.log.take(), ElementsAre("adding 1", "removed 1", "adding 1", "modified 1", "removed 1"));
}

TEST_F(CustomizingServices, mayKeepAnythingElse)
{
    contract::LoggingCustomizer<Numbered, Label> labels([](auto const& reference) {
        return std::make_shared<Label>(Label{"label of " + reference.GetProperty("name").ToString()});
    });
    ServiceTracker<Numbered, Label> labelled(context, &labels);
    labelled.Open();
    auto one = add(1);
    EXPECT_EQ("label of 1", labelled.GetService()->text);
    EXPECT_TRUE(one.GetReference().GetUsingBundles().empty());
    contract::LoggingCustomizer<void, Label> untyped([](auto const&) { return std::make_shared<Label>(); });
    ServiceTracker<void, Label> all(context, us_service_interface_iid<Numbered>(), &untyped);
    all.Open();
    EXPECT_EQ(1, all.Size());
}

TEST_F(CustomizingServices, canBeASubclassOfTheTracker)
{
    struct Own : Tracker {
        Own(BundleContext const& context, contract::Log& theLog) : Tracker(context), log(theLog) {}
        std::shared_ptr<Numbered> AddingService(ServiceReference<Numbered> const& reference) override
        {
            log.add("adding");
            return Tracker::AddingService(reference);
        }
        void ModifiedService(ServiceReference<Numbered> const& reference,
                             std::shared_ptr<Numbered> const& service) override
        {
            log.add("modified");
            Tracker::ModifiedService(reference, service);
        }
        void RemovedService(ServiceReference<Numbered> const& reference,
                            std::shared_ptr<Numbered> const& service) override
        {
            log.add("removed " + std::to_string(service->number));
            Tracker::RemovedService(reference, service);
        }
        contract::Log& log;
    };
    contract::Log log;
    auto one = add(1);
    {
        Own own(context, log);
        own.Open();
        one.SetProperties(contract::ranking(1));
        own.Close();
        EXPECT_THAT(log.take(), ElementsAre("adding", "modified", "removed 1"));
        own.Open();
    }
    EXPECT_THAT(log.take(), ElementsAre("adding")); // a destructor cannot call what is destroyed already
}

TEST_F(CustomizingServices, isToldByTheDestructorToo)
{
    auto const one = add(1);
    std::optional<Tracker> own;
    own.emplace(context, &customizer);
    own->Open();
    own.reset();
    EXPECT_THAT(customizer.log.take(), ElementsAre("adding 1", "removed 1"));
}

TEST_F(CustomizingServices, thatThrowsDoesNotDisturbWhoCausesTheChange)
{
    tracker.Open();
    customizer.make = [](auto const&) -> std::shared_ptr<Numbered> { throw std::runtime_error("adding"); };
    auto one = add(1);
    EXPECT_THAT(errors, ElementsAre(listenerThrew));
    EXPECT_EQ(0, tracker.GetTrackingCount());
    customizer.make = [](auto const&) -> std::shared_ptr<Numbered> { throw 42; };
    one.SetProperties(named(1, contract::ranking(1)));
    EXPECT_EQ(0, tracker.Size());
    customizer.make = getting();
    one.SetProperties(named(1, contract::ranking(2)));
    EXPECT_EQ(1, tracker.Size());
    customizer.onModified = [](auto const&) { throw 42; };
    one.SetProperties(named(1, contract::ranking(3)));
    EXPECT_EQ(1, tracker.Size());
    EXPECT_EQ(2, tracker.GetTrackingCount());
    customizer.onRemoved = [](auto const&) { throw std::runtime_error("removed"); };
    EXPECT_NO_THROW(one.Unregister());
    EXPECT_EQ(0, tracker.Size());
    EXPECT_EQ(3, tracker.GetTrackingCount());
    EXPECT_THAT(errors, ElementsAre(listenerThrew, listenerThrew, listenerThrew, listenerThrew));
}

TEST_F(CustomizingServices, thatThrowsDisturbsWhoCallsTheTracker)
{
    auto one = add(1);
    auto const two = add(2);
    auto const three = add(3);
    int calls = 0;
    customizer.make = [&](auto const& reference) {
        if (++calls == 2) {
            throw std::runtime_error("adding");
        }
        return context.GetService(reference);
    };
    EXPECT_EQ("adding", thrownText<std::runtime_error>([this] { tracker.Open(); }));
    EXPECT_EQ(1, tracker.Size());
    EXPECT_EQ(1, tracker.GetTrackingCount());
    EXPECT_NO_THROW(tracker.Open()); // it is open
    EXPECT_EQ(1, tracker.Size());
    customizer.onRemoved = [](auto const&) { throw std::runtime_error("removed"); };
    EXPECT_EQ("removed", thrownText<std::runtime_error>([&] { tracker.Remove(one.GetReference()); }));
    EXPECT_EQ(0, tracker.Size());
    one.SetProperties(named(1, contract::ranking(1)));
    customizer.onRemoved = [](auto const&) { throw 42; };
    EXPECT_THROW(tracker.Close(), int);
    EXPECT_EQ(-1, tracker.GetTrackingCount());
    customizer.onRemoved = nullptr;
}

TEST_F(CustomizingServices, mayCloseTheTrackerThatOpens)
{
    auto const one = add(1);
    auto const two = add(2);
    customizer.make = [this](auto const& reference) {
        tracker.Close();
        return context.GetService(reference);
    };
    tracker.Open();
    EXPECT_EQ(-1, tracker.GetTrackingCount());
    EXPECT_EQ(0, tracker.Size());
    EXPECT_THAT(customizer.log.take(), ElementsAre("adding 1", "removed 1"));
}

TEST_F(CustomizingServices, mayOpenTheTrackerThatCloses)
{
    auto const one = add(1);
    customizer.onRemoved = [this, once = true](auto const&) mutable {
        if (std::exchange(once, false)) {
            tracker.Open();
        }
    };
    tracker.Open();
    tracker.Close();
    EXPECT_EQ(1, tracker.Size());
    EXPECT_EQ(1, tracker.GetTrackingCount());
    EXPECT_THAT(customizer.log.take(), ElementsAre("adding 1", "removed 1", "adding 1"));
}

TEST_F(CustomizingServices, mayChangeTheServiceThatIsAdded)
{
    auto one = add(1);
    customizer.make = [&](auto const& reference) {
        one.SetProperties(named(1, contract::ranking(1)));
        return context.GetService(reference);
    };
    tracker.Open();
    EXPECT_EQ(1, tracker.GetTrackingCount());
    EXPECT_THAT(customizer.log.take(), ElementsAre("adding 1"));
    customizer.make = [&](auto const& reference) {
        auto service = context.GetService(reference);
        one.Unregister();
        return service;
    };
    tracker.Close();
    tracker.Open();
    EXPECT_EQ(0, tracker.Size());
    EXPECT_EQ(0, tracker.GetTrackingCount());
    EXPECT_THAT(customizer.log.take(), ElementsAre("removed 1", "adding 1", "removed gone"));
}

TEST_F(CustomizingServices, mayTakeOutTheServiceThatIsAdded)
{
    auto const one = add(1);
    customizer.make = [this](auto const& reference) {
        tracker.Remove(reference);
        return context.GetService(reference);
    };
    tracker.Open();
    EXPECT_EQ(0, tracker.Size());
    EXPECT_EQ(0, tracker.GetTrackingCount());
    EXPECT_THAT(customizer.log.take(), ElementsAre("adding 1", "removed 1"));
}

TEST_F(CustomizingServices, mayRegisterAndUnregisterServices)
{
    auto one = add(1);
    Registration two;
    customizer.make = [&](auto const& reference) {
        auto service = context.GetService(reference);
        if (service->number == 1) {
            two = add(2);
        }
        return service;
    };
    tracker.Open();
    EXPECT_EQ(2, tracker.Size());
    customizer.onModified = [&](auto const&) { two.Unregister(); };
    one.SetProperties(named(1, contract::ranking(1)));
    EXPECT_EQ(4, tracker.GetTrackingCount());
    EXPECT_THAT(customizer.log.take(), ElementsAre("adding 1", "adding 2", "modified 1", "removed 2"));
}

TEST_F(CustomizingServices, isToldWhenAServiceGoesWhileItIsAdded)
{
    auto one = add(1);
    std::promise<void> inside;
    std::promise<void> gone;
    customizer.make = [&](auto const& reference) {
        auto service = context.GetService(reference);
        inside.set_value();
        gone.get_future().wait();
        return service;
    };
    auto opening = std::async(std::launch::async, [this] { tracker.Open(); });
    inside.get_future().wait();
    one.Unregister();
    EXPECT_THAT(customizer.log.take(), ElementsAre("adding 1"));
    gone.set_value();
    opening.get();
    EXPECT_EQ(0, tracker.Size());
    EXPECT_EQ(0, tracker.GetTrackingCount());
    EXPECT_THAT(customizer.log.take(), ElementsAre("removed gone"));
}

TEST_F(CustomizingServices, isNoLongerCalledByEventsAfterTheClosing)
{
    tracker.Open();
    std::promise<void> inside;
    customizer.make = [&](auto const& reference) {
        inside.set_value();
        std::this_thread::sleep_for(100ms);
        return context.GetService(reference);
    };
    auto adding = std::async(std::launch::async, [this] { return add(1); });
    inside.get_future().wait();
    tracker.Close(); // waits for the call
    EXPECT_THAT(customizer.log.take(), ElementsAre("adding 1", "removed 1"));
    adding.get();
    EXPECT_EQ(0, tracker.Size());
}

} // namespace
