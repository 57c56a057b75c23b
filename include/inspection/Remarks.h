#pragma once

#include "inspection/Explanation.h"
#include "inspection/Plan.h"

#include <string>
#include <vector>

/// What somebody should be told who sees nothing happen, or not what was meant.
namespace ostrel::inspection {

/// One sentence each, without a full stop; texts of bundles stand in them as they are.
///
/// A directory without bundles; nothing admitted; files passed over; two bundles of one component name that both start.
///
/// @param directory  as the user wrote it
OSTREL_INSPECTION_EXPORT std::vector<std::string> remarksOn(const Plan& plan, const std::string& directory);

/// A directory without bundles; files passed over.
OSTREL_INSPECTION_EXPORT std::vector<std::string> remarksOn(const Explanation& explanation,
                                                            const std::string& directory);

/// Who was asked for the names that are declared.
enum class Asked {
    bundles,
    bundlesAndServices, ///< services declare filters only once they are registered
};

/// Conditions that no declaration knows, with the name that was most likely meant.
OSTREL_INSPECTION_EXPORT std::vector<std::string> remarksOnConditions(const Conditions& conditions,
                                                                      const Vocabulary& vocabulary, Asked asked);

} // namespace ostrel::inspection
