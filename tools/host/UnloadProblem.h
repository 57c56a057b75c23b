#pragma once

#include "FrameworkHost.h"
#include "Problem.h"

#include <string>
#include <vector>

namespace ostrel::host {

/// What to tell of the records that the container wrote while it unloaded, each by itself.
std::vector<Problem::Text> unloadProblems(const FrameworkHost& host, const std::vector<std::string>& records);

} // namespace ostrel::host
