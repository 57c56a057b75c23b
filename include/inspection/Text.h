#pragma once

#include "inspection/Export.h"

#include <string>
#include <string_view>
#include <vector>

/// What programs need that show texts of bundles and files.
namespace ostrel::inspection {

/// The text with all that a terminal could take for a command written as escapes ("\n", "\x1B"): control characters,
/// those that break a line or turn its direction, and bytes that are no UTF-8.
OSTREL_INSPECTION_EXPORT std::string escaped(std::string_view text);

/// The same for a text of several lines: their ends stay.
OSTREL_INSPECTION_EXPORT std::string escapedLines(std::string_view text);

/// The known word that somebody who wrote `word` most likely meant; empty when none is near.
OSTREL_INSPECTION_EXPORT std::string_view nearest(std::string_view word, const std::vector<std::string_view>& known);

} // namespace ostrel::inspection
