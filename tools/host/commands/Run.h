#pragma once

#include "frame/Command.h"

namespace ostrel::host {

/// run: starts the bundles of a directory that admit the conditions, loads their services, reports, and unloads.
Command addRun(CLI::App& program);

} // namespace ostrel::host
