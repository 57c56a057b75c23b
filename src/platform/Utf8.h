#pragma once

#include <string>

namespace ostrel::platform {

/// Converts UTF-16 to UTF-8.
///
/// @throws std::runtime_error with the offset in UTF-16 code units of the first unpaired surrogate, and the text with
///         U+FFFD in the place of each such
/// @locks  none
std::string toUtf8(const std::u16string& utf16);

} // namespace ostrel::platform
