#pragma once

#include "frame/Command.h"

namespace ostrel::host {

/// Reads the command line and runs the command that it names. Errors become one message on `io.err`.
ExitStatus runCommandLine(int argc, const char* const* argv, Streams& io);

} // namespace ostrel::host
