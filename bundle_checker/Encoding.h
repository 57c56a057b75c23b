#pragma once

#include "bundle_checker/Finding.h"

#include <string_view>

namespace ostrel::bundle_checker {

/// Warns of what makes texts that are no UTF-8, though the frameworks take it: other bytes, and the second half of a
/// surrogate pair as an escape of its own.
///
/// @param text  a whole manifest whose syntax is in order
void describeEncoding(std::string_view text, Findings& findings);

} // namespace ostrel::bundle_checker
