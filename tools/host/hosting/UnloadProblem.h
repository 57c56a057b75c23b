#pragma once

#include "frame/Problem.h"
#include "hosting/InstalledBundles.h"

#include <string>
#include <vector>

namespace ostrel::host {

/// What to tell of the records that the container wrote while it unloaded, each by itself.
std::vector<Problem::Text> unloadProblems(const InstalledBundles& bundles, const std::string& directory,
                                          const std::vector<std::string>& records);

} // namespace ostrel::host
