#pragma once

#include "inspection/Condition.h"

#include <cppmicroservices/Any.h>

#include <optional>

namespace ostrel::inspection {

/// See FilterExplanation::change; for a declaration that is refused.
std::optional<Conditions> smallestChange(const cppmicroservices::Any& filters,
                                         const us_container::FilterMap& filterMap);

} // namespace ostrel::inspection
