#include "contract/tracker/TrackerFixture.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

namespace {

using namespace cppmicroservices;
using contract::Numbered;

/// Counts what is added and not removed again; its objects must all be given back.
struct Balance : ServiceTrackerCustomizer<Numbered> {
    std::shared_ptr<Numbered> AddingService(ServiceReference<Numbered> const&) override
    {
        ++added;
        return std::make_shared<Numbered>(1);
    }

    void ModifiedService(ServiceReference<Numbered> const&, std::shared_ptr<Numbered> const& service) override
    {
        modified += service->number;
    }

    void RemovedService(ServiceReference<Numbered> const&, std::shared_ptr<Numbered> const& service) override
    {
        removed += service->number;
    }

    std::atomic<int> added{0};
    std::atomic<int> modified{0};
    std::atomic<int> removed{0};
};

class TrackerStress : public contract::TrackerFixture {
protected:
    /// Registers, changes and unregisters services in several threads while `other` runs.
    template <class Other>
    void amidChanges(Other&& other)
    {
        std::vector<std::thread> threads;
        for (int thread = 0; thread < 3; ++thread) {
            threads.emplace_back([this] {
                for (int i = 0; i < 300; ++i) {
                    auto registration = add(i);
                    registration.SetProperties(named(i, contract::ranking(i % 7)));
                    registration.Unregister();
                }
                ++m_finished;
            });
        }
        while (m_finished < 3) {
            other();
        }
        for (auto& thread : threads) {
            thread.join();
        }
    }

private:
    std::atomic<int> m_finished{0};
};

TEST_F(TrackerStress, removesExactlyWhatWasAdded)
{
    Balance balance;
    ServiceTracker<Numbered> tracker(context, &balance);
    tracker.Open();
    amidChanges([&tracker] {
        // From different threads the best one and the list are of different moments; none may hold what is gone.
        if (auto const best = tracker.GetService()) {
            EXPECT_EQ(1, best->number);
        }
        for (auto const& service : tracker.GetServices()) {
            EXPECT_EQ(1, service->number);
        }
    });
    EXPECT_EQ(0, tracker.Size());
    EXPECT_EQ(900, balance.added);
    EXPECT_EQ(900, balance.modified);
    EXPECT_EQ(900, balance.removed);
    EXPECT_EQ(2700, tracker.GetTrackingCount());
}

TEST_F(TrackerStress, balancesOverOpeningsAndClosings)
{
    Balance balance;
    ServiceTracker<Numbered> tracker(context, &balance);
    auto const constant = add(-1);
    amidChanges([&tracker] {
        tracker.Open();
        EXPECT_TRUE(tracker.WaitForService());
        tracker.Close();
        EXPECT_EQ(0, tracker.Size());
    });
    EXPECT_EQ(balance.added, balance.removed);
    EXPECT_LT(0, balance.added);
}

TEST_F(TrackerStress, isClosedByOneWhileOthersOpenAndWait)
{
    Balance balance;
    ServiceTracker<Numbered> tracker(context, &balance);
    std::atomic<bool> done{false};
    std::thread waiting([&] {
        while (!done) {
            tracker.Open();
            tracker.WaitForService(std::chrono::milliseconds(1));
        }
    });
    amidChanges([&tracker] { tracker.Close(); });
    done = true;
    waiting.join();
    tracker.Close();
    EXPECT_EQ(balance.added, balance.removed);
}

TEST_F(TrackerStress, getsTheServicesByDefault)
{
    amidChanges([this] {
        Tracker tracker(context);
        tracker.Open();
        for (auto const& service : tracker.GetServices()) {
            EXPECT_LE(0, service->number);
        }
    });
    Tracker tracker(context);
    tracker.Open();
    EXPECT_EQ(0, tracker.Size());
}

} // namespace
