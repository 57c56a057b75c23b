#pragma once

#include "frame/Command.h"

namespace ostrel::host {

/// inspect: says what a file is and holds, or each file of a directory, without running code of it.
Command addInspect(CLI::App& program);

} // namespace ostrel::host
