#include "framework/ForeignCodeLock.h"

#include <condition_variable>
#include <mutex>
#include <unordered_map>

namespace cppmicroservices::detail::core {

namespace {

/// Who waits for which lock, over all frameworks of the process: a chain of waiting threads may cross them.
struct Board {
    std::mutex mutex;
    std::condition_variable changed;
    std::unordered_map<std::thread::id, ForeignCodeLock const*> waiting;
};

Board& board()
{
    // Never destroyed: bundles may still be stopped while the process ends.
    static auto* const theBoard = new Board;
    return *theBoard;
}

} // namespace

ForeignCodeLock::Outcome ForeignCodeLock::take()
{
    Board& all = board();
    auto const self = std::this_thread::get_id();
    std::unique_lock<std::mutex> lock(all.mutex);
    while (m_holder != std::thread::id()) {
        // A new chain can only close when some thread begins to wait, so checking here, each time, is enough.
        auto const* wanted = this;
        while (wanted != nullptr) {
            if (wanted->m_holder == self) {
                return Outcome::wouldNeverEnd;
            }
            auto const next = all.waiting.find(wanted->m_holder);
            wanted = next != all.waiting.end() ? next->second : nullptr;
        }
        all.waiting[self] = this;
        all.changed.wait(lock);
        all.waiting.erase(self);
    }
    m_holder = self;
    return Outcome::taken;
}

void ForeignCodeLock::release() noexcept
{
    Board& all = board();
    bool someoneWaits = false;
    {
        std::lock_guard<std::mutex> const lock(all.mutex);
        m_holder = std::thread::id();
        someoneWaits = !all.waiting.empty();
    }
    if (someoneWaits) {
        all.changed.notify_all();
    }
}

bool ForeignCodeLock::heldByThisThread() const
{
    std::lock_guard<std::mutex> const lock(board().mutex);
    return m_holder == std::this_thread::get_id();
}

} // namespace cppmicroservices::detail::core
