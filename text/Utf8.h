#pragma once

#include <cstddef>
#include <string_view>

namespace ostrel::text {

/// Bytes that the UTF-8 character at the beginning of the text takes; 0 when there is none.
std::size_t characterLength(std::string_view text);

} // namespace ostrel::text
