#include "bundle_reader/file/ByteWindow.h"

#include <algorithm>

namespace ostrel::bundle_reader {

std::string_view ByteWindow::at(std::uint64_t offset, std::size_t length)
{
    const bool isKept = offset >= m_offset && fits(m_bytes.size(), offset - m_offset, length);
    if (!isKept) {
        const std::uint64_t there = offset < size() ? size() - offset : 0;
        m_bytes.resize(static_cast<std::size_t>(std::min<std::uint64_t>(std::max(length, m_page), there)));
        m_bytes.resize(m_source.read(offset, m_bytes.data(), m_bytes.size()));
        m_offset = offset;
    }
    return std::string_view{m_bytes}.substr(static_cast<std::size_t>(offset - m_offset), length);
}

} // namespace ostrel::bundle_reader
