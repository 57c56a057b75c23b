#pragma once

#include <string_view>
#include <vector>

namespace ostrel::bundle_checker {

/// The known key that somebody who wrote `key` most likely meant; empty when none is near. The case of ASCII letters
/// does not count.
///
/// @cost  the product of the two lengths for each known key of about the same length
std::string_view nearestKey(std::string_view key, const std::vector<std::string_view>& known);

} // namespace ostrel::bundle_checker
