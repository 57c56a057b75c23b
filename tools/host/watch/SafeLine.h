#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <sys/uio.h>

namespace ostrel::host {

/// A message that a signal handler may compose and write: it allocates nothing, and refers to the texts that it is made
/// of until it is written. What has no place any more is left out.
class SafeLine {
public:
    SafeLine& operator<<(std::string_view text) noexcept;
    SafeLine& number(long value) noexcept;
    SafeLine& address(std::uintptr_t value) noexcept;

    /// Writes all of it to standard error at once.
    void write() noexcept;

private:
    /// Puts the digits of `value` into the memory for numbers.
    SafeLine& digits(std::uintptr_t value, unsigned base) noexcept;

    std::array<iovec, 32> m_pieces{};
    std::size_t m_count = 0;
    std::array<char, 128> m_numbers{};
    std::size_t m_used = 0;
};

} // namespace ostrel::host
