#pragma once

#include "bundle_reader/file/ByteSource.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ostrel::bundle_reader {

enum class ByteOrder { little, big };

/// An unsigned number of `width` bytes at `offset`; 0 when it does not lie within `bytes`.
inline std::uint64_t numberAt(std::string_view bytes, std::uint64_t offset, std::size_t width, ByteOrder order)
{
    if (!fits(bytes.size(), offset, width)) {
        return 0;
    }
    std::uint64_t number = 0;
    for (std::size_t index = 0; index < width; ++index) {
        const std::size_t place = order == ByteOrder::big ? index : width - 1 - index;
        number = (number << 8U) | static_cast<unsigned char>(bytes[offset + place]);
    }
    return number;
}

/// Looks at small pieces of a source, of which it keeps a page, so that records which lie together are read together.
class ByteWindow {
public:
    /// @param page  bytes that are read at once. Small where records lie far apart.
    explicit ByteWindow(const ByteSource& source, std::size_t page = 4096) : m_source{source}, m_page{page} {}

    std::uint64_t size() const { return m_source.size(); }

    /// The bytes there, at most `length`; fewer where the source ends. They are valid until the next call.
    /// @throws std::bad_alloc, and as the source
    std::string_view at(std::uint64_t offset, std::size_t length);

    /// 0 when it does not lie within the source.
    std::uint64_t number(std::uint64_t offset, std::size_t width, ByteOrder order)
    {
        return numberAt(at(offset, width), 0, width, order);
    }

    bool holds(std::uint64_t offset, std::string_view bytes) { return at(offset, bytes.size()) == bytes; }

private:
    const ByteSource& m_source;
    std::size_t m_page;
    std::uint64_t m_offset = 0; // of m_bytes in the source
    std::string m_bytes;
};

} // namespace ostrel::bundle_reader
