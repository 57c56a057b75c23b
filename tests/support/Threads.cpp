#include "support/Threads.h"

#include <thread>
#include <utility>

namespace ostrel::test {

void Latch::open()
{
    const std::lock_guard lock{m_mutex};
    m_isOpen = true;
    // Under the lock, since a woken thread may destroy the latch as soon as it can look.
    m_changed.notify_all();
}

bool Latch::waitFor(std::chrono::milliseconds limit) const
{
    std::unique_lock lock{m_mutex};
    return m_changed.wait_for(lock, limit, [this] { return m_isOpen; });
}

OtherThread::OtherThread(std::function<void()> task) : m_finished(std::make_shared<Latch>())
{
    std::thread{[finished = m_finished, task = std::move(task)] {
        task();
        finished->open();
    }}.detach();
}

OtherThread::~OtherThread()
{
    m_finished->waitFor();
}

bool OtherThread::finishesWithin(std::chrono::milliseconds limit) const
{
    return m_finished->waitFor(limit);
}

bool lockIsFree(const ostrel::us_container::MicroServicesContainer& container)
{
    const auto task = [&container] { container.listManuallyLoadedBundles(); };
    return OtherThread{task}.finishesWithin(std::chrono::seconds{5});
}

} // namespace ostrel::test
