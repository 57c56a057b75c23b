#pragma once

#include "bundle_reader/manifest/Json.h"
#include "text/Escape.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace ostrel::bundle_checker {

using text::escaped;

/// The text as escaped() has it, in double quotation marks.
std::string quoted(std::string_view text);

/// What lies ahead in the line, in single quotation marks: enough to find the place.
std::string ahead(std::string_view text, std::size_t offset);

/// "key" and the path in quotation marks.
std::string keyAt(std::string_view path);

/// The kind of a value with its article: "an object", "a string" ….
std::string_view kindOf(const bundle_reader::JsonValue& value);

} // namespace ostrel::bundle_checker
