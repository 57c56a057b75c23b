#pragma once

#include <thread>

namespace cppmicroservices::detail::core {

/// A lock that a thread holds while it runs foreign code: an activator or a service factory.
///
/// Foreign code may do anything, also what needs a lock of this kind again. So this one never waits for itself: where a
/// mutex would hang for ever, because the chain of waiting threads leads back to the caller, take() says so instead.
/// No other lock of the framework is held while foreign code runs, and none when take() is called.
class ForeignCodeLock {
public:
    enum class Outcome {
        taken,
        wouldNeverEnd, ///< the calling thread holds it, or what it holds is waited for by the holder
    };

    ForeignCodeLock() = default;
    ForeignCodeLock(ForeignCodeLock const&) = delete;
    ForeignCodeLock& operator=(ForeignCodeLock const&) = delete;

    /// Waits for the holder, if any.
    Outcome take();

    /// To be called by the holder.
    void release() noexcept;

    bool heldByThisThread() const;

private:
    std::thread::id m_holder; // guarded by the mutex of the process-wide board, see the source file
};

/// Releases a taken lock at the end of a scope.
class ForeignCodeScope {
public:
    explicit ForeignCodeScope(ForeignCodeLock& taken) noexcept : m_lock(taken) {}
    ForeignCodeScope(ForeignCodeScope const&) = delete;
    ForeignCodeScope& operator=(ForeignCodeScope const&) = delete;
    ~ForeignCodeScope() { m_lock.release(); }

private:
    ForeignCodeLock& m_lock;
};

} // namespace cppmicroservices::detail::core
