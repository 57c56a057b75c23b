#pragma once

#include "frame/Command.h"

namespace ostrel::host {

/// explain: says of bundles, and of services when asked to, why they start or not, and what would change that.
Command addExplain(CLI::App& program);

} // namespace ostrel::host
