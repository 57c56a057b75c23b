// Threads that wait for different locks, of which one is released. The lock is private, so its source is compiled in.
#include "framework/ForeignCodeLock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <deque>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <utility>

namespace {

using cppmicroservices::detail::core::ForeignCodeLock;
using Outcome = ForeignCodeLock::Outcome;

constexpr std::chrono::seconds patience{20};

/// A thread that takes a lock, and gives it back at once.
class Waiter {
public:
    /// To be called by the holder of the lock. Returns when the thread waits for it.
    explicit Waiter(ForeignCodeLock& wanted) : m_thread([this, &wanted] { run(wanted); })
    {
        // This thread cannot have the other's lock only when the other waits for this one: that would never end.
        while (m_own.take() == Outcome::taken) {
            m_own.release();
            std::this_thread::yield();
        }
    }

    void join() { m_thread.join(); }

private:
    void run(ForeignCodeLock& wanted)
    {
        for (;;) {
            m_own.take();
            bool const taken = wanted.take() == Outcome::taken;
            m_own.release();
            if (taken) {
                break;
            }
        }
        wanted.release();
    }

    ForeignCodeLock m_own;
    std::thread m_thread;
};

/// Holds two locks while others begin to wait for them, and then releases them one by one.
class Holder {
public:
    Holder()
    {
        m_first.take();
        m_second.take();
    }

    void letWaitForFirst() { m_ofFirst.emplace_back(m_first); }
    void letWaitForSecond() { m_ofSecond.emplace_back(m_second); }

    /// Returns when all who waited got their lock.
    void release()
    {
        m_second.release();
        for (auto& waiter : m_ofSecond) {
            waiter.join();
        }
        m_first.release();
        for (auto& waiter : m_ofFirst) {
            waiter.join();
        }
    }

private:
    ForeignCodeLock m_first;
    ForeignCodeLock m_second;
    std::deque<Waiter> m_ofFirst;
    std::deque<Waiter> m_ofSecond;
};

/// Whether all threads get their lock that begin to wait in this order: 1 for the first lock, 2 for the second, which
/// is released first. Threads that never get theirs are left behind.
bool allGetThrough(std::string order)
{
    auto const done = std::make_shared<std::promise<void>>();
    auto future = done->get_future();
    std::thread([done, order = std::move(order)] {
        Holder holder;
        for (char const lock : order) {
            lock == '1' ? holder.letWaitForFirst() : holder.letWaitForSecond();
        }
        holder.release();
        done->set_value();
    }).detach();
    return future.wait_for(patience) == std::future_status::ready;
}

TEST(ForeignCodeLock, isGotBehindThreadsThatWaitForAnother)
{
    EXPECT_TRUE(allGetThrough("1112"));
}

TEST(ForeignCodeLock, isGotBeforeThreadsThatWaitForAnother)
{
    EXPECT_TRUE(allGetThrough("2111"));
}

} // namespace
