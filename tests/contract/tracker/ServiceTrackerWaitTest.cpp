#include "contract/ThrownText.h"
#include "contract/tracker/TrackerFixture.h"

#include <chrono>
#include <future>
#include <stdexcept>
#include <thread>

namespace {

using namespace cppmicroservices;
using namespace std::chrono_literals;
using contract::Numbered;
using ostrel::test::thrownText;

class WaitingForAService : public contract::TrackerFixture {
protected:
    WaitingForAService() { tracker.Open(); }

    /// Begins to wait in another thread, most likely before this returns.
    template <class... Time>
    std::future<std::shared_ptr<Numbered>> waiting(Time... time)
    {
        auto result = std::async(std::launch::async, [this, time...] { return tracker.WaitForService(time...); });
        EXPECT_EQ(std::future_status::timeout, result.wait_for(50ms));
        return result;
    }

    Tracker tracker{context};
};

TEST_F(WaitingForAService, returnsAtOnceWhatIsThere)
{
    auto const one = add(1);
    EXPECT_EQ(1, tracker.WaitForService()->number);
    EXPECT_EQ(1, tracker.WaitForService(0s)->number);
    EXPECT_EQ(1, tracker.WaitForService(1h)->number);
}

TEST_F(WaitingForAService, endsWhenOneIsAdded)
{
    auto forEver = waiting();
    auto zero = waiting(0ms);
    auto long_ = waiting(1h);
    auto const one = add(1);
    EXPECT_EQ(1, forEver.get()->number);
    EXPECT_EQ(1, zero.get()->number);
    EXPECT_EQ(1, long_.get()->number);
}

TEST_F(WaitingForAService, endsWhenTheTimeIsOver)
{
    auto const begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(tracker.WaitForService(30ms));
    EXPECT_LE(30ms, std::chrono::steady_clock::now() - begin);
    EXPECT_FALSE(tracker.WaitForService(std::chrono::nanoseconds(5)));
}

TEST_F(WaitingForAService, endsWhenTheTrackerIsClosed)
{
    auto forEver = waiting();
    auto longer = waiting(1h);
    tracker.Close();
    EXPECT_FALSE(forEver.get());
    EXPECT_FALSE(longer.get());
    EXPECT_FALSE(tracker.WaitForService());
    EXPECT_FALSE(tracker.WaitForService(1h));
}

TEST_F(WaitingForAService, refusesANegativeTime)
{
    EXPECT_EQ("negative timeout", thrownText<std::invalid_argument>([this] { tracker.WaitForService(-1ms); }));
    auto const one = add(1);
    EXPECT_EQ("negative timeout", thrownText<std::invalid_argument>([this] { tracker.WaitForService(-1ns); }));
}

TEST_F(WaitingForAService, needsAContext)
{
    auto forEver = waiting();
    ostrel::test::stopAndWait(framework);
    EXPECT_EQ("The bundle context became null.",
              thrownText<std::logic_error>([&forEver] { static_cast<void>(forEver.get()); }));
    auto const invalid = "The bundle context cannot be null.";
    EXPECT_EQ(invalid, thrownText<std::logic_error>([this] { tracker.WaitForService(); }));
    EXPECT_EQ(invalid, thrownText<std::logic_error>([this] { tracker.WaitForService(10ms); }));
    tracker.Close();
    EXPECT_EQ(invalid, thrownText<std::logic_error>([this] { tracker.WaitForService(10ms); }));
    Tracker never(context);
    EXPECT_FALSE(never.WaitForService(10ms));
}

TEST_F(WaitingForAService, withATimeEndsThenEvenWithoutAContext)
{
    auto waited = waiting(300ms);
    ostrel::test::stopAndWait(framework);
    EXPECT_FALSE(waited.get());
}

TEST_F(WaitingForAService, asksTheOverriddenGetService)
{
    struct Own : Tracker {
        using Tracker::Tracker;
        std::shared_ptr<Numbered> GetService() const override { return std::make_shared<Numbered>(77); }
    };
    Own own(context);
    own.Open();
    EXPECT_EQ(77, own.WaitForService()->number);
}

} // namespace
