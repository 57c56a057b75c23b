#include "support/FailingMemory.h"

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
thread_local std::size_t left = 0; // until the one that fails; 0: none
thread_local bool failed = false;
thread_local int uncounted = 0; // how many ask for it
thread_local bool goesOn = false;

bool fails()
{
    if (left == 0 || uncounted != 0 || --left != 0) {
        return false;
    }
    left = goesOn ? 1 : 0;
    failed = true;
    errno = ENOMEM;
    return true;
}

} // namespace

FailingMemory::FailingMemory(std::size_t number, Fails fails)
{
    failed = false;
    goesOn = fails == Fails::fromThenOn;
    left = number;
}

FailingMemory::~FailingMemory()
{
    left = 0;
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
