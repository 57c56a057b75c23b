#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ostrel::text {

/// The text with all that a terminal could take for a command written as escapes ("\n", "\x1B"): control characters,
/// those that break a line or turn its direction, and bytes that are no UTF-8. At most `limit` bytes of it are shown.
std::string escaped(std::string_view text, std::size_t limit = 200);

} // namespace ostrel::text
