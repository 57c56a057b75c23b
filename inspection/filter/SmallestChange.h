#pragma once

#include "inspection/Condition.h"
#include "inspection/filter/DeclaredTexts.h"

#include <cppmicroservices/Any.h>

#include <optional>

namespace ostrel::inspection {

/// See FilterExplanation::change; for a declaration that is refused.
///
/// @param texts  of the same declaration
std::optional<Conditions> smallestChange(const cppmicroservices::Any& filters, const DeclaredTexts& texts,
                                         const us_container::FilterMap& filterMap);

} // namespace ostrel::inspection
