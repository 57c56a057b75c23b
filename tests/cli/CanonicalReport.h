#pragma once

#include <string>

namespace ostrel::test {

/// A report with everything in ascending order whose order nobody promises: bundles, headers, properties, classes,
/// users, and the entries of rendered maps and lists. Two reports that say the same are then equal.
std::string canonicalReport(const std::string& report);

} // namespace ostrel::test
