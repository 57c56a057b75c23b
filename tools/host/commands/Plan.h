#pragma once

#include "frame/Command.h"

namespace ostrel::host {

/// plan: says what run with the same options will do, without running code of a bundle.
Command addPlan(CLI::App& program);

} // namespace ostrel::host
