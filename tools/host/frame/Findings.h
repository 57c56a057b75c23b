#pragma once

#include "frame/Problem.h"

#include <inspection/Finding.h>
#include <vector>

namespace ostrel::host {

/// All findings as one problem: bundles that cannot be installed or used.
///
/// @param findings  at least one
Problem problemOf(const std::vector<inspection::Finding>& findings);

} // namespace ostrel::host
