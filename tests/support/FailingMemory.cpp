#include "support/FailingMemory.h"

#include <atomic>
#include <cerrno>

// The allocator itself, under the names that the GNU C library gives it for programs that replace malloc().
extern "C" {
void* __libc_malloc(std::size_t size);                          // NOLINT(bugprone-reserved-identifier)
void* __libc_calloc(std::size_t count, std::size_t size);       // NOLINT(bugprone-reserved-identifier)
void* __libc_realloc(void* memory, std::size_t size);           // NOLINT(bugprone-reserved-identifier)
void* __libc_memalign(std::size_t alignment, std::size_t size); // NOLINT(bugprone-reserved-identifier)
}

namespace ostrel::test {
namespace {

// Initialised without code, as memory is allocated before any of this program runs.
std::atomic<long> left{0}; // until the one that fails; none does at 0 and below
std::atomic<bool> failed{false};
std::atomic<bool> goesOn{false};
std::atomic<bool> ofAll{false};
thread_local bool isCounted = false; // this thread, where not all are
thread_local int uncounted = 0;      // how many ask for it

bool fails()
{
    if (left.load(std::memory_order_relaxed) <= 0 || uncounted != 0 || !(ofAll || isCounted)) {
        return false;
    }
    long const before = goesOn && left == 1 ? 1 : left--;
    if (before != 1) {
        return false;
    }
    failed = true;
    errno = ENOMEM;
    return true;
}

} // namespace

FailingMemory::FailingMemory(std::size_t number, Fails fails, Of of)
{
    failed = false;
    goesOn = fails == Fails::fromThenOn;
    ofAll = of == Of::allThreads;
    isCounted = true;
    left = static_cast<long>(number);
}

FailingMemory::~FailingMemory()
{
    left = 0;
    isCounted = false;
}

bool FailingMemory::hasFailed()
{
    return failed;
}

UncountedMemory::UncountedMemory()
{
    ++uncounted;
}

UncountedMemory::~UncountedMemory()
{
    --uncounted;
}

} // namespace ostrel::test

extern "C" {

void* malloc(std::size_t size)
{
    return ostrel::test::fails() ? nullptr : __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size)
{
    return ostrel::test::fails() ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size)
{
    return ostrel::test::fails() ? nullptr : __libc_realloc(memory, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size)
{
    return ostrel::test::fails() ? nullptr : __libc_memalign(alignment, size);
}

} // extern "C"
