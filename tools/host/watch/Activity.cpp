#include "watch/Activity.h"

#include <unistd.h>

namespace ostrel::host {

using cppmicroservices::BundleEvent;

Activity& Activity::instance()
{
    static auto* const only = new Activity;
    return *only;
}

Activity::Activity() : m_lastChange(Clock::now()), m_mainThread(gettid()) {}

void Activity::tell(const BundleEvent& event)
{
    if (event.GetBundle().GetBundleId() == 0) {
        return; // the framework itself, of which only some events come
    }
    const KnownBundle& bundle = known(event.GetBundle());
    switch (event.GetType()) {
    case BundleEvent::BUNDLE_STARTING:
        begin(bundle, true);
        break;
    case BundleEvent::BUNDLE_STOPPING:
        // After a start that failed this comes too; the bundle is still being started then.
        if (m_latest == nullptr || latest(gettid(), &bundle) == nullptr) {
            begin(bundle, false);
        }
        break;
    case BundleEvent::BUNDLE_STARTED:
    case BundleEvent::BUNDLE_STOPPED:
        end(bundle);
        break;
    default:
        break;
    }
}

void Activity::step(const char* what)
{
    const std::lock_guard lock{m_mutex};
    m_step = what;
    m_lastChange = Clock::now();
    m_changed.notify_all();
}

void Activity::begin(const KnownBundle& bundle, bool isStart)
{
    const std::lock_guard lock{m_mutex};
    m_lastChange = Clock::now();
    m_latest = &m_all.emplace_back(gettid(), bundle, isStart, m_lastChange, m_latest);
    m_changed.notify_all();
}

void Activity::end(const KnownBundle& bundle)
{
    const std::lock_guard lock{m_mutex};
    m_lastChange = Clock::now();
    const pid_t thread = gettid();
    if (Work* const work = latest(thread, &bundle)) {
        work->ended = true;
    }
    while (m_latest != nullptr && m_latest.load()->ended) {
        m_latest = m_latest.load()->outer;
    }
    // What waited for this one to end has its time from now on.
    if (Work* const outer = latest(thread, nullptr)) {
        outer->since = m_lastChange;
    }
    m_changed.notify_all();
}

/// The latest that has not ended on that thread, of that bundle or of any.
Activity::Work* Activity::latest(pid_t thread, const KnownBundle* bundle) const noexcept
{
    for (Work* work = m_latest; work != nullptr; work = work->outer) {
        if (work->thread == thread && !work->ended && (bundle == nullptr || work->bundle == bundle)) {
            return work;
        }
    }
    return nullptr;
}

const Activity::Work* Activity::workOfThisThread() const noexcept
{
    return latest(gettid(), nullptr);
}

Activity::Suspect Activity::suspectOfThisThread() const noexcept
{
    const Work* const work = workOfThisThread();
    return {work != nullptr ? work->bundle : innermostBundle(), work};
}

bool Activity::isMainThread() const noexcept
{
    return gettid() == m_mainThread;
}

Activity::Longest Activity::longest() const
{
    // Without allocating: who hangs may hold what that needs.
    Longest found{nullptr, m_lastChange};
    for (const Work* work = m_latest; work != nullptr; work = work->outer) {
        // What else has begun on a thread waits for its latest.
        const bool isAtWork = latest(work->thread, nullptr) == work;
        if (isAtWork && (found.work == nullptr || work->since < found.since)) {
            found = {work, work->since};
        }
    }
    return found;
}

} // namespace ostrel::host
