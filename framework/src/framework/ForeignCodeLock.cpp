#include "framework/ForeignCodeLock.h"

#include <condition_variable>
#include <mutex>

namespace cppmicroservices::detail::core {

namespace {

/// A thread that waits. It lies on that thread's stack, so that waiting needs no memory.
struct Waiting {
    std::thread::id thread;
    ForeignCodeLock const* wanted;
    Waiting* next;
};

/// Who waits for which lock, over all frameworks of the process: a chain of waiting threads may cross them.
struct Board {
    std::mutex mutex;
    std::condition_variable changed;
    Waiting* waiting = nullptr;
};

Board& board()
{
    // Never destroyed: bundles may still be stopped while the process ends.
    static auto* const theBoard = new Board;
    return *theBoard;
}

/// What the thread waits for, or null.
ForeignCodeLock const* wantedBy(std::thread::id thread, Board const& board)
{
    auto const* waiting = board.waiting;
    while (waiting != nullptr && waiting->thread != thread) {
        waiting = waiting->next;
    }
    return waiting != nullptr ? waiting->wanted : nullptr;
}

/// Puts the thread on the board while it lives; the board's mutex is held at both ends.
class OnBoard {
public:
    OnBoard(Board& board, ForeignCodeLock const* wanted)
        : m_board(board), m_waiting{std::this_thread::get_id(), wanted, board.waiting}
    {
        board.waiting = &m_waiting;
    }

    OnBoard(OnBoard const&) = delete;
    OnBoard& operator=(OnBoard const&) = delete;

    ~OnBoard()
    {
        auto** at = &m_board.waiting;
        while (*at != &m_waiting) {
            at = &(*at)->next;
        }
        *at = m_waiting.next;
    }

private:
    Board& m_board;
    Waiting m_waiting;
};

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
            wanted = wantedBy(wanted->m_holder, all);
        }
        OnBoard const waiting(all, this);
        all.changed.wait(lock);
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
        someoneWaits = all.waiting != nullptr;
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
