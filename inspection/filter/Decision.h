#pragma once

#include "inspection/FilterExplanation.h"

namespace ostrel::inspection {

/// As explainFilter(), without hints and without a change, which cost more than all the rest.
FilterExplanation explainDecision(const cppmicroservices::Any& filters, const us_container::FilterMap& filterMap);

} // namespace ostrel::inspection
