#pragma once

#include "container/MicroServicesContainer.h"

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

namespace ostrel::test {

/// How long a test waits for what must happen, before it fails instead of hanging.
inline constexpr std::chrono::seconds patience{20};
/// How long a test looks at something that must not happen.
inline constexpr std::chrono::milliseconds glance{100};

/// A gate between threads: closed at first, then open for good.
class Latch {
public:
    void open();
    /// Returns whether the latch was open in time.
    bool waitFor(std::chrono::milliseconds limit = patience) const;

private:
    mutable std::mutex m_mutex;
    mutable std::condition_variable m_changed;
    bool m_isOpen = false;
};

/// Runs a task on another thread, which may block for good without hanging the test.
///
/// A task that is still blocked at the end is left behind; it must be able to outlive what it refers to only if the
/// test has failed anyway.
class OtherThread {
public:
    explicit OtherThread(std::function<void()> task);
    OtherThread(const OtherThread&) = delete;
    OtherThread& operator=(const OtherThread&) = delete;
    /// Waits for the task, as long as patience lasts.
    ~OtherThread();

    bool finishesWithin(std::chrono::milliseconds limit = patience) const;

private:
    std::shared_ptr<Latch> m_finished;
};

/// Whether another thread gets the container's mutex; waits a few seconds before it says no.
bool lockIsFree(const ostrel::us_container::MicroServicesContainer& container);

} // namespace ostrel::test
