#pragma once

#include "frame/Command.h"

#include <string>

namespace ostrel::host {

/// Writes a report to standard output and flushes it: on a terminal with escapes in place of what the terminal could
/// take for commands, else byte for byte.
void writeReport(Streams& io, const std::string& report);

} // namespace ostrel::host
