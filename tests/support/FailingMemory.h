#pragma once

#include <cstddef>
#include <exception>
#include <new>

namespace ostrel::test {

/// Whether this program's memory can be made to fail. Link FailingMemory.cpp, which replaces malloc() and its like for
/// the whole process; not with a sanitizer, which has replacements of its own.
///
/// While armed, the one allocation of that number (from 1 on) of the arming thread fails; those of other threads do not
/// count.
class FailingMemory {
public:
    explicit FailingMemory(std::size_t number);
    FailingMemory(const FailingMemory&) = delete;
    FailingMemory& operator=(const FailingMemory&) = delete;
    /// Disarms.
    ~FailingMemory();

    /// Whether the allocation of that number came, and failed.
    static bool hasFailed();
};

/// Runs `work` once for each of its allocations, each time with that one failing, until it runs without reaching the
/// number. Each run that was hit must end by itself or by std::bad_alloc; `afterwards` is called after each, with
/// whether it ended by std::bad_alloc.
///
/// @return how many allocations `work` has
/// @throws what else leaves `work`
template <class Work, class Afterwards>
std::size_t failEachAllocation(Work&& work, Afterwards&& afterwards)
{
    for (std::size_t number = 1;; ++number) {
        bool outOfMemory = false;
        bool reached = false;
        {
            const FailingMemory failing{number};
            try {
                work();
            } catch (const std::bad_alloc&) {
                outOfMemory = true;
            }
            reached = FailingMemory::hasFailed();
        }
        afterwards(outOfMemory);
        if (!reached) {
            return number - 1;
        }
    }
}

} // namespace ostrel::test
