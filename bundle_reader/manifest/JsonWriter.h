#pragma once

#include "bundle_reader/manifest/Json.h"

#include <string>
#include <string_view>

namespace ostrel::bundle_reader {

/// A value in JSON, indented by four blanks for each level.
///
/// Reading it gives the same value. Recursive, so the value must not nest deeper than readJson() reads.
///
/// @throws std::bad_alloc and nothing else
std::string writeJson(const JsonValue& value);

/// A text in JSON, with its quotation marks.
///
/// @throws std::bad_alloc and nothing else
std::string writeJson(std::string_view text);

} // namespace ostrel::bundle_reader
