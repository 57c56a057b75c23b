#pragma once

#include "Results.h"

#include <iosfwd>

namespace bench {

/// Writes a Markdown table with one line for each benchmark: the medians of both over the rounds, their ratio, and the
/// least and the greatest ratio that a round gave.
///
/// @throws std::runtime_error when a benchmark was measured on one framework only
void writeTable(std::ostream& os, Results const& real, Results const& embedded);

} // namespace bench
