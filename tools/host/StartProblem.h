#pragma once

#include "FrameworkHost.h"
#include "Problem.h"

#include <string>

namespace ostrel::host {

/// What to tell of an exception that came out of the start of bundles: which bundle, why, and what helps.
Problem::Text startProblem(const FrameworkHost& host, const std::string& message);

} // namespace ostrel::host
