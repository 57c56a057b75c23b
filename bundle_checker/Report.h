#pragma once

#include "bundle_checker/Finding.h"

#include <ostream>
#include <string>
#include <string_view>

namespace ostrel::bundle_checker {

/// Whether warnings count as errors.
enum class Strictness { lenient, strict };

/// Writes the findings in a file as compilers do, one a line, "PATH:LINE:COLUMN: error: TEXT", for editors to jump to.
///
/// @param path      as it is to be shown; escaped like all that comes from elsewhere
/// @param findings  in the order of the text
/// @return true when there are errors, warnings that count as such included
bool writeFindings(std::ostream& out, std::string_view path, std::string_view text, const Findings& findings,
                   Strictness strictness);

} // namespace ostrel::bundle_checker
