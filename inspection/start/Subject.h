#pragma once

#include "inspection/Explanation.h"

namespace ostrel::inspection {

/// What is asked beside the decision.
enum class Depth {
    decision,
    change, ///< hints and the smallest change too, which cost more than all the rest
};

/// @param vocabulary  gets what the bundle declares
Subject subjectOf(const cppmicroservices::Bundle& bundle, const us_container::FilterMap& filterMap, Depth depth,
                  Vocabulary& vocabulary);

} // namespace ostrel::inspection
