#pragma once

#include <cstddef>
#include <string>

namespace ostrel::host {

/// The text in lines of at most `width` columns, if its words allow it. What a line is broken into stays below its last
/// column: below the text behind the first gap of two blanks, as in "  0  done", else below its beginning.
std::string wrapped(const std::string& text, std::size_t width);

} // namespace ostrel::host
