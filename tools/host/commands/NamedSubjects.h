#pragma once

#include <inspection/Explanation.h>
#include <string>
#include <vector>

namespace ostrel::host {

/// Leaves in an explanation what the names mean: component names, symbolic names and names of files. With a bundle stay
/// its services. Files that hold no bundle, but are named, become findings.
///
/// @throws Problem (usage) for a name that none has, with the nearest that one has
void keepNamed(inspection::Explanation& explanation, const std::vector<std::string>& names);

} // namespace ostrel::host
