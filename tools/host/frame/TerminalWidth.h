#pragma once

#include <cstddef>

namespace ostrel::host {

/// Columns that a line on standard output may take: those of the terminal; else what the environment variable COLUMNS
/// says, when it is a number; else 80. At least 40, below which nothing can be laid out.
std::size_t terminalWidth();

} // namespace ostrel::host
