#pragma once

#include "watch/KnownBundles.h"

#include <cppmicroservices/BundleEvent.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <sys/types.h>

namespace ostrel::host {

/// Which bundles of this process are being started or stopped, on which threads; and what the program is doing besides.
///
/// There is one, which is never destroyed: code of bundles runs until the very end of the process. What is marked as
/// safe may be called by signal handlers.
class Activity {
public:
    using Clock = std::chrono::steady_clock;

    /// One start or stop; never destroyed.
    struct Work {
        Work(pid_t thread, const KnownBundle& bundle, bool isStart, Clock::time_point since, Work* outer)
            : thread(thread), bundle(&bundle), isStart(isStart), since(since), outer(outer)
        {
        }

        pid_t thread;
        const KnownBundle* bundle;
        bool isStart;
        Clock::time_point since;
        Work* outer; ///< what had begun before, on any thread
        std::atomic<bool> ended{false};
    };

    /// Who runs, as far as it can be told.
    struct Suspect {
        const KnownBundle* bundle; ///< null when nobody knows
        const Work* work;          ///< null when it is neither being started nor stopped
    };

    static Activity& instance();

    /// What an event of the framework tells. @locks its mutex
    void tell(const cppmicroservices::BundleEvent& event);

    /// What the program does from now on, as in "while ..."; the text must last. @locks its mutex
    void step(const char* what);
    const char* currentStep() const noexcept { return m_step; } ///< safe

    /// What began last on this thread and has not ended; null when there is none. Safe.
    const Work* workOfThisThread() const noexcept;

    /// The bundle that this thread starts or stops, else the one whose code is innermost in its stack. Safe.
    Suspect suspectOfThisThread() const noexcept;

    /// Whether this is the thread on which instance() was called first. Safe.
    bool isMainThread() const noexcept;

    /// What takes longer than the others, under mutex(): a start, a stop or, when none is under way, the step.
    struct Longest {
        const Work* work; ///< null for the step
        Clock::time_point since;
    };
    Longest longest() const;

    std::mutex& mutex() { return m_mutex; }
    /// Notified of every change.
    std::condition_variable& changed() { return m_changed; }

private:
    Activity();
    void begin(const KnownBundle& bundle, bool isStart);
    void end(const KnownBundle& bundle);
    Work* latest(pid_t thread, const KnownBundle* bundle) const noexcept;

    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Work> m_all;
    std::atomic<Work*> m_latest{nullptr};
    std::atomic<const char*> m_step{"it was beginning"};
    Clock::time_point m_lastChange;
    pid_t m_mainThread;
};

} // namespace ostrel::host
