#pragma once

#include <cstddef>
#include <new>

namespace ostrel::test {

/// Makes the memory of this program fail, while it lives; one at a time. Link `ostrel_test_failing_memory`, which
/// replaces malloc() and its like for the whole process; not with a sanitizer, which has replacements of its own.
///
/// The allocation of that number (from 1 on) fails, or that and all after it; of the calling thread alone, or of all.
class FailingMemory {
public:
    enum class Fails { once, fromThenOn };
    enum class Of { thisThread, allThreads };

    explicit FailingMemory(std::size_t number, Fails fails = Fails::once, Of of = Of::thisThread);
    FailingMemory(const FailingMemory&) = delete;
    FailingMemory& operator=(const FailingMemory&) = delete;
    ~FailingMemory();

    /// Whether the allocation of that number came.
    static bool hasFailed();
};

/// A run of something with memory that fails.
struct RunOfMemory {
    bool hasFailed;   ///< whether an allocation failed at all
    bool outOfMemory; ///< whether std::bad_alloc left it
};

/// Lets this thread's allocations succeed, and leaves them out of the count, while it lives.
class UncountedMemory {
public:
    UncountedMemory();
    UncountedMemory(const UncountedMemory&) = delete;
    UncountedMemory& operator=(const UncountedMemory&) = delete;
    ~UncountedMemory();
};

/// Runs `work` once for each of its allocations, each time with that one failing, until it runs without reaching the
/// number. `afterwards` is called with a RunOfMemory after each.
///
/// @return how many allocations `work` has
/// @throws what else than std::bad_alloc leaves `work`
template <class Work, class Afterwards>
std::size_t failEachAllocation(Work&& work, Afterwards&& afterwards,
                               FailingMemory::Fails fails = FailingMemory::Fails::once)
{
    for (std::size_t number = 1;; ++number) {
        RunOfMemory run{false, false};
        {
            const FailingMemory failing{number, fails};
            try {
                work();
            } catch (const std::bad_alloc&) {
                run.outOfMemory = true;
            }
            run.hasFailed = FailingMemory::hasFailed();
        }
        afterwards(run);
        if (!run.hasFailed) {
            return number - 1;
        }
    }
}

} // namespace ostrel::test
