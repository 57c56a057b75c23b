#include "watch/SafeLine.h"

#include <algorithm>
#include <cerrno>
#include <unistd.h>

namespace ostrel::host {

SafeLine& SafeLine::operator<<(std::string_view text) noexcept
{
    if (m_count < m_pieces.size() && !text.empty()) {
        // The system call takes what it only reads as memory that may be changed.
        m_pieces[m_count++] = iovec{const_cast<char*>(text.data()), text.size()};
    }
    return *this;
}

SafeLine& SafeLine::number(long value) noexcept
{
    const bool isNegative = value < 0;
    const auto magnitude = static_cast<std::uintptr_t>(value);
    return (*this << (isNegative ? "-" : "")).digits(isNegative ? 0 - magnitude : magnitude, 10);
}

SafeLine& SafeLine::address(std::uintptr_t value) noexcept
{
    return (*this << "0x").digits(value, 16);
}

SafeLine& SafeLine::digits(std::uintptr_t value, unsigned base) noexcept
{
    constexpr std::size_t most = 20;
    if (m_used + most > m_numbers.size()) {
        return *this;
    }
    char* const begin = m_numbers.data() + m_used;
    char* end = begin;
    do {
        *end++ = "0123456789abcdef"[value % base];
        value /= base;
    } while (value != 0);
    std::reverse(begin, end);
    m_used += static_cast<std::size_t>(end - begin);
    return *this << std::string_view{begin, static_cast<std::size_t>(end - begin)};
}

void SafeLine::write() noexcept
{
    const iovec* piece = m_pieces.data();
    std::size_t left = m_count;
    while (left != 0) {
        const ssize_t written = writev(STDERR_FILENO, piece, static_cast<int>(left));
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written < 0) {
            return;
        }
        // A pipe may take a part; what of it stands within a piece is written again from where it ended.
        auto rest = static_cast<std::size_t>(written);
        while (left != 0 && rest >= piece->iov_len) {
            rest -= piece->iov_len;
            ++piece;
            --left;
        }
        if (left != 0) {
            iovec& begun = m_pieces[m_count - left];
            begun.iov_base = static_cast<char*>(begun.iov_base) + rest;
            begun.iov_len -= rest;
        }
    }
}

} // namespace ostrel::host
