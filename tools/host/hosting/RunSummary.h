#pragma once

#include "frame/Problem.h"
#include "hosting/InstalledBundles.h"

#include <cstddef>
#include <inspection/Plan.h>
#include <map>
#include <string>

namespace ostrel::host {

/// What came of a run, in lines: each bundle by its name, with why it was started, refused or failed; then how many of
/// each there are. Escaped.
///
/// @param leftOut  Start::leftOut()
std::string runSummary(const inspection::Plan& plan, const InstalledBundles& bundles,
                       const std::map<std::string, Problem::Text>& leftOut, std::size_t loaded, std::size_t looked);

} // namespace ostrel::host
