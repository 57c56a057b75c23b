#pragma once

#include "bundle_reader/manifest/Json.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace ostrel::bundle_checker {

/// The text with all that a terminal could take for a command written as escapes: control characters, those of one byte
/// and those of two (U+0080 to U+009F), and bytes that are no UTF-8. At most `limit` bytes of it are shown.
std::string escaped(std::string_view text, std::size_t limit = 200);

/// The text as escaped() has it, in double quotation marks.
std::string quoted(std::string_view text);

/// What lies ahead in the line, in single quotation marks: enough to find the place.
std::string ahead(std::string_view text, std::size_t offset);

/// "key" and the path in quotation marks.
std::string keyAt(std::string_view path);

/// The kind of a value with its article: "an object", "a string" ….
std::string_view kindOf(const bundle_reader::JsonValue& value);

} // namespace ostrel::bundle_checker
