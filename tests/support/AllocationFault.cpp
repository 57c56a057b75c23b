#include "support/AllocationFault.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

namespace ostrel::test {

namespace {

std::atomic<long> made{0};
std::atomic<long> left{0}; // allocations until the one that fails; nothing fails at 0 and below

void* allocate(std::size_t size)
{
    made.fetch_add(1, std::memory_order_relaxed);
    if (left.load(std::memory_order_relaxed) > 0 && left.fetch_sub(1) == 1) {
        throw std::bad_alloc{};
    }
    if (void* const memory = std::malloc(size != 0 ? size : 1)) {
        return memory;
    }
    throw std::bad_alloc{};
}

} // namespace

AllocationFault::AllocationFault(long n)
{
    left = n;
}

AllocationFault::~AllocationFault()
{
    left = 0;
}

bool AllocationFault::struck()
{
    return left.exchange(0) <= 0;
}

long allocationsSoFar()
{
    return made;
}

} // namespace ostrel::test

void* operator new(std::size_t size)
{
    return ostrel::test::allocate(size);
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}
