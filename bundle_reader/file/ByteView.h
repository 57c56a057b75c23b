#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace ostrel::bundle_reader {

enum class ByteOrder { little, big };

/// Whether `length` bytes from `offset` on lie within `size` bytes, whatever the numbers.
inline bool fits(std::uint64_t size, std::uint64_t offset, std::uint64_t length)
{
    return offset <= size && length <= size - offset;
}

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

} // namespace ostrel::bundle_reader
