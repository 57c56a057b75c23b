#include "bundle_reader/file/ByteSource.h"

#include <algorithm>

namespace ostrel::bundle_reader {

std::string ByteSource::text(std::uint64_t offset, std::size_t length) const
{
    // Not more memory than there are bytes, whatever length a file claims.
    const std::uint64_t there = offset < size() ? size() - offset : 0;
    std::string bytes(static_cast<std::size_t>(std::min<std::uint64_t>(length, there)), '\0');
    bytes.resize(read(offset, bytes.data(), bytes.size()));
    return bytes;
}

std::size_t MemoryBytes::read(std::uint64_t offset, char* to, std::size_t length) const
{
    return offset < m_bytes.size() ? m_bytes.substr(static_cast<std::size_t>(offset)).copy(to, length) : 0;
}

} // namespace ostrel::bundle_reader
