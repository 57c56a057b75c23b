#pragma once

#include <string>

namespace ostrel::inspection {

/// The SHA-256 of a file's content in hexadecimal digits; "" when it cannot be read.
///
/// @throws std::bad_alloc
/// @cost   reads the whole file, piece by piece
std::string sha256Of(const std::string& path);

} // namespace ostrel::inspection
