#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>

namespace ostrel::bundle_reader {

/// What RapidJSON takes its memory from. Its own allocators give null when there is none, and it writes there.
class CheckedAllocator {
public:
    static constexpr bool kNeedFree = true;

    /// @throws std::bad_alloc
    void* Malloc(std::size_t size) { return Realloc(nullptr, 0, size); }

    /// @throws std::bad_alloc; `block` is kept then
    void* Realloc(void* block, std::size_t /*oldSize*/, std::size_t newSize)
    {
        if (newSize == 0) {
            Free(block);
            return nullptr;
        }
        void* const grown = std::realloc(block, newSize);
        if (grown == nullptr) {
            throw std::bad_alloc{};
        }
        return grown;
    }

    static void Free(void* block) { std::free(block); }
};

} // namespace ostrel::bundle_reader
