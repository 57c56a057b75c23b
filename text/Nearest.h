#pragma once

#include <string_view>
#include <vector>

namespace ostrel::text {

/// The known word that somebody who wrote `word` most likely meant; empty when none is near. The case of ASCII letters
/// does not count.
///
/// @cost  the product of the two lengths for each known word of about the same length
std::string_view nearest(std::string_view word, const std::vector<std::string_view>& known);

} // namespace ostrel::text
