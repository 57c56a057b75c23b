#pragma once

#include "Command.h"

#include <functional>
#include <string>

namespace ostrel::host {

/// Writes a report to standard output and flushes it: on a terminal with escapes in place of what the terminal could
/// take for commands, else byte for byte.
void writeReport(Streams& io, const std::string& report);

/// What `print` prints to std::cout, on this thread. Other threads, on which bundles may print, keep their way to
/// standard error meanwhile; what they format may still take a column width that was meant for the report.
/// @throws what `print` throws
std::string printed(const std::function<void()>& print);

} // namespace ostrel::host
